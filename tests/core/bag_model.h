// A naive bag: a string of bytes and a cursor, with every rule written down as it is described.
#pragma once

#include <climits>
#include <new>
#include <string>

#include "bag.h"

namespace cc::test {

inline std::string bytesOf(const Bag& bag) {
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

class BagModel {
 public:
  enum class Result { Done, Exception, NoMemory };

  std::string data;
  long long position = 0;
  long long capacity = 0;

  long long size() const { return static_cast<long long>(data.size()); }

  static long long rule(long long n) {
    const long long step = n <= 256 ? 16 : n <= 4096 ? 256 : 4096;
    return (n + step - 1) / step * step;
  }
  static long long rounded(long long n, int align) {
    while (align > 1 && n % align != 0) ++n;
    return n;
  }

  std::string part(long long offset, long long n) const {
    return data.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(n));
  }

  Result expand(long long n) {
    if (n <= capacity) return Result::Done;
    if (rule(n) > INT_MAX) return Result::NoMemory;
    capacity = rule(n);
    return Result::Done;
  }
  Result setBufferSize(int n) {
    if (n == capacity) return Result::Done;
    if (n == 0) *this = BagModel();
    capacity = n;
    if (n < size()) data.resize(static_cast<std::size_t>(n));
    return Result::Done;
  }
  Result copyExactly() {
    capacity = size();
    if (capacity == 0) position = 0;
    return Result::Done;
  }
  Result put(const std::string& bytes, int align) {
    if (position < 0) return Result::NoMemory;
    const long long at = rounded(position, align);
    const long long end = at + static_cast<long long>(bytes.size());
    if (end > INT_MAX || expand(end) != Result::Done) return Result::NoMemory;
    data.resize(static_cast<std::size_t>(end));  // zeros in the gap
    data.replace(static_cast<std::size_t>(at), bytes.size(), bytes);
    position = end;
    return Result::Done;
  }
  Result get(std::string& bytes, long long n, int align) {
    if (position < 0) return Result::Exception;
    if (rounded(position, align) <= INT_MAX) position = rounded(position, align);
    if (n < 0 || position + n > size()) return Result::Exception;
    bytes = part(position, n);
    position += n;
    return Result::Done;
  }
  Result getString(std::string& text) {
    for (long long i = position; i >= 0 && i < size(); ++i) {
      if (data[static_cast<std::size_t>(i)] != 0) continue;
      text = part(position, i - position);
      position = i + 1;
      return Result::Done;
    }
    return Result::Exception;
  }
  Result insert(long long offset, const std::string& bytes) {
    const auto n = static_cast<long long>(bytes.size());
    if (n == 0) return Result::Done;
    if (expand(size() + n) != Result::Done) return Result::NoMemory;
    data.insert(static_cast<std::size_t>(offset), bytes);
    if (offset <= position) position += n;
    return Result::Done;
  }
  Result remove(long long offset, long long n) {
    if (n == 0) return Result::Done;
    if (offset < 0 || n < 0 || offset + n > size()) return Result::Exception;
    data.erase(static_cast<std::size_t>(offset), static_cast<std::size_t>(n));
    if (offset < position && position < offset + n) {
      position = offset;
    } else if (offset <= position) {
      position = position < n ? 0 : position - n;
    }
    return Result::Done;
  }
};

// What a call on the real bag comes to.
template <class Action>
BagModel::Result resultOf(Action&& action) {
  try {
    action();
  } catch (const Bag::Exception&) {
    return BagModel::Result::Exception;
  } catch (const std::bad_alloc&) {
    return BagModel::Result::NoMemory;
  }
  return BagModel::Result::Done;
}

}  // namespace cc::test
