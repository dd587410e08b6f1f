/// @file
/// `Loc::Module`: one dictionary of a program, found by name and language.
///
/// Failure style: false and, if the caller passed a string for it, an error text. Memory failure of
/// the texts passes through as `std::bad_alloc`.
#pragma once

#include <cstdio>
#include <string>

#include "common_core_api.h"
#include "id_loc_loader.h"

namespace Loc {

/// One dictionary of a program: finds the file of a language in the configuration directory, opens
/// it, has it read, and turns a failure into a text.
///
/// A module holds no texts itself; loading again replaces those of its dictionary, and after a
/// failure the earlier ones are in place.
class COMMON_CORE_API Module {
 public:
  /// A module without a name, not mandatory.
  Module() = default;
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  virtual ~Module();

  /// Loads the file of `language` (null: "eng"). True when it was loaded, or is missing and not
  /// mandatory. Otherwise false, and `error`, unless null, is replaced by a text of two lines that
  /// names the reason and the file. A language with a "/" in it names no file.
  virtual bool load(const char* language, std::string* error);
  /// Reads an opened dictionary file into the module's dictionary; returns a result code of the
  /// loaders. A class that does not override it throws the `int` -1.
  virtual int loadFile(FILE* file);

  /// Composes the path of a dictionary file: directory, name, ".", language ("eng" for null) and
  /// ".lng", joined as they stand.
  static void makePath(const std::string& directory, const std::string& name, const char* language,
                       std::string& path);
  /// Replaces `error`, unless null, by the text for a result code (0: none) and the file's path.
  static void makeError(const std::string& path, int code, std::string* error);

  std::string name;        ///< base name of the files, as in "common_core"
  bool mandatory = false;  ///< whether a file that cannot be opened is a failure
};

/// A module whose texts go into an `IDLocLoader`.
class COMMON_CORE_API IdModule : public Module {
 public:
  /// A module that reads files matching `record` into `dictionary`. Neither is owned; both outlive
  /// the module. The caller sets `name` and `mandatory`.
  IdModule(IDLocLoader::Localization* record, IDLocLoader* dictionary)
      : info(record), loader(dictionary) {}
  ~IdModule() override;

  /// Reads with the module's `IDLocLoader` and returns its result code.
  int loadFile(FILE* file) override;

 protected:
  IDLocLoader::Localization* info;  ///< the record that the file must match; not owned
  IDLocLoader* loader;              ///< the dictionary that receives the texts; not owned
};

/// The library's own dictionary, "common_core", mandatory, in slot 3 of `TTT::dictionaries`.
///
/// Constructing one registers the slot at once, before anything is loaded; destroying it leaves
/// the slot. All objects share the one dictionary.
class COMMON_CORE_API CommonCoreModule : public IdModule {
 public:
  /// Registers the library's dictionary in slot 3.
  CommonCoreModule();
  ~CommonCoreModule() override;
};

}  // namespace Loc

#if defined(__i386__)
static_assert(sizeof(Loc::Module) == 32);
#endif
