/// @file
/// The values of a document beside the plain models.
#pragma once

#include "fuzz/fuzz.h"
#include "tests/markup/reader_trace.h"
#include "tests/reference/number_model.h"

namespace fuzz {

/// Checks what `doc` makes of a raw value, as text and as a number.
inline void checkValues(cc::test::OpenDoc& doc, const ChPair& raw) {
  using cc::test::errorOf;
  std::string expected;
  const bool good = reference::unescape(raw, expected);
  ChArr decoded;
  expect((errorOf([&] { doc.convertEscape(raw, decoded); }) < 0) == good);
  expect(expected.c_str() == std::string_view(decoded.c_str()));
  const char* const begin = raw.begin ? raw.begin : doc.begin();
  const std::string tail(begin, doc.begin() + doc.size());
  const auto number = reference::wholeDouble(tail, raw.length());
  double value = 0;
  expect((errorOf([&] { value = doc.getDouble(raw); }) < 0) == number.has_value());
  expect(!number || sameBits(value, *number));
}

}  // namespace fuzz
