// The binary buffer: small writes and reads, and growth.

#include "bag.h"

#include <cstring>
#include <stdexcept>

#include "families.h"
#include "harness.h"
#include "inputs.h"

namespace bench {
namespace {

constexpr std::size_t count = 4096;  // values in one run

void appendTo(std::vector<char>& bytes, int value) {
  const char* p = reinterpret_cast<const char*>(&value);
  bytes.insert(bytes.end(), p, p + sizeof value);
}

void putting(Bench& bench) {
  Row row("Bag, put an int", "4,096 times into ready room");
  Bag bag;
  std::vector<char> bytes;
  row.items(count);
  row.ours([&bag] {
    bag.setPosition(0);
    for (std::size_t i = 0; i < count; ++i) {
      const int value = static_cast<int>(i);
      bag.putData(&value, sizeof value);
    }
    return static_cast<std::size_t>(bag.getSize());
  });
  row.peer("vector", [&bytes] {
    bytes.clear();
    for (std::size_t i = 0; i < count; ++i) appendTo(bytes, static_cast<int>(i));
    return bytes.size();
  });
  bench.run(std::move(row.atLeast(0.5)));
}

void getting(Bench& bench) {
  Row row("Bag, get an int", "4,096 times");
  Bag bag;
  std::vector<char> bytes;
  Random random(41);
  for (std::size_t i = 0; i < count; ++i) {
    const int value = static_cast<int>(random.below(1000000));
    bag.putData(&value, sizeof value);
    appendTo(bytes, value);
  }
  row.items(count);
  row.ours([&bag] {
    unsigned int total = 0;
    bag.setPosition(0);
    for (std::size_t i = 0; i < count; ++i) {
      int value;
      bag.getData(&value, sizeof value);
      total += static_cast<unsigned int>(value);
    }
    return static_cast<std::size_t>(total);
  });
  row.peer("checked memcpy", [&bytes] {
    unsigned int total = 0;
    std::size_t position = 0;
    for (std::size_t i = 0; i < count; ++i) {
      int value;
      if (bytes.size() - position < sizeof value) throw std::out_of_range("value");
      std::memcpy(&value, bytes.data() + position, sizeof value);
      position += sizeof value;
      total += static_cast<unsigned int>(value);
    }
    return static_cast<std::size_t>(total);
  });
  bench.run(std::move(row.atLeast(0.5)));
}

std::size_t grow(std::size_t size) {
  Bag bag;
  for (std::size_t i = 0; i < size / 4; ++i) {
    const int value = static_cast<int>(i);
    bag.putData(&value, sizeof value);
  }
  return static_cast<std::size_t>(bag.getSize());
}

void growing(Bench& bench, const char* input, std::size_t size) {
  Row row("Bag, grown by 4 bytes", input);
  row.bytes(size);
  row.ours([=] { return grow(size); });
  row.peer("vector", [=] {
    std::vector<char> bytes;
    for (std::size_t i = 0; i < size / 4; ++i) appendTo(bytes, static_cast<int>(i));
    return bytes.size();
  });
  bench.run(std::move(row.atLeast(0.3)));
}

void growingLinearly(Bench& bench) {
  Row row("Bag, grown by 4 bytes", "100 MB against 10 × 10 MB");
  row.bytes(100 * megabyte);
  row.ours([] { return grow(100 * megabyte); });
  row.limit("10 MB", [] {
    std::size_t total = 0;
    for (int i = 0; i < 10; ++i) total += grow(10 * megabyte);
    return total;
  });
  bench.run(std::move(row.atLeast(10.0 / 15, "10 MB")));
}

}  // namespace

void bagRows(Bench& bench) {
  putting(bench);
  getting(bench);
  growing(bench, "1 MB", megabyte);
  growing(bench, "10 MB", 10 * megabyte);
  growing(bench, "100 MB", 100 * megabyte);
  growingLinearly(bench);
}

}  // namespace bench
