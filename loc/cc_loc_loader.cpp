// The new texts are read and checked whole before the first variable changes; the old pool goes
// last, when no variable points into it any more.
#include "cc_loc_loader.h"

#include "loc/lng_format.h"

CCLocLoader::~CCLocLoader() {
  delete[] pool;
  cc::lng::clearForGood(pool);
}

int CCLocLoader::load(FILE* file, Localization& info) {
  cc::lng::Texts texts;
  const int code = cc::lng::read(file, info.count, info.stamp, texts);
  if (code != cc::lng::Loaded || texts.count == 0) return code;

  for (int i = 0; i < texts.count; ++i) {
    *info.targets[i] = texts.pool.get() + texts.offsets.get()[i];
  }
  delete[] pool;
  pool = texts.pool.steal();
  return cc::lng::Loaded;
}
