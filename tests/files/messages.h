/// @file
/// The bytes of file failures, composed here by hand, to hold thrown messages against.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "tttproc.h"

namespace cc::test {

/// The bytes of messages of the library's own dictionary, one entry after another.
class MessageBytes {
 public:
  explicit MessageBytes(int number) { entry(number); }

  MessageBytes& entry(int number) {
    word(-2);
    word(3);
    word(number);
    return *this;
  }
  MessageBytes& text(const std::string& argument) {
    bytes.append(argument.c_str(), argument.size() + 1);
    return *this;
  }
  MessageBytes& word(std::int32_t value) {
    bytes.resize((bytes.size() + 3) & ~std::size_t{3});
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
    return *this;
  }
  operator std::string() const { return bytes; }  // NOLINT(google-explicit-constructor)

 private:
  std::string bytes;
};

/// The bytes of the failure `number` of the file `name`, with the system error `error` unless -1.
inline std::string failure(int number, const std::string& name, int error) {
  MessageBytes message(number);
  if (!name.empty()) message.entry(25).text(name);
  if (error > 0) message.entry(28).text(::strerrordesc_np(error));
  return message;
}

inline std::string dataOf(const Bag& bag) {
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

/// The bytes of the message that `action` throws, or "(nothing)".
template <class Action>
std::string thrownBy(Action&& action) {
  try {
    action();
  } catch (const TTT& message) {
    return dataOf(message.getBag());
  }
  return "(nothing)";
}

}  // namespace cc::test
