// A program of calls on a bag, beside the naive model.
#include "fuzz/fuzz.h"
#include "tests/core/bag_calls.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto number = [&](int low, int high) {
    constexpr int oneByte = 256;
    if (high - low < oneByte) return input.number(low, high);
    return low + input.value<unsigned short>() % (high - low + 1);
  };
  cc::test::BagCalls calls(number);
  while (!input.isEmpty()) fuzz::expect(calls.step().empty());
  return 0;
}
