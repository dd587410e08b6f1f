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

// From the tag's `<` over the element name to just past the white space that follows it.
int skipElementName(const char*& p, const char* end) {
  while (p != end) {
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
  switch (*p) {
    case '/':
    case '>':
    case '!':
    case '?':
    case '-':
      return NoneLeft;
    default:
      break;
  }
  if (classOf(*p) != cc::ClassOther) return ReadOk;
  ++p;
  return cc::MsgAttributeNameBadStart;
}

// From a name's first byte, which may be a `<`, to just past the byte that ends it.
int readName(const char*& p, const char* end, ChPair& name) {
  const char* const begin = p;
  const char* const limit = end - p > maxNameLength ? p + maxNameLength + 1 : end;
  p = cc::findNameEnd(p + 1, limit);
  if (p == limit) {
    return p == end ? cc::MsgAttributeNameUnended : cc::MsgAttributeNameTooLong;
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
    if (c == '=') {
      if (equalsSeen) return cc::MsgAttributeSecondEqualsSign;
      equalsSeen = true;
    } else if (!equalsSeen) {
      return cc::MsgAttributeNoEqualsSign;
    } else {
      return c == '"' ? ReadOk : cc::MsgAttributeNoOpeningQuote;
    }
  }
}

// From a value's first byte to just past its closing quote.
int readValue(const char*& p, const char* end, ChPair& value) {
  const char* const begin = p;
  p = cc::findByte(p, end, '"');
  if (p == end) return cc::MsgAttributeUnclosed;
  value = ChPair(begin, p++);
  return ReadOk;
}

// One whole attribute, from the end of what stands before it.
int readAttribute(const char*& p, const char* end, MLDoc::Attribute& attribute) {
  int failure = findName(p, end);
  if (failure == ReadOk) failure = readName(p, end, attribute.name);
  if (failure == ReadOk) failure = findValue(p, end);
  if (failure == ReadOk) failure = readValue(p, end, attribute.value);
  return failure;
}

bool isLineBreak(char c) { return c == '\r' || c == '\n'; }

void trimLineBreaks(ChPair& value) {
  while (value.begin != value.end && isLineBreak(*value.begin)) ++value.begin;
  while (value.begin != value.end && isLineBreak(value.end[-1])) --value.end;
}

}  // namespace

bool MLDoc::attribute(const Token& token, Attribute& attribute) {
  const ChPair tag = token.tag;
  if (!cc::isInText(text, textSize, tag.begin) || !cc::isInText(text, textSize, tag.end)) {
    erro(LocDictionaryCommonCore, cc::MsgAttributeUnended);
  }
  const char* const end = tag.end;
  const char* p = text + position;
  int outcome = ReadOk;
  if (p <= tag.begin || p >= end) {
    p = tag.begin;
    outcome = skipElementName(p, end);
  }
  if (outcome == ReadOk) outcome = readAttribute(p, end, attribute);
  if (outcome == NoneLeft) p = end;
  position = static_cast<unsigned int>(p - text);
  if (outcome == NoneLeft) return false;
  if (outcome != ReadOk) erro(LocDictionaryCommonCore, outcome);

  trimLineBreaks(attribute.value);
  const ChPair value = attribute.value;
  const char* control = cc::findControl(value.begin, value.end);
  if (control == value.end) return true;
  warning(TTT(LocDictionaryCommonCore, getEndLineInAttributeWarningCode()), token, attribute);
  for (; control != value.end; control = cc::findControl(control, value.end)) {
    text[control - text] = ' ';
  }
  return true;
}

int MLDoc::getEndLineInAttributeWarningCode() { return cc::MsgAttributeControlByte; }

void MLDoc::warning(const TTT& /*message*/, const Token& /*token*/, Attribute& /*attribute*/) {}
