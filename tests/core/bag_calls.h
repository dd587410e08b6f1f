// Calls on a bag and on its naive model, chosen by numbers.
#pragma once

#include <cstring>
#include <functional>
#include <string>
#include <utility>

#include "tests/core/bag_model.h"

namespace cc::test {

// Makes the same calls on both; the result and everything visible must agree.
class BagCalls {
 public:
  using Result = BagModel::Result;

  // `choose` gives a number from the lowest up to the highest it is told.
  explicit BagCalls(std::function<int(int, int)> choose) : number(std::move(choose)) {}

  // One call. The result is empty, or names the call and what does not agree after it.
  std::string step() {
    const Result expected = call();
    const struct {
      const char* what;
      bool same;
    } checks[] = {{"result", expected == actual},
                  {"bytes read", expectedRead == read},
                  {"data", model.data == bytesOf(bag)},
                  {"cursor", model.position == bag.getPosition()},
                  {"capacity", model.capacity == bag.getCapacity()},
                  {"buffer", (model.capacity == 0) == (bag.getBuffer() == nullptr)}};
    for (const auto& check : checks) {
      if (!check.same) return std::string(name) + ": " + check.what;
    }
    return {};
  }

 private:
  std::string text() {
    std::string s(static_cast<std::size_t>(number(0, number(0, 9) == 0 ? 600 : 12)), 0);
    for (char& c : s) c = static_cast<char>(number(0, 3));
    return s;
  }
  void fill(char* at, const std::string& s) {
    if (!s.empty()) std::memcpy(at, s.data(), s.size());
  }

  // Makes the call on the bag; what the model comes to goes through.
  template <class Action>
  Result both(const char* what, Action&& action, Result expected) {
    name = what;
    actual = resultOf(action);
    return expected;
  }

  Result call() {
    const std::string s = text();
    const auto n = static_cast<int>(s.size());
    const int align = 1 << number(0, 3);
    read.clear();
    expectedRead.clear();
    switch (number(0, 13)) {
      case 0:
        return both(
            "putData", [&] { bag.putData(s.data(), n); }, model.put(s, 1));
      case 1:
        return both(
            "putDataPtr", [&] { fill(bag.putDataPtr(n), s); }, model.put(s, 1));
      case 2:
        return both(
            "putDataPtrAligned", [&] { fill(bag.putDataPtrAligned(n, align), s); },
            model.put(s, align));
      case 3:
        return both(
            "putDataAligned", [&] { bag.putDataAligned(s.data(), n, align); }, model.put(s, align));
      case 4:
        return both(
            "putString", [&] { bag.putString(s.c_str()); },
            model.put(std::string(s.c_str()) + '\0', 1));
      case 5:
        return both(
            "getStringPtr", [&] { read = bag.getStringPtr(); }, model.getString(expectedRead));
      case 6: {
        const int offset = number(0, bag.getSize());
        return both(
            "insSpace", [&] { fill(bag.insSpace(offset, n), s); }, model.insert(offset, s));
      }
      case 7: {
        const int offset = number(-1, bag.getSize() + 1);
        const int count = number(-1, 20);
        return both(
            "delSpace", [&] { bag.delSpace(offset, count); }, model.remove(offset, count));
      }
      case 8: {
        const bool anywhere = number(0, 3) == 0;
        model.position = anywhere ? number(-3, bag.getSize() + 20) : bag.getSize();
        const auto place = [&] { bag.setPosition(static_cast<int>(model.position)); };
        return both("setPosition", place, Result::Done);
      }
      case 9: {
        const int room = number(0, 30) == 0 ? 0 : number(1, bag.getSize() + 40);
        return both(
            "setBufferSize", [&] { bag.setBufferSize(room); }, model.setBufferSize(room));
      }
      case 10:
        return both(
            "copy", [&] { bag = Bag(static_cast<const Bag&>(bag)); }, model.copyExactly());
      case 11:
        model.position = 0;
        return both(
            "steal and setBuffer", [&] { handOver(); }, model.copyExactly());
      default:
        return get(number(-2, 12), align);
    }
  }
  void handOver() {
    Bag other("other", 5);
    other.stealFrom(bag);
    int n = -1;
    char* const buffer = other.steal(n);
    bag.setBuffer(buffer, n, -1);
  }
  Result get(int n, int align) {
    const std::size_t room = n > 0 ? static_cast<std::size_t>(n) : 0;
    const int form = number(0, 3);
    read.assign(room, 'u');
    expectedRead.assign(room, 'u');
    const auto call = [&] {
      if (form == 0) bag.getData(read.data(), n);
      if (form == 1) read.assign(bag.getDataPtr(n), room);
      if (form == 2) bag.getDataAligned(read.data(), n, align);
      if (form == 3) read.assign(bag.getDataPtrAligned(n, align), room);
    };
    return both("reading", call, model.get(expectedRead, n, form >= 2 ? align : 1));
  }

  std::function<int(int, int)> number;
  Bag bag;
  BagModel model;
  const char* name = "";
  Result actual = Result::Done;
  std::string read, expectedRead;
};

}  // namespace cc::test
