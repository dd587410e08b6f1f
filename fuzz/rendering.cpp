// Any bytes as a message, rendered from a dictionary of any texts, beside the plain model.
#include "fuzz/fuzz.h"
#include "tests/loc/loc_support.h"
#include "tests/loc/render_model.h"

namespace {

// The text of the message, or what there is of it where its bytes end too early.
bool render(const Bag& message, IDLocLoader& dictionary, bool multi, std::string& out) {
  IDLocLoader* slots[] = {&dictionary, &dictionary, &dictionary, &dictionary, &dictionary};
  try {
    TTT::make(slots, message, out, multi);
    return true;
  } catch (const Bag::Exception&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  std::vector<std::string> texts(static_cast<std::size_t>(input.number(0, 3)));
  for (std::string& text : texts) text = input.text();
  const std::string_view bytes = input.rest();
  const Bag message(bytes.data(), static_cast<int>(bytes.size()));
  loc_test::Dictionary dictionary(texts);
  loc_test::RenderModel model(bytes, texts);
  const std::optional<std::string> expected = model.render();
  for (const bool multi : {false, true}) {
    std::string out = "old";
    fuzz::expect(render(message, dictionary, multi, out) == expected.has_value());
    fuzz::expect(out == expected.value_or(model.out));
  }
  int slot = 0;
  int number = 0;
  fuzz::expect(TTT(message).getErrorCode(&slot, &number) || number == -1);
  return 0;
}
