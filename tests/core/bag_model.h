// A naive bag: a vector of bytes and a cursor, with every rule written down as it is described.
#pragma once

#include <climits>
#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace cc::test {

class BagModel {
 public:
  enum class Result { Done, Exception, NoMemory };

  std::vector<char> data;
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

  Result expand(long long n) {
    if (n <= capacity) return Result::Done;
    if (rule(n) > INT_MAX) return Result::NoMemory;
    capacity = rule(n);
    return Result::Done;
  }
  void setBufferSize(int n) {
    if (n == capacity) return;
    if (n == 0) return clear();
    capacity = n;
    if (n < size()) data.resize(static_cast<std::size_t>(n));
  }
  void clear() {
    if (capacity == 0) return;
    *this = BagModel();
  }
  Result put(const std::string& bytes, int align) {
    if (position < 0) return Result::NoMemory;
    const long long at = rounded(position, align);
    const long long end = at + static_cast<long long>(bytes.size());
    if (end > INT_MAX || expand(end) != Result::Done) return Result::NoMemory;
    data.resize(static_cast<std::size_t>(end));  // zeros in the gap
    if (!bytes.empty()) std::memcpy(data.data() + at, bytes.data(), bytes.size());
    position = end;
    return Result::Done;
  }
  Result get(std::string& bytes, long long n, int align) {
    if (position < 0) return Result::Exception;
    if (rounded(position, align) <= INT_MAX) position = rounded(position, align);
    if (n < 0 || position + n > size()) return Result::Exception;
    bytes.assign(data.begin() + position, data.begin() + position + n);
    position += n;
    return Result::Done;
  }
  Result getString(std::string& text) {
    for (long long i = position; i >= 0 && i < size(); ++i) {
      if (data[static_cast<std::size_t>(i)] != 0) continue;
      text.assign(data.begin() + position, data.begin() + i);
      position = i + 1;
      return Result::Done;
    }
    return Result::Exception;
  }
  Result insert(long long offset, const std::string& bytes) {
    const auto n = static_cast<long long>(bytes.size());
    if (n == 0) return Result::Done;
    if (expand(size() + n) != Result::Done) return Result::NoMemory;
    data.insert(data.begin() + offset, bytes.begin(), bytes.end());
    if (offset <= position) position += n;
    return Result::Done;
  }
  Result remove(long long offset, long long n) {
    if (n == 0) return Result::Done;
    if (offset < 0 || n < 0 || offset + n > size()) return Result::Exception;
    data.erase(data.begin() + offset, data.begin() + offset + n);
    if (offset < position && position < offset + n) {
      position = offset;
    } else if (offset <= position) {
      position = position < n ? 0 : position - n;
    }
    return Result::Done;
  }
};

}  // namespace cc::test
