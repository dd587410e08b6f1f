// MLDoc: children, attributes by name and plain text content, all of them by stepping.

#include "charproc.h"
#include "loc/message_numbers.h"
#include "markup/text_range.h"
#include "mlproc.h"

namespace {

bool isCalled(const ChPair& name, const ChPair& wanted) {
  return streq(name.begin, name.length(), wanted.begin, wanted.length());
}

}  // namespace

MLDoc::ChildIterator::ChildIterator(MLDoc* document, Token& parent)
    : level(0), start(document->position), token(&parent), doc(document) {
  if (parent.tag.begin) {
    start = cc::offsetInText(doc->text, doc->textSize, parent.tag.end, start);
    doc->position = start;
    level = parent.closing ? -1 : parent.depth;
  } else if (doc->text) {
    const char* const here = doc->text + start;
    parent.name = ChPair(here, here);
    parent.tag = ChPair(here, here);
  }
}

bool MLDoc::ChildIterator::operator()() {
  if (level < 0) return false;
  while (true) {
    if (!doc->step(*token)) {
      if (level == 0) return false;
      doc->position = start;
      doc->erro(LocDictionaryCommonCore, cc::MsgElementUnclosed);
    }
    if (token->type == Token::Element && token->opening &&
        token->depth == (token->closing ? level : level + 1)) {
      return true;
    }
    if (level > token->depth) {
      level = -1;
      return false;
    }
  }
}

bool MLDoc::ChildIterator::operator()(const ChPair& wanted) {
  while ((*this)()) {
    if (isCalled(token->name, wanted)) return true;
  }
  return false;
}

MLDoc::AttributeIterator::AttributeIterator(MLDoc* document, const Token& tag)
    : doc(document), token(&tag) {
  doc->position = cc::offsetInText(doc->text, doc->textSize, tag.tag.begin, doc->position);
}

MLDoc::AttributeIterator::~AttributeIterator() {
  doc->position = cc::offsetInText(doc->text, doc->textSize, token->tag.end, doc->position);
}

bool MLDoc::AttributeIterator::operator()(Attribute& attribute, const ChPair& wanted) {
  while (doc->attribute(*token, attribute)) {
    if (isCalled(attribute.name, wanted)) return true;
  }
  return false;
}

ChPair MLDoc::content(Token& token) {
  Token next = token;
  if (token.closing || !token.tag.begin || !step(next) || next.opening || !next.closing) {
    erro(LocDictionaryCommonCore, cc::MsgNotPlainText);
  }
  token.depth = next.depth;
  return ChPair(token.tag.end, next.tag.begin);
}

ChPair MLDoc::getAttributeValue(const Token& token, const ChPair& wanted) {
  AttributeIterator find(this, token);
  Attribute attribute;
  return find(attribute, wanted) ? attribute.value : ChPair();
}
