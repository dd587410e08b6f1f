// MLDoc::attribute: the next attribute of a tag that was read before.
//
// The readers below move a pointer over the tag and answer with the number of an error, so that
// the document's position is stored in one place, before anything is thrown.

#include "loc/message_numbers.h"
#include "markup/char_class.h"
#include "markup/scan.h"
#include "markup/text_range.h"
#include "mlproc.h"

namespace {

using cc::classOf;

constexpr int ReadOk = -1;
constexpr int NoneLeft = -2;
constexpr int maxNameLength = 511;

// Where a tag ends, and the text that it lies in.
struct Ends {
  const char* tag;
  const char* text;
};

// Whether the token's name is the one that the tokenizer found in the tag, and not that of an
// element before.
bool hasOwnName(const MLDoc::Token& token) {
  return token.type == MLDoc::Token::Element && token.name.begin == token.tag.begin + 1 &&
         token.name.end > token.name.begin && token.name.end < token.tag.end;
}

// From the tag's `<` over the element name to just past the white space that follows it.
int skipElementName(const char*& p, const MLDoc::Token& token) {
  p = hasOwnName(token) ? token.name.end : token.tag.begin;
  while (p != token.tag.end) {
    const char c = *p++;
    if (c == '>') return NoneLeft;
    if (cc::isSpaceByte(c)) return ReadOk;
  }
  return cc::MsgAttributeUnended;
}

// From the end of the element name, or of the attribute before, to a name's first byte.
int findName(const char*& p, const char* end) {
  p = cc::skipSpace(p, end);
  if (p == end) return cc::MsgAttributeUnended;
  const unsigned char kind = classOf(*p);
  if (kind == cc::ClassName ? *p != '-' : *p == '<') return ReadOk;
  if (kind == cc::ClassSeparator || *p == '-' || *p == '!' || *p == '?') return NoneLeft;
  ++p;
  return cc::MsgAttributeNameBadStart;
}

// From a name's first byte, which may be a `<`, to just past the byte that ends it.
int readName(const char*& p, const Ends& ends, ChPair& name) {
  const char* const begin = p;
  const char* const limit = ends.tag - p > maxNameLength ? p + maxNameLength + 1 : ends.tag;
  p = cc::findNameEnd(p + 1, limit, ends.text);
  if (p == limit) {
    return p == ends.tag ? cc::MsgAttributeNameUnended : cc::MsgAttributeNameTooLong;
  }
  const char ending = *p++;
  if (ending != '=' && !cc::isSpaceByte(ending)) return cc::MsgAttributeNameBadByte;
  name = ChPair(begin, p - 1);
  return ReadOk;
}

// From the byte after the one that ended the name to just past the value's opening quote.
int findValue(const char*& p, const char* end) {
  bool equalsSeen = p[-1] == '=';
  while (true) {
    p = cc::skipSpace(p, end);
    if (p == end) return cc::MsgAttributeUnended;
    const char c = *p++;
    if (c == '"' && equalsSeen) return ReadOk;
    if (c != '=') {
      return equalsSeen ? cc::MsgAttributeNoOpeningQuote : cc::MsgAttributeNoEqualsSign;
    }
    if (equalsSeen) return cc::MsgAttributeSecondEqualsSign;
    equalsSeen = true;
  }
}

// From a value's first byte to just past its closing quote. `control` becomes the first control
// byte of the value, or its end.
int readValue(const char*& p, const Ends& ends, ChPair& value, const char*& control) {
  const char* const begin = p;
  p = cc::findQuoteOrControl(p, ends.tag, ends.text);
  control = p;
  if (p != ends.tag && *p != '"') p = cc::findByte(p, ends.tag, '"');
  if (p == ends.tag) return cc::MsgAttributeUnclosed;
  value = ChPair(begin, p++);
  return ReadOk;
}

// An attribute of any form, from its name's first byte to just past its closing quote.
[[gnu::noinline]] int readAttribute(const char*& p, const Ends& ends, MLDoc::Attribute& attribute,
                                    const char*& control) {
  int failure = readName(p, ends, attribute.name);
  if (failure == ReadOk) failure = findValue(p, ends.tag);
  if (failure == ReadOk) failure = readValue(p, ends, attribute.value, control);
  return failure;
}

bool isLineBreak(char c) { return c == '\r' || c == '\n'; }

void trimLineBreaks(ChPair& value) {
  while (value.begin != value.end && isLineBreak(*value.begin)) ++value.begin;
  while (value.begin != value.end && isLineBreak(value.end[-1])) --value.end;
}

}  // namespace

