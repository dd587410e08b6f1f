/// @file
/// `Loc::Loader`: the modules of a program, loaded together for one language.
///
/// Failure style: false and, if the caller passed a string for it, an error text.
#pragma once

#include <string>

#include "common_core_api.h"
#include "containers.h"
#include "loc_module.h"

namespace Loc {

/// The modules of a program in the order in which they were appended; owns them.
class COMMON_CORE_API Loader : public SimpleVector<Module*> {
 public:
  /// A loader without modules.
  Loader() = default;
  /// Deletes every module.
  ~Loader();

  /// Loads every module for `language` (null: "eng"), in order, and stops at the first failure:
  /// then false, and `error`, unless null, holds its text. True also without modules.
  bool load(const char* language, std::string* error);
};

}  // namespace Loc
