// Parsers of markup. Each starts from bytes in memory and makes the copy that it needs itself, in
// fresh memory as ours does. The parsers that build a tree walk it afterwards.

#include <expat.h>
#include <libxml/xmlreader.h>

#include <cstring>
#include <memory>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>

#include "peers.h"
#include "walk_sum.h"

namespace bench {
namespace {

using Rapid = rapidxml::xml_document<>;

// A terminated copy in memory of its own.
std::unique_ptr<char[]> terminatedCopy(const Document& document) {
  std::unique_ptr<char[]> copy(new char[document.bytes.size() + 1]);
  std::memcpy(copy.get(), document.bytes.data(), document.bytes.size());
  copy[document.bytes.size()] = 0;
  return copy;
}

// A walk in document order without recursion.
std::size_t walk(const Rapid& tree) {
  WalkSum sum;
  const rapidxml::xml_node<>* node = tree.first_node();
  while (node) {
    if (node->type() == rapidxml::node_element) {
      sum.element(node->name_size());
      for (const auto* a = node->first_attribute(); a; a = a->next_attribute()) {
        sum.attribute(a->name_size(), a->value_size());
      }
    }
    if (node->first_node()) {
      node = node->first_node();
      continue;
    }
    while (!node->next_sibling()) {
      node = node->parent();
      if (!node || !node->parent()) return sum.value();
    }
    node = node->next_sibling();
  }
  return sum.value();
}

std::size_t walk(const pugi::xml_document& tree) {
  WalkSum sum;
  pugi::xml_node node = tree.first_child();
  while (node) {
    if (node.type() == pugi::node_element) {
      sum.element(std::strlen(node.name()));
      for (auto a = node.first_attribute(); a; a = a.next_attribute()) {
        sum.attribute(std::strlen(a.name()), std::strlen(a.value()));
      }
    }
    if (node.first_child()) {
      node = node.first_child();
      continue;
    }
    while (!node.next_sibling()) {
      node = node.parent();
      if (!node || !node.parent()) return sum.value();
    }
    node = node.next_sibling();
  }
  return sum.value();
}

void XMLCALL countElement(void* user, const XML_Char* name, const XML_Char** attributes) {
  auto* sum = static_cast<WalkSum*>(user);
  sum->element(std::strlen(name));
  for (; *attributes; attributes += 2) {
    sum->attribute(std::strlen(attributes[0]), std::strlen(attributes[1]));
  }
}

void XMLCALL countTag(void* user, const XML_Char*, const XML_Char**) {
  ++*static_cast<std::size_t*>(user);
}

bool runExpat(const Document& document, void* user, XML_StartElementHandler handler) {
  XML_ParserStruct* const parser = XML_ParserCreate("UTF-8");
  XML_SetUserData(parser, user);
  XML_SetStartElementHandler(parser, handler);
  const bool parsed = XML_Parse(parser, document.bytes.data(),
                                static_cast<int>(document.bytes.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return parsed;
}

class Reader {
 public:
  explicit Reader(const Document& document)
      : reader(xmlReaderForMemory(document.bytes.data(), static_cast<int>(document.bytes.size()),
                                  nullptr, "UTF-8", XML_PARSE_HUGE | XML_PARSE_NONET)) {}
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() { xmlFreeTextReader(reader); }

  bool nextElement() {
    while (xmlTextReaderRead(reader) == 1) {
      if (xmlTextReaderNodeType(reader) == XML_READER_TYPE_ELEMENT) return true;
    }
    return false;
  }
  std::size_t nameLength() const { return length(xmlTextReaderConstName(reader)); }
  std::size_t valueLength() const { return length(xmlTextReaderConstValue(reader)); }
  bool nextAttribute() { return xmlTextReaderMoveToNextAttribute(reader) == 1; }

 private:
  static std::size_t length(const xmlChar* s) {
    return s ? std::strlen(reinterpret_cast<const char*>(s)) : 0;
  }

  xmlTextReaderPtr reader;
};

std::size_t walkReader(const Document& document) {
  Reader reader(document);
  WalkSum sum;
  while (reader.nextElement()) {
    sum.element(reader.nameLength());
    while (reader.nextAttribute()) sum.attribute(reader.nameLength(), reader.valueLength());
  }
  return sum.value();
}

}  // namespace

void addWalkPeers(Row& row, const Document& document) {
  row.peer("rapidxml", [&document] {
    const std::unique_ptr<char[]> copy = terminatedCopy(document);
    const auto tree = std::make_unique<Rapid>();
    tree->parse<rapidxml::parse_fastest>(copy.get());
    return walk(*tree);
  });
  row.peer("pugixml", [&document] {
    const std::size_t size = document.bytes.size();
    void* copy = pugi::get_memory_allocation_function()(size);
    std::memcpy(copy, document.bytes.data(), size);
    pugi::xml_document tree;
    tree.load_buffer_inplace_own(copy, size, pugi::parse_minimal, pugi::encoding_utf8);
    return walk(tree);
  });
  row.peer("expat", [&document] {
    WalkSum sum;
    return runExpat(document, &sum, countElement) ? sum.value() : 0;
  });
  row.peer("libxml2", [&document] { return walkReader(document); });
}

// The copies are made before the timed run; expat and libxml2 need none.
void addParsePeers(Row& row, const Document& document, Buffer<char>& copy) {
  row.unlikePeer("rapidxml", [&copy]() -> std::size_t {
    const auto tree = std::make_unique<Rapid>();
    tree->parse<rapidxml::parse_fastest>(copy.data());
    return tree->first_node() != nullptr;
  });
  row.unlikePeer("pugixml", [&copy, &document]() -> std::size_t {
    pugi::xml_document tree;
    return tree.load_buffer_inplace(copy.data(), document.bytes.size(), pugi::parse_minimal,
                                    pugi::encoding_utf8);
  });
  row.peer("expat", [&document] {
    std::size_t count = 0;
    return runExpat(document, &count, countTag) ? count : 0;
  });
  row.peer("libxml2", [&document] {
    Reader reader(document);
    std::size_t count = 0;
    while (reader.nextElement()) ++count;
    return count;
  });
}

}  // namespace bench