// Attributes in their usual form; everything else is left to `anyAttribute`, which starts anew.
bool MLDoc::attribute(const Token& token, Attribute& attribute) {
  const char* const end = token.tag.end;
  const bool known = text && token.tag.begin >= text && end <= text + textSize;
  if (!known) return anyAttribute(token, attribute);
  const char* from = text + position;
  if (from <= token.tag.begin || from >= end) {
    if (!hasOwnName(token)) return anyAttribute(token, attribute);
    if (from == end && *token.name.end == '>') return false;
    from = token.name.end;
    if (*from == '/' && from + 2 != end) return anyAttribute(token, attribute);
  }
  if (end[-1] != '>') return anyAttribute(token, attribute);
  const char* p = from;
  while (cc::isSpaceByte(*p)) ++p;
  if (*p == '>' || *p == '/') {
    position = static_cast<unsigned int>(end - text);
    return false;
  }
  using cc::Window;
  cc::PlainAttribute plain = cc::findPlainAttribute<Window::blocks / 2>(p, text + textSize);
  if (!plain.nameEnd) plain = cc::findPlainAttribute<Window::blocks>(p, text + textSize);
  const char* const valueEnd = p + plain.valueEnd;
  if (!plain.nameEnd || valueEnd >= end || *p == '-') return anyAttribute(token, attribute);
  position = static_cast<unsigned int>(p + 1 - text) + plain.valueEnd;
  attribute.name = ChPair(p, plain.nameEnd);
  attribute.value = ChPair(plain.nameEnd + 2, valueEnd);
  return true;
}

bool MLDoc::anyAttribute(const Token& token, Attribute& attribute) {
  if (!cc::isInText(text, textSize, token.tag.begin) ||
      !cc::isInText(text, textSize, token.tag.end)) {
    erro(LocDictionaryCommonCore, cc::MsgAttributeUnended);
  }
  const Ends ends{token.tag.end, text + textSize};
  const char* p = text + position;
  const bool goesOn = p > token.tag.begin && p < ends.tag;
  int outcome = goesOn ? ReadOk : skipElementName(p, token);
  if (outcome == ReadOk) outcome = findName(p, ends.tag);
  const char* control = nullptr;
  if (outcome == ReadOk) outcome = readAttribute(p, ends, attribute, control);
  if (outcome == NoneLeft) p = ends.tag;
  position = static_cast<unsigned int>(p - text);
  if (outcome == NoneLeft) return false;
  if (outcome != ReadOk) erro(LocDictionaryCommonCore, outcome);
  if (control == attribute.value.end) return true;

  trimLineBreaks(attribute.value);
  const ChPair value = attribute.value;
  control = cc::findControl(value.begin, value.end);
  if (control == value.end) return true;
  warning(TTT(LocDictionaryCommonCore, getEndLineInAttributeWarningCode()), token, attribute);
  for (; control != value.end; control = cc::findControl(control, value.end)) {
    text[control - text] = ' ';
  }
  return true;
}

int MLDoc::getEndLineInAttributeWarningCode() { return cc::MsgAttributeControlByte; }

void MLDoc::warning(const TTT& /*message*/, const Token& /*token*/, Attribute& /*attribute*/) {}
