// Pool and table are ready before the old ones go.
#include "id_loc_loader.h"

#include <new>

#include "loc/lng_format.h"

IDLocLoader::~IDLocLoader() {
  delete[] strings;
  delete[] pool;
  cc::lng::clearForGood(count);
  cc::lng::clearForGood(strings);
  cc::lng::clearForGood(pool);
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
