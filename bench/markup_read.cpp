// Reading documents: the walk that looks at every attribute, the tokenizer alone, and entities.

#include <cstring>
#include <memory>

#include "families.h"
#include "harness.h"
#include "inputs.h"
#include "mlproc.h"
#include "peers.h"
#include "walk_sum.h"

namespace bench {
namespace {

std::size_t walkAll(MLDoc& doc) {
  WalkSum sum;
  MLDoc::Token token;
  MLDoc::Attribute attribute;
  while (doc.step(token)) {
    if (token.type != MLDoc::Token::Element || !token.opening) continue;
    sum.element(token.name.length());
    while (doc.attribute(token, attribute)) {
      sum.attribute(attribute.name.length(), attribute.value.length());
    }
  }
  return sum.value();
}

void walking(Bench& bench, const Document& document) {
  Row row("markup, load and walk", document.name);
  row.bytes(document.bytes.size());
  row.ours([&document] {
    MLDoc doc;
    doc.load(nullptr, document.bytes.data(), static_cast<int>(document.bytes.size()));
    return walkAll(doc);
  });
  addWalkPeers(row, document);
  bench.run(std::move(row.atLeast(1).atLeast(8, "expat")));
}

// Loads untimed before every run.
void stepping(Bench& bench, const Document& document) {
  Row row("markup, step only", document.name);
  MLDoc doc;
  Buffer<char> copy(document.bytes.size() + 1);
  row.bytes(document.bytes.size());
  row.before(
      [&] { doc.load(nullptr, document.bytes.data(), static_cast<int>(document.bytes.size())); });
  row.ours([&doc] {
    std::size_t count = 0;
    MLDoc::Token token;
    while (doc.step(token)) count += token.opening;
    return count;
  });
  row.before([&] {
    std::memcpy(copy.data(), document.bytes.data(), document.bytes.size());
    copy.data()[document.bytes.size()] = 0;
  });
  addParsePeers(row, document, copy);
  bench.run(std::move(row.atLeast(1.2)));
}

struct Entity {
  std::string_view name;
  char meaning;
};

constexpr Entity entities[] = {
    {"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};

// Replaces the entity at `p`, behind its '&'; null for none of the five.
const char* decodeEntity(const char* p, const char* end, char*& out) {
  const std::string_view rest(p, static_cast<std::size_t>(end - p));
  for (const Entity& entity : entities) {
    if (rest.substr(0, entity.name.size()) == entity.name) {
      *out++ = entity.meaning;
      return p + entity.name.size();
    }
  }
  return nullptr;
}

using Holder = std::unique_ptr<char[]>;

std::size_t decodeByBytes(std::string_view source, Holder& holder) {
  holder.reset();
  holder.reset(new char[source.size() + 1]);
  char* out = holder.get();
  const char *p = source.data(), *end = p + source.size();
  while (p && p < end) {
    if (*p != '&') {
      *out++ = *p++;
    } else {
      p = decodeEntity(p + 1, end, out);
    }
  }
  *out = 0;
  return 0;
}

std::size_t decodeByMemchr(std::string_view source, Holder& holder) {
  holder.reset();
  holder.reset(new char[source.size() + 1]);
  char* out = holder.get();
  const char *p = source.data(), *end = p + source.size();
  while (p && p < end) {
    const auto room = static_cast<std::size_t>(end - p);
    const auto* found = static_cast<const char*>(std::memchr(p, '&', room));
    const std::size_t run = found ? static_cast<std::size_t>(found - p) : room;
    std::memcpy(out, p, run);
    out += run;
    p = found ? decodeEntity(found + 1, end, out) : end;
  }
  *out = 0;
  return 0;
}

void decoding(Bench& bench, const char* input, const std::string& source) {
  Row row("convertEscape", input);
  MLDoc doc;
  ChArr out;
  Holder holder;
  row.bytes(source.size());
  row.output([&out] { return std::string(out.c_str()); });
  row.ours([&]() -> std::size_t {
    doc.convertEscape(ChPair(source.data(), source.data() + source.size()), out);
    return 0;
  });
  row.output([&holder] { return std::string(holder.get()); });
  row.peer("byte loop", [&] { return decodeByBytes(source, holder); });
  row.peer("memchr loop", [&] { return decodeByMemchr(source, holder); });
  bench.run(std::move(row.atLeast(1)));
}

// An entity in about every `distance` bytes.
std::string escapedText(std::size_t size, std::size_t distance) {
  Random random(51);
  const std::string plain = sentences(French, size, 9);
  std::string text;
  for (std::size_t i = 0; i < plain.size(); ++i) {
    text += plain[i];
    const bool boundary = i + 1 == plain.size() || (plain[i + 1] & 0xC0) != 0x80;
    if (boundary && random.below(distance) == 0) {
      text += "&";
      text += entities[random.below(5)].name;
    }
  }
  return text;
}

}  // namespace

void readingRows(Bench& bench) {
  for (const auto row : {walking, stepping}) {
    for (const Document& document : realDocuments()) row(bench, document);
    const char* operation = row == walking ? "markup, load and walk" : "markup, step only";
    if (bench.wants(operation, "50 MB of attributes")) row(bench, attributeRecords());
    if (bench.wants(operation, "50 MB of text")) row(bench, textRecords());
  }
  decoding(bench, "entity in 12 bytes, 1 MB", escapedText(megabyte, 12));
  decoding(bench, "entity in 100 bytes, 1 MB", escapedText(megabyte, 100));
  decoding(bench, "no entity, 1 MB", sentences(French, megabyte, 9));
  decoding(bench, "no entity, 24 bytes", sentences(Ascii, 24, 9));
}

}  // namespace bench
