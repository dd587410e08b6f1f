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

  // One call. The result is empty, or tells the kind of the call and what does not agree after it.
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
      if (!check.same) return "kind " + std::to_string(kind) + ": " + check.what;
    }
    return {};
  }

 private:
  std::string text() {
    std::string s(static_cast<std::size_t>(number(0, number(0, 9) == 0 ? 600 : 12)), 0);
    for (char& c : s) c = static_cast<char>(number(0, 3));
    return s;
  }
  void fill(char* at) {
    if (!written.empty()) std::memcpy(at, written.data(), written.size());
  }

  // Makes a call on the bag, and gives what the model comes to.
  Result call() {
    written = text();
    const auto n = static_cast<int>(written.size());
    const int align = 1 << number(0, 3);
    read.clear();
    expectedRead.clear();
    kind = number(0, 13);
    switch (kind) {
      case 0:
      case 1:
      case 2:
      case 3:
        return put(n, kind, align);
      case 4:
        actual = resultOf([&] { bag.putString(written.c_str()); });
        return model.put(written.c_str() + std::string(1, '\0'), 1);
      case 5:
        actual = resultOf([&] { read = bag.getStringPtr(); });
        return model.getString(expectedRead);
      case 6: {
        const int offset = number(0, bag.getSize());
        actual = resultOf([&] { fill(bag.insSpace(offset, n)); });
        return model.insert(offset, written);
      }
      case 7: {
        const int offset = number(-1, bag.getSize() + 1);
        const int count = number(-1, 20);
        actual = resultOf([&] { bag.delSpace(offset, count); });
        return model.remove(offset, count);
      }
      case 8: {
        const bool anywhere = number(0, 3) == 0;
        model.position = anywhere ? number(-3, bag.getSize() + 20) : bag.getSize();
        bag.setPosition(static_cast<int>(model.position));
        return actual = Result::Done;
      }
      case 9: {
        const int room = number(0, 30) == 0 ? 0 : number(1, bag.getSize() + 40);
        actual = resultOf([&] { bag.setBufferSize(room); });
        return model.setBufferSize(room);
      }
      case 10:
        actual = resultOf([&] { bag = Bag(static_cast<const Bag&>(bag)); });
        return model.copyExactly();
      case 11:
        actual = resultOf([&] { handOver(); });
        model.position = 0;
        return model.copyExactly();
      default:
        return get(number(-2, 12), align);
    }
  }
  Result put(int n, int form, int align) {
    actual = resultOf([&] {
      if (form == 0) bag.putData(written.data(), n);
      if (form == 1) fill(bag.putDataPtr(n));
      if (form == 2) fill(bag.putDataPtrAligned(n, align));
      if (form == 3) bag.putDataAligned(written.data(), n, align);
    });
    return model.put(written, form >= 2 ? align : 1);
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
    actual = resultOf([&] {
      if (form == 0) bag.getData(read.data(), n);
      if (form == 1) read.assign(bag.getDataPtr(n), room);
      if (form == 2) bag.getDataAligned(read.data(), n, align);
      if (form == 3) read.assign(bag.getDataPtrAligned(n, align), room);
    });
    return model.get(expectedRead, n, form >= 2 ? align : 1);
  }

  std::function<int(int, int)> number;
  Bag bag;
  BagModel model;
  int kind = 0;
  Result actual = Result::Done;
  std::string written, read, expectedRead;
};

}  // namespace cc::test
