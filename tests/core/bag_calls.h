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

  Result call() {
    const std::string s = text();
    const auto n = static_cast<int>(s.size());
    const int align = 1 << number(0, 3);
    read.clear();
    expectedRead.clear();
    switch (number(0, 13)) {
      case 0:
        name = "putData";
        actual = resultOf([&] { bag.putData(s.data(), n); });
        return model.put(s, 1);
      case 1:
        name = "putDataPtr";
        actual = resultOf([&] { fill(bag.putDataPtr(n), s); });
        return model.put(s, 1);
      case 2:
        name = "putDataPtrAligned";
        actual = resultOf([&] { fill(bag.putDataPtrAligned(n, align), s); });
        return model.put(s, align);
      case 3:
        name = "putDataAligned";
        actual = resultOf([&] { bag.putDataAligned(s.data(), n, align); });
        return model.put(s, align);
      case 4:
        name = "putString";
        actual = resultOf([&] { bag.putString(s.c_str()); });
        return model.put(std::string(s.c_str()) + '\0', 1);
      case 5:
        name = "getStringPtr";
        actual = resultOf([&] { read = bag.getStringPtr(); });
        return model.getString(expectedRead);
      case 6:
        name = "insSpace";
        return insert(number(0, bag.getSize()), s);
      case 7:
        name = "delSpace";
        return remove(number(-1, bag.getSize() + 1), number(-1, 20));
      case 8:
        name = "setPosition";
        return place(number(0, 3) == 0 ? number(-3, bag.getSize() + 20) : bag.getSize());
      case 9:
        name = "setBufferSize";
        return resize(number(0, 30) == 0 ? 0 : number(1, bag.getSize() + 40));
      case 10:
        name = "copy";
        actual = resultOf([&] { bag = Bag(static_cast<const Bag&>(bag)); });
        return model.copyExactly();
      case 11:
        name = "steal and setBuffer";
        return handOver();
      default:
        return get(number(-2, 12), align);
    }
  }
  Result insert(int offset, const std::string& s) {
    actual = resultOf([&] { fill(bag.insSpace(offset, static_cast<int>(s.size())), s); });
    return model.insert(offset, s);
  }
  Result remove(int offset, int n) {
    actual = resultOf([&] { bag.delSpace(offset, n); });
    return model.remove(offset, n);
  }
  Result place(int position) {
    actual = Result::Done;
    bag.setPosition(position);
    model.position = position;
    return Result::Done;
  }
  Result resize(int n) {
    actual = resultOf([&] { bag.setBufferSize(n); });
    model.setBufferSize(n);
    return Result::Done;
  }
  Result handOver() {
    Bag other("other", 5);
    other.stealFrom(bag);
    int n = -1;
    char* const buffer = other.steal(n);
    bag.setBuffer(buffer, n, -1);
    actual = Result::Done;
    model.position = 0;
    return model.copyExactly();
  }
  Result get(int n, int align) {
    name = "reading";
    const std::size_t room = n > 0 ? static_cast<std::size_t>(n) : 0;
    const int form = number(0, 3);
    read.assign(room, 'u');
    if (form == 0) actual = resultOf([&] { bag.getData(read.data(), n); });
    if (form == 1) actual = resultOf([&] { read.assign(bag.getDataPtr(n), room); });
    if (form == 2) actual = resultOf([&] { bag.getDataAligned(read.data(), n, align); });
    if (form == 3) actual = resultOf([&] { read.assign(bag.getDataPtrAligned(n, align), room); });
    expectedRead.assign(room, 'u');
    return model.get(expectedRead, n, form >= 2 ? align : 1);
  }

  std::function<int(int, int)> number;
  Bag bag;
  BagModel model;
  const char* name = "";
  Result actual = Result::Done;
  std::string read, expectedRead;
};

}  // namespace cc::test
