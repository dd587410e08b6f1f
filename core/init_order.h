// The order of the library's static initialisers.
//
// Variables that need their place carry `__attribute__((init_priority(cc::...)))`. The linker
// sorts by priority, lower first, so the order does not depend on that of the object files; all
// of them come before every initialiser without a priority, clients' included, when the library
// is linked statically.
#pragma once

namespace cc {

enum InitPriority {
  InitTables = 101,         ///< the character tables and what depends on the processor
  InitDictionary = 102,     ///< the library's own dictionary
  InitConsoleBuffer = 103,  ///< the formatting buffer of console output
};

}  // namespace cc
