// A dictionary file through both loaders, beside the plain model. The first byte decides which
// count and stamp are asked for: those that the file itself names, or small ones.
#include "cc_loc_loader.h"
#include "fuzz/fuzz.h"
#include "id_loc_loader.h"
#include "tests/reference/lng_model.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  if (size < 29) return 0;  // shorter ones are beginnings of this
  std::string file(data + 1, data + size);
  const auto words = fuzz::Input(file).value<std::array<int, 7>>();
  const bool own = (data[0] & 1) == 0;
  const int stamp = own ? words[4] : data[0] >> 4;
  const int count = own ? words[5] : data[0] >> 1 & 7;
  constexpr int most = 4096;
  reference::LngModel model(file);
  if (count > most) return 0;
  const int code = model.read(count, stamp);
  if (model.poolSize > 1 << 20) return 0;  // what then happens depends on the memory at hand
  FILE* const stream = fmemopen(file.data(), file.size(), "r");
  IDLocLoader numbered;
  IDLocLoader::Localization info = {count, 8, stamp};
  fuzz::expect(numbered.load(stream, info) == code);
  std::rewind(stream);
  const char* variables[most] = {};
  const char** targets[most];
  for (int i = 0; i < most; ++i) targets[i] = &variables[i];
  CCLocLoader loader;
  CCLocLoader::Localization record = {count, 8, stamp, targets};
  fuzz::expect(loader.load(stream, record) == code);
  for (std::size_t i = 0; i < most; ++i) {
    const char* const text = numbered.getString(static_cast<int>(i));
    fuzz::expect(i < model.texts.size() ? code != 0 || model.texts[i] == text : !text);
    fuzz::expect(text ? std::strcmp(text, variables[i]) == 0 : !variables[i]);
  }
  std::fclose(stream);
  return 0;
}
