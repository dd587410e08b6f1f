// A walk over the modules in their order.
#include "loc_loader.h"

namespace Loc {

Loader::~Loader() {
  for (Module* module : *this) delete module;
}

bool Loader::load(const char* language, std::string* error) {
  for (Module* module : *this) {
    if (module && !module->load(language, error)) return false;
  }
  return true;
}

}  // namespace Loc
