// A document as the tool reads it: the library's reader without a name of its own, so that an
// error is one message and the place is printed by the tool.
#pragma once

#include <string>
#include <vector>

#include "mlproc.h"

namespace ccml {

class Document : public MLDoc {
 public:
  // Loads a file, or the standard input for "-". Throws a `TTT` when that fails.
  void open(const std::string& path);

  const char* begin() const { return text; }
  const char* end() const { return text + textSize; }
  unsigned int size() const { return textSize; }
  unsigned int offset() const { return position; }
  unsigned int offsetOf(const char* byte) const { return static_cast<unsigned int>(byte - text); }
  void seek(unsigned int offset) { position = offset; }

  // The text as it was loaded: what `warnings` tells of is not overwritten in it.
  const char* source() const { return loaded.empty() ? text : loaded.data(); }

  // The text of a slice with its entities decoded. Throws error 34.
  std::string decoded(const ChPair& raw);

  // Offsets of the control bytes in attribute values that the reader turned into spaces, one an
  // attribute.
  const std::vector<unsigned int>& warnings() const { return warned; }

 protected:
  void warning(const TTT& message, const Token& token, Attribute& attribute) override;

 private:
  std::vector<unsigned int> warned;
  std::string loaded;  // a copy, made before the first byte is overwritten
};

// What stands in one tag: attributes in their order, and whether the reader passes over anything
// else in it.
struct Tag {
  std::vector<MLDoc::Attribute> attributes;
  const char* unread = nullptr;  // the first byte that is passed over, or null
};

// Reads all attributes of the tag in `token`. Throws the reader's errors.
void readTag(Document& document, const MLDoc::Token& token, Tag& tag);

// Whether a piece of markup is a comment in earnest, and not a declaration that the reader takes
// for one.
bool isComment(const ChPair& markup);
// Whether an instruction is the XML declaration, whose attributes can be read.
bool isXmlDeclaration(const ChPair& markup);

bool isBlank(const char* begin, const char* end);

}  // namespace ccml
