// Contestants from other libraries. Each function adds those that do the row's work; the build
// without peers links a source where every one is empty.
#pragma once

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "harness.h"
#include "inputs.h"

namespace bench {

// Positions and counts: the offset of the first bad byte or the length, the number of characters,
// the number of bytes that the units take as UTF-8.
void addValidationPeers(Row& row, const Text& text);
void addCharacterPeers(Row& row, const Text& text);
void addEncodedSizePeers(Row& row, const Text& text);

// Conversions of the whole text into `out`, which has room for it; the value is the count written.
void addDecodingPeers(Row& row, const Text& text, Buffer<unsigned short>& out);
void addEncodingPeers(Row& row, const Text& text, Buffer<char>& out);
// The text in the other case into `out`, of the same length.
void addCasePeers(Row& row, const Text& text, bool upper, Buffer<char>& out);

// The offset in bytes where `pattern` is found without regard to case.
void addCaselessSearchPeers(Row& row, const Text& text, std::string_view pattern);
// Whether two texts are equal without regard to case: 1 or 0.
void addCaselessEqualityPeers(Row& row, const Text& a, const Text& b);

// One message with its arguments, and an error report of four, into `out`.
struct MessageInput {
  std::vector<std::string> printfTexts;  // as the dictionary has them
  std::vector<std::string> braceTexts;   // the same with {} for every placeholder
  int line;
  int column;
  const char* path;
};
void addMessagePeers(Row& row, const MessageInput& input, std::string& out);
void addReportPeers(Row& row, const MessageInput& input, std::string& out);

// Lengths of all names and values, see the walk in markup_read.cpp; or only the reading.
void addWalkPeers(Row& row, const Document& document);
void addParsePeers(Row& row, const Document& document, Buffer<char>& copy);

// One element with many attributes, written into memory.
enum class ValueKind { Integer, String, Double, Date };
struct AttributeInput {
  std::vector<std::string> names;
  std::vector<int> integers;
  std::vector<std::string> strings;
  std::vector<double> doubles;
  std::vector<std::time_t> dates;
};
void addAttributePeers(Row& row, const AttributeInput& input, ValueKind kind, std::string& out);

// The file of a shared library to load in comparison, or null.
const char* libraryPeer();

}  // namespace bench
