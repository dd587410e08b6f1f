// What the searches and conversions want to know about the character tables, worked out once when
// the tables are filled.
#pragma once

#include <cstddef>

namespace cc {

/// A fact about a table, or a shorter form of one.
struct CaseTables {
  /// The byte tables map a-z and A-Z and nothing else.
  bool plainBytes = false;
  /// The byte tables are plain, and the first 128 entries of the unit tables map the same.
  bool plainAscii = false;
};

/// Written by `chr_tables_prepare`, read by everybody.
extern CaseTables caseTables;

/// Works the facts out again from the character tables.
void deriveCaseTables();

}  // namespace cc
