// A module finds its file by name and language; what the file must match and where its texts go
// is known to the derived classes. The library's own dictionary lives here.
#include "loc_module.h"

#include <cstring>
#include <iterator>

#include "common_core_loc.h"
#include "core/init_order.h"
#include "fileproc.h"
#include "libpaths.h"
#include "loc/lng_format.h"
#include "tttproc.h"

namespace Loc {

namespace {

// By result code of the loaders, from 1 on.
constexpr const char* errmsgs[] = {
    "Could not find or access localization",
    "Localization data is invalid",
    "Localization data has unsupported version",
    "Localization character encoding is wrong",
    "Localization and executable file versions are different",
    "Error during file reading",
    "Not enough memory",
};
static_assert(std::size(errmsgs) == cc::lng::NoMemory);

constexpr char defaultLanguage[] = "eng";

// Usable from the first moment on, since nothing runs to construct it. It is destroyed with the
// library, at a fixed place among the library's other objects.
[[gnu::init_priority(cc::InitDictionary)]] constinit IDLocLoader commonCoreDictionary;

bool namesFile(const char* language) { return !language || !std::strchr(language, '/'); }

}  // namespace

Module::~Module() = default;

bool Module::load(const char* language, std::string* error) {
  std::string path;
  makePath(agentEtcDir(), name, language, path);

  int code = cc::lng::NotFound;
  UTF8File file(false);
  if (namesFile(language) && file.open(path.c_str(), UTF8File::ModeRead)) {
    code = loadFile(file.getStream());
    file.close();
  } else if (!mandatory) {
    return true;
  }
  if (code == cc::lng::Loaded) return true;
  makeError(path, code, error);
  return false;
}

int Module::loadFile(FILE* /*file*/) { throw -1; }

void Module::makePath(const std::string& directory, const std::string& name, const char* language,
                      std::string& path) {
  std::string joined = directory;
  joined.append(name).append(".").append(language ? language : defaultLanguage).append(".lng");
  path.swap(joined);
}

void Module::makeError(const std::string& path, int code, std::string* error) {
  if (!error) return;
  std::string text = "Localization loading failed";
  if (code > 0 && code <= static_cast<int>(std::size(errmsgs))) {
    text.append(": ").append(errmsgs[code - 1]);
  }
  text.append("\n(file: ").append(path).append(")");
  error->swap(text);
}

IdModule::~IdModule() = default;

int IdModule::loadFile(FILE* file) { return loader->load(file, *info); }

CommonCoreModule::CommonCoreModule() : IdModule(&LCA_info, &commonCoreDictionary) {
  name = "common_core";
  mandatory = true;
  TTT::dictionaries[LocDictionaryCommonCore] = &commonCoreDictionary;
}

CommonCoreModule::~CommonCoreModule() = default;

}  // namespace Loc
