// MLDoc::step: the next tag, instruction or comment.
//
// The readers below take a pointer into the text and answer with the one that they came to and the
// number of an error, so that the document's position is stored in one place, before anything is
// thrown.

#include "loc/message_numbers.h"
#include "markup/char_class.h"
#include "markup/scan.h"
#include "mlproc.h"

namespace {

using cc::classOf;

constexpr int ReadOk = -1;
constexpr int maxNameLength = 510;

struct Reading {
  const char* p;
  int failure;
};

// From the byte after `<`, or after `<?`, to just past the `>` outside of quotes.
[[gnu::noinline]] Reading readToTagEnd(const char* p, const char* end) {
  p = cc::findTagEnd(p, end);
  if (p == end) return {p, cc::MsgTagUnclosed};
  return {p + 1, ReadOk};
}

// From the byte after `<!` to just past the first `-->`, of which the four bytes that are skipped
// unseen may hold the hyphens.
Reading readToCommentEnd(const char* p, const char* end) {
  if (end - p < 4) return {end, cc::MsgCommentUnclosed};
  p += 4;
  while (true) {
    p = cc::findByte(p, end, '>');
    if (p == end) return {end, cc::MsgCommentUnclosed};
    ++p;
    if (p[-2] == '-' && p[-3] == '-') return {p, ReadOk};
  }
}

// From the `?` or `!` to just past the markup.
[[gnu::noinline]] Reading readOther(const char* p, const char* end, MLDoc::Token& token) {
  token.opening = false;
  token.closing = false;
  if (*p == '?') {
    token.type = MLDoc::Token::Instruction;
    return readToTagEnd(p + 1, end);
  }
  token.type = MLDoc::Token::Comment;
  return readToCommentEnd(p + 1, end);
}

bool endsElementName(char c) { return cc::isSpaceByte(c) || c == '/' || c == '>'; }

// From a name's first byte to its end, or to just past what is wrong with it.
[[gnu::noinline]] Reading readAnyName(const char* begin, const char* end) {
  const char* const limit = end - begin > maxNameLength ? begin + maxNameLength + 1 : end;
  const char* const p = cc::findNameEnd(begin, limit, end);
  if (p == limit) {
    return {p, p - begin > maxNameLength ? cc::MsgElementNameTooLong : cc::MsgTagUnclosed};
  }
  if (classOf(*p) == cc::ClassOther) return {p + 1, cc::MsgElementNameBadByte};
  if (*p == '<') return {p + 1, cc::MsgElementNameLessThan};
  if (p == begin) return {p + 1, cc::MsgElementNameEmpty};
  return {p, ReadOk};
}

Reading readName(const char* p, const char* end) {
  const char* const nameEnd = cc::findShortNameEnd(p, end);
  if (nameEnd && nameEnd != p && endsElementName(*nameEnd)) return {nameEnd, ReadOk};
  return readAnyName(p, end);
}

// From the byte after `<` to just past the markup. Start and end tags take the same way, since
// which of them comes next is hard to predict.
Reading readMarkup(const char* p, const char* end, MLDoc::Token& token) {
  if (p == end) return {p, cc::MsgTagUnclosed};
  if (*p == '?' || *p == '!') return readOther(p, end, token);
  const bool isEnd = *p == '/';
  token.type = MLDoc::Token::Element;
  token.opening = !isEnd;
  token.closing = isEnd;
  token.depth -= isEnd;
  const char* const nameBegin = p + isEnd;
  const Reading name = readName(nameBegin, end);
  if (name.failure != ReadOk) return name;
  token.name = ChPair(nameBegin, name.p);
  // A name holds nothing that matters here: the search for the tag's end need not wait for it.
  const Reading tag = readToTagEnd(p, end);
  if (tag.failure != ReadOk) return tag;
  // Behind a name there is never a '/' right before the '>'.
  const bool closing = isEnd | (tag.p[-2] == '/');
  token.closing = closing;
  token.depth += !closing;
  return tag;
}

}  // namespace

// Tags in their usual form; everything else is left to `anyStep`, which starts anew.
bool MLDoc::step(Token& token) {
  using Block = cc::kernels::NativeBlock;
  // A window, and a block for a name that ends in it. Narrow windows seldom show a whole tag.
  constexpr unsigned int needed = cc::Window::size + Block::size;
  if constexpr (cc::Window::bitsPerByte != 1) return anyStep(token);
  if (!text || position > textSize || textSize - position < needed) return anyStep(token);
  const char* const from = text + position;
  const cc::NearTag near = cc::findNearTag(from);
  const char* const begin = from + near.begin;
  const char* const end = from + near.last + 1;
  if (near.inside == 0 || *begin != '<' || end[-1] != '>') return anyStep(token);
  const char* const nameBegin = begin + 1 + (begin[1] == '/');
  const char* const nameEnd = cc::findNameEndAhead(nameBegin);
  if (nameEnd == nameBegin) return anyStep(token);
  if (nameEnd + 1 != end) {
    const cc::Window::Mask quotes = cc::Window::equal(from, '"') & near.inside;
    if (!endsElementName(*nameEnd) || cc::isOdd(quotes)) return anyStep(token);
  }
  position = position + 1 + near.last;
  const bool isEnd = nameBegin != begin + 1;
  const bool closing = isEnd | (end[-2] == '/');
  token.name = ChPair(nameBegin, nameEnd);
  token.tag = ChPair(begin, end);
  token.type = Token::Element;
  token.depth += !closing - isEnd;
  token.opening = !isEnd;
  token.closing = closing;
  return true;
}

bool MLDoc::anyStep(Token& token) {
  if (!text || position > textSize) return false;
  const char* const end = text + textSize;
  const char* const from = text + position;
  const char* const begin = cc::findTagBegin(from, end);
  if (begin == end) {
    position = textSize;
    return false;
  }
  const Reading markup = readMarkup(begin + 1, end, token);
  token.tag = ChPair(begin, markup.p);
  position = static_cast<unsigned int>(markup.p - text);
  if (markup.failure != ReadOk) erro(LocDictionaryCommonCore, markup.failure);
  cc::fetchAhead(from, markup.p, end);
  return true;
}
