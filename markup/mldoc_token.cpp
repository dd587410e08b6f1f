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
  p = cc::findTagEnd(p, end);
  if (p == end) return cc::MsgTagUnclosed;
  ++p;
  return ReadOk;
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
  p = cc::findNameEndInside(p, limit, end);
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

// From the byte after `<?` or `<!` to just past the markup.
int readOther(const char*& p, const char* end, MLDoc::Token& token) {
  token.opening = false;
  token.closing = false;
  if (p[-1] == '?') {
    token.type = MLDoc::Token::Instruction;
    return readToTagEnd(p, end);
  }
  token.type = MLDoc::Token::Comment;
  return readToCommentEnd(p, end);
}

// From the byte after `<` to just past the markup. Start and end tags take the same way, since
// which of them comes next is hard to predict.
int readMarkup(const char*& p, const char* end, MLDoc::Token& token) {
  if (p == end) return cc::MsgTagUnclosed;
  if (*p == '?' || *p == '!') return readOther(++p, end, token);
  const bool isEnd = *p == '/';
  p += isEnd;
  token.type = MLDoc::Token::Element;
  token.opening = !isEnd;
  token.closing = isEnd;
  token.depth -= isEnd;
  const char* const begin = p;
  int failure = readName(p, end, token.name);
  if (failure != ReadOk) return failure;
  // The name holds nothing that matters here, and searching from its begin need not wait for its
  // end.
  p = begin;
  failure = readToTagEnd(p, end);
  if (failure != ReadOk) return failure;
  // Behind a name there is never a '/' right before the '>'.
  const bool isEmpty = !isEnd && p[-2] == '/';
  token.closing = isEnd || isEmpty;
  token.depth += !isEnd && !isEmpty;
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
