// MLDoc::step: the next tag, instruction or comment.
//
// The readers below move a pointer over the text and answer with the number of an error, so that
// the document's position is stored in one place, before anything is thrown.

#include <algorithm>

#include "loc/message_numbers.h"
#include "markup/char_class.h"
#include "markup/scan.h"
#include "mlproc.h"

namespace {

using cc::classOf;

constexpr int ReadOk = -1;
constexpr int maxNameLength = 510;

// From the byte after a tag's name, or after `<?`, to just past the `>` outside of quotes.
int readToTagEnd(const char*& p, const char* end) {
  while (true) {
    p = cc::findQuoteOrTagEnd(p, end);
    if (p == end) return cc::MsgTagUnclosed;
    if (*p++ == '>') return ReadOk;
    p = cc::findByte(p, end, '"');
    if (p == end) return cc::MsgTagUnclosed;
    ++p;
  }
}

// From the byte after `<!` to just past the first `-->`, of which the four bytes that are skipped
// unseen may hold the hyphens.
int readToCommentEnd(const char*& p, const char* end) {
  if (end - p < 4) {
    p = end;
    return cc::MsgCommentUnclosed;
  }
  p += 4;
  while (true) {
    p = cc::findByte(p, end, '>');
    if (p == end) return cc::MsgCommentUnclosed;
    ++p;
    if (p[-2] == '-' && p[-3] == '-') return ReadOk;
  }
}

// From a name's first byte to just past the byte that ends it.
int readName(const char*& p, const char* end, ChPair& name) {
  const char* const begin = p;
  const char* const limit = end - p > maxNameLength ? p + maxNameLength + 1 : end;
  p = cc::findNameEnd(p, limit);
  if (p == limit) {
    return p - begin > maxNameLength ? cc::MsgElementNameTooLong : cc::MsgTagUnclosed;
  }
  const char ending = *p++;
  if (classOf(ending) == cc::ClassOther) return cc::MsgElementNameBadByte;
  if (ending == '<') return cc::MsgElementNameLessThan;
  if (p - 1 == begin) return cc::MsgElementNameEmpty;
  name = ChPair(begin, p - 1);
  return ReadOk;
}

// From an element tag's name to just past its end.
int readElement(const char*& p, const char* end, ChPair& name) {
  const int failure = readName(p, end, name);
  if (failure != ReadOk || p[-1] == '>') return failure;
  return readToTagEnd(p, end);
}

void setShape(MLDoc::Token& token, int type, bool opening, bool closing) {
  token.type = type;
  token.opening = opening;
  token.closing = closing;
}

// From the byte after `<` to just past the markup.
int readMarkup(const char*& p, const char* end, MLDoc::Token& token) {
  if (p == end) return cc::MsgTagUnclosed;
  switch (*p) {
    case '/':
      ++p;
      setShape(token, MLDoc::Token::Element, false, true);
      --token.depth;
      return readElement(p, end, token.name);
    case '?':
      ++p;
      setShape(token, MLDoc::Token::Instruction, false, false);
      return readToTagEnd(p, end);
    case '!':
      ++p;
      setShape(token, MLDoc::Token::Comment, false, false);
      return readToCommentEnd(p, end);
    default:
      break;
  }
  setShape(token, MLDoc::Token::Element, true, false);
  const int failure = readElement(p, end, token.name);
  if (failure != ReadOk) return failure;
  token.closing = p[-2] == '/';
  if (!token.closing) ++token.depth;
  return ReadOk;
}

}  // namespace

bool MLDoc::step(Token& token) {
  if (!text) return false;
  const char* const end = text + textSize;
  const char* const begin = cc::findByte(text + std::min(position, textSize), end, '<');
  if (begin == end) {
    position = textSize;
    return false;
  }
  const char* p = begin + 1;
  const int failure = readMarkup(p, end, token);
  token.tag = ChPair(begin, p);
  position = static_cast<unsigned int>(p - text);
  if (failure != ReadOk) erro(LocDictionaryCommonCore, failure);
  return true;
}
