// Pool and table are ready before the old ones go. The destructor clears the fields with volatile
// stores: the compiler drops plain ones to an object that is going away, but a rendering during
// process exit may still look at the library's own dictionary.
#include "id_loc_loader.h"

#include <new>

#include "loc/lng_format.h"

namespace {

template <class T>
void clearForGood(T& field) {
  const_cast<volatile T&>(field) = T();
}

}  // namespace

IDLocLoader::~IDLocLoader() {
  delete[] strings;
  delete[] pool;
  clearForGood(count);
  clearForGood(strings);
  clearForGood(pool);
}

int IDLocLoader::load(FILE* file, Localization& info) {
  cc::lng::Texts texts;
  const int code = cc::lng::read(file, info.count, info.stamp, texts);
  if (code != cc::lng::Loaded || texts.count == 0) return code;

  char** table = new (std::nothrow) char*[static_cast<std::size_t>(texts.count)];
  if (!table) return cc::lng::NoMemory;
  for (int i = 0; i < texts.count; ++i) {
    table[i] = texts.pool.get() + texts.offsets.get()[i];
  }
  delete[] strings;
  delete[] pool;
  strings = table;
  pool = texts.pool.steal();
  count = texts.count;
  return cc::lng::Loaded;
}
