/// @file
/// What the targets share: an input as a source of values, and an expectation that ends the
/// program.
///
/// Each target is one source with the function that libFuzzer calls. fuzz/replay.cpp calls it
/// instead where the tests run a target over the inputs kept in fuzz/corpus.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "core/kernels.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

namespace fuzz {

/// Ends the program, with the place of the call, where `holds` is false.
inline void expect(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  dprintf(2, "%s:%d: an expectation does not hold\n", file, line);  // whatever stderr is now
  std::abort();
}

/// An input, taken from its front. One that is used up goes on with zeros.
class Input {
 public:
  Input(const unsigned char* data, std::size_t size)
      : left(reinterpret_cast<const char*>(data), size) {}
  /// A part of another one.
  explicit Input(std::string_view bytes) : left(bytes) {}

  bool isEmpty() const { return left.empty(); }
  /// All that is left.
  std::string_view rest() const { return left; }
  unsigned int byte() {
    const std::string_view one = take(1);
    return one.empty() ? 0 : static_cast<unsigned char>(one[0]);
  }
  /// One of `low`, … `high`, which are less than 256 apart.
  int number(int low, int high) {
    return low + static_cast<int>(byte() % static_cast<unsigned int>(high - low + 1));
  }
  /// The bytes of a plain value.
  template <class T>
  T value() {
    T result{};
    const std::string_view bytes = take(sizeof(T));
    if (!bytes.empty()) std::memcpy(&result, bytes.data(), bytes.size());
    return result;
  }
  /// A length of one byte and as many bytes, or what is left.
  std::string_view part() { return take(byte()); }
  /// A part without 0 bytes.
  std::string text() {
    std::string result(part());
    result.erase(std::remove(result.begin(), result.end(), '\0'), result.end());
    return result;
  }

 private:
  std::string_view take(std::size_t n) {
    const std::string_view taken = left.substr(0, n);
    left.remove_prefix(taken.size());
    return taken;
  }

  std::string_view left;
};

/// The offset of what a search found in `text`; `npos` for null.
inline std::size_t offsetIn(std::string_view text, const char* found) {
  return found ? static_cast<std::size_t>(found - text.data()) : std::string_view::npos;
}

/// Whether two values have the same bytes: what is no number equals itself.
template <class T>
bool sameBits(const T& a, const T& b) {
  using Bytes = std::array<unsigned char, sizeof(T)>;
  return std::bit_cast<Bytes>(a) == std::bit_cast<Bytes>(b);
}

/// A parser gives the value that is expected, or fails and leaves its output alone.
template <class T, class Parse, class Expected>
void expectParsed(Parse parse, const std::optional<Expected>& expected,
                  const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  T value = 77;
  expect(parse(value) == expected.has_value(), file, line);
  const T wanted = expected ? static_cast<T>(*expected) : T{77};
  expect(sameBits(value, wanted), file, line);
}

/// Calls `check` with each set of hot loops that the processor has in use.
template <class Check>
void withEachForm(Check check) {
  const cc::kernels::Loops* const best = cc::kernels::loops;
  for (const cc::kernels::Loops* form : cc::kernels::supportedLoops()) {
    cc::kernels::loops = form;
    check();
  }
  cc::kernels::loops = best;
}

/// Calls `check` with each set of hot loops, on the first part of an input and the rest of it.
template <class Check>
int withTwoTexts(const unsigned char* data, std::size_t size, Check check) {
  Input input(data, size);
  const std::string a(input.part());
  const std::string b(input.rest());
  withEachForm([&] { check(a, b); });
  return 0;
}

/// Keeps what the code of the tools prints from the terminal; sanitizers write past the streams.
inline void silence() {
  static const bool done = [] {
    stdout = stderr = std::fopen("/dev/null", "w");
    return true;
  }();
  static_cast<void>(done);
}

}  // namespace fuzz
