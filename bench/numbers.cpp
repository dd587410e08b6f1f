// Numbers and bytes as text.

#include <array>
#include <charconv>
#include <cstring>

#include "charproc.h"
#include "families.h"
#include "harness.h"
#include "inputs.h"

namespace bench {
namespace {

constexpr std::size_t numberCount = 1000;

// Decimal numbers of 1 to `digits` digits, every fourth negative, one behind the other in memory.
struct Numbers {
  explicit Numbers(std::size_t digits) {
    Random random(21);
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < numberCount; ++i) {
      if (i % 4 == 3) text += '-';
      text += static_cast<char>('1' + random.below(9));
      for (std::size_t n = random.below(digits); n > 0; --n) {
        text += static_cast<char>('0' + random.below(10));
      }
      ends.push_back(text.size());
    }
    std::size_t start = 0;
    for (const std::size_t end : ends) {
      parts.emplace_back(text.data() + start, end - start);
      start = end;
    }
  }
  Numbers(const Numbers&) = delete;
  Numbers& operator=(const Numbers&) = delete;

  std::string text;
  std::vector<std::string_view> parts;
};

template <class T>
std::size_t fromChars(const std::vector<std::string_view>& parts) {
  T sum = 0;
  for (const std::string_view part : parts) {
    T value = 0;
    const char* end = part.data() + part.size();
    const auto [stop, error] = std::from_chars(part.data(), end, value);
    if (error == std::errc() && stop == end) sum ^= value;
  }
  return static_cast<std::size_t>(sum);
}

template <class T, class Parse>
void parsing(Bench& bench, const char* operation, const char* input, std::size_t digits,
             Parse parse) {
  const Numbers numbers(digits);
  const std::vector<std::string_view>& parts = numbers.parts;
  Row row(operation, input);
  row.items(parts.size());
  row.ours([&parts, parse] {
    T sum = 0;
    for (const std::string_view part : parts) {
      T value = 0;
      if (parse(part.data(), part.data() + part.size(), value)) sum ^= value;
    }
    return static_cast<std::size_t>(sum);
  });
  row.peer("from_chars", [&parts] { return fromChars<T>(parts); });
  bench.run(std::move(row.atLeast(1, "from_chars")));
}

void nibbleLoop(const unsigned char* data, std::size_t n, char* out) {
  static const char digits[] = "0123456789ABCDEF";
  for (std::size_t i = 0; i < n; ++i) {
    out[2 * i] = digits[data[i] >> 4];
    out[2 * i + 1] = digits[data[i] & 15];
  }
}

// Both digits of every byte.
const std::array<char, 512>& pairTable() {
  static const std::array<char, 512> table = [] {
    std::array<char, 512> made{};
    for (std::size_t i = 0; i < 256; ++i) {
      const auto byte = static_cast<unsigned char>(i);
      nibbleLoop(&byte, 1, &made[2 * i]);
    }
    return made;
  }();
  return table;
}

void pairLoop(const unsigned char* data, std::size_t n, char* out) {
  const char* pairs = pairTable().data();
  for (std::size_t i = 0; i < n; ++i) std::memcpy(out + 2 * i, pairs + 2 * data[i], 2);
}

// The value of every digit of either case; 0xFF for all other bytes.
const std::array<unsigned char, 256>& digitTable() {
  static const std::array<unsigned char, 256> table = [] {
    std::array<unsigned char, 256> made;
    made.fill(0xFF);
    const char digits[] = "0123456789ABCDEFabcdef";
    for (std::size_t i = 0; i < 22; ++i) {
      made[static_cast<unsigned char>(digits[i])] = static_cast<unsigned char>(i < 16 ? i : i - 6);
    }
    return made;
  }();
  return table;
}

void digitLoop(const char* hex, std::size_t n, unsigned char* out) {
  const unsigned char* values = digitTable().data();
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned int high = values[static_cast<unsigned char>(hex[2 * i])];
    const unsigned int low = values[static_cast<unsigned char>(hex[2 * i + 1])];
    if ((high | low) > 15) {
      std::memset(out + i, 0, n - i);
      return;
    }
    out[i] = static_cast<unsigned char>(high << 4 | low);
  }
}

// The value of every two digits, looked up by both bytes at once; 0xFFFF where one is no digit.
const std::vector<unsigned short>& digitPairTable() {
  static const std::vector<unsigned short> table = [] {
    std::vector<unsigned short> made(65536, 0xFFFF);
    for (std::size_t i = 0; i < 65536; ++i) {
      const unsigned int first = digitTable()[i & 255], second = digitTable()[i >> 8];
      if ((first | second) <= 15) made[i] = static_cast<unsigned short>(first << 4 | second);
    }
    return made;
  }();
  return table;
}

void digitPairLoop(const char* hex, std::size_t n, unsigned char* out) {
  const unsigned short* values = digitPairTable().data();
  for (std::size_t i = 0; i < n; ++i) {
    unsigned short pair;
    std::memcpy(&pair, hex + 2 * i, 2);
    const unsigned short value = values[pair];
    if (value > 255) {
      std::memset(out + i, 0, n - i);
      return;
    }
    out[i] = static_cast<unsigned char>(value);
  }
}

void hexadecimal(Bench& bench, const char* input, std::size_t n) {
  Random random(31);
  Buffer<unsigned char> data(n), back(n);
  Buffer<char> text(2 * n), digits(2 * n);
  for (unsigned char& byte : data) byte = static_cast<unsigned char>(random.below(256));
  bin2str(data.data(), static_cast<int>(n), digits.data());

  Row writing("bin2str", input);
  writing.bytes(n).output([&] { return std::string(text.view()); });
  writing.ours([&, n]() -> std::size_t {
    bin2str(data.data(), static_cast<int>(n), text.data());
    return 0;
  });
  writing.peer("nibble table", [&, n] { return nibbleLoop(data.data(), n, text.data()), 0u; });
  writing.peer("pair table", [&, n] { return pairLoop(data.data(), n, text.data()), 0u; });
  bench.run(std::move(writing.atLeast(3)));

  Row reading("str2bin", input);
  reading.bytes(n).output([&] { return std::string(back.view()); });
  reading.ours([&, n]() -> std::size_t {
    str2bin(digits.data(), back.data(), static_cast<int>(n));
    return 0;
  });
  reading.peer("nibble table", [&, n] { return digitLoop(digits.data(), n, back.data()), 0u; });
  reading.peer("pair table", [&, n] { return digitPairLoop(digits.data(), n, back.data()), 0u; });
  bench.run(std::move(reading.atLeast(3)));
}

}  // namespace

void numberRows(Bench& bench) {
  parsing<long long>(bench, "strtoint64, range", "1 to 18 digits", 18,
                     [](const char* begin, const char* end, long long& value) {
                       return strtoint64(begin, end, value);
                     });
  parsing<int>(
      bench, "strtoint, range", "1 to 9 digits", 9,
      [](const char* begin, const char* end, int& value) { return strtoint(begin, end, value); });
  parsing<int>(
      bench, "strtoint, range", "1 to 3 digits", 3,
      [](const char* begin, const char* end, int& value) { return strtoint(begin, end, value); });
  hexadecimal(bench, "4 KB", 4096);
  hexadecimal(bench, "32 bytes", 32);
}

}  // namespace bench
