// {fmt} on messages and attributes, and the writers of libxml2, pugixml and tinyxml2. All of them
// keep their memory from run to run where they can.

#include <fmt/compile.h>
#include <fmt/format.h>
#include <libxml/xmlwriter.h>
#include <tinyxml2.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <pugixml.hpp>

#include "peers.h"

namespace bench {
namespace {

// In the order of MessageInput's texts.
enum Part { Single, Heading, Failure, File, Position };

template <class... Values>
void append(std::string& out, const std::string& format, const Values&... values) {
  fmt::vformat_to(std::back_inserter(out), format, fmt::make_format_args(values...));
}

using Memory = fmt::memory_buffer;

void appendEscaped(Memory& out, const std::string& value) {
  std::size_t start = 0;
  for (;;) {
    const std::size_t special = value.find_first_of("\"'&<>", start);
    out.append(value.data() + start,
               value.data() + (special == value.npos ? value.size() : special));
    if (special == value.npos) return;
    const char* entity = value[special] == '&'   ? "&amp;"
                         : value[special] == '<' ? "&lt;"
                         : value[special] == '>' ? "&gt;"
                         : value[special] == '"' ? "&quot;"
                                                 : "&apos;";
    out.append(std::string_view(entity));
    start = special + 1;
  }
}

void formatAttribute(Memory& out, const AttributeInput& input, ValueKind kind, std::size_t i) {
  const std::string& name = input.names[i];
  const auto to = std::back_inserter(out);
  switch (kind) {
    case ValueKind::Integer:
      fmt::format_to(to, FMT_COMPILE(" {}=\"{}\""), name, input.integers[i]);
      break;
    case ValueKind::Double:
      fmt::format_to(to, FMT_COMPILE(" {}=\"{:f}\""), name, input.doubles[i]);
      break;
    case ValueKind::String:
      fmt::format_to(to, FMT_COMPILE(" {}=\""), name);
      appendEscaped(out, input.strings[i]);
      out.push_back('"');
      break;
    case ValueKind::Date: {
      std::tm t;
      gmtime_r(&input.dates[i], &t);
      fmt::format_to(to, FMT_COMPILE(" {}=\"{:04}-{:02}-{:02}T{:02}:{:02}:{:02}\""), name,
                     t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
      break;
    }
  }
}

// What the C library makes of a value, for the writers that only know its text, or write a number
// in another form.
const char* asText(char (&buffer)[400], const AttributeInput& input, ValueKind kind,
                   std::size_t i) {
  switch (kind) {
    case ValueKind::Integer:
      std::snprintf(buffer, sizeof buffer, "%d", input.integers[i]);
      break;
    case ValueKind::String:
      return input.strings[i].c_str();
    case ValueKind::Double:
      std::snprintf(buffer, sizeof buffer, "%f", input.doubles[i]);
      break;
    case ValueKind::Date: {
      std::tm t;
      gmtime_r(&input.dates[i], &t);
      std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d", t.tm_year + 1900,
                    t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
      break;
    }
  }
  return buffer;
}

const xmlChar* xml(const char* s) { return reinterpret_cast<const xmlChar*>(s); }

struct StringWriter : pugi::xml_writer {
  explicit StringWriter(std::string& text) : target(text) {}
  void write(const void* data, std::size_t size) override {
    target.append(static_cast<const char*>(data), size);
  }
  std::string& target;
};

void addLibxml2(Row& row, const AttributeInput& input, ValueKind kind) {
  const std::shared_ptr<xmlBuffer> buffer(xmlBufferCreate(), xmlBufferFree);
  row.output([buffer] {
    const std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
                           static_cast<std::size_t>(xmlBufferLength(buffer.get())));
    const std::size_t start = text.find("<e");  // behind the declaration
    return text.substr(start, text.rfind('>') + 1 - start);
  });
  row.peer("libxml2", [&input, kind, buffer]() -> std::size_t {
    char text[400];
    xmlBufferEmpty(buffer.get());
    xmlTextWriter* const writer = xmlNewTextWriterMemory(buffer.get(), 0);
    // Without an encoding it would write references for all that is not ASCII.
    xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr);
    xmlTextWriterStartElement(writer, xml("e"));
    for (std::size_t i = 0; i < input.names.size(); ++i) {
      xmlTextWriterWriteAttribute(writer, xml(input.names[i].c_str()),
                                  xml(asText(text, input, kind, i)));
    }
    xmlTextWriterEndElement(writer);
    xmlFreeTextWriter(writer);
    return 0;
  });
}

void addTinyxml2(Row& row, const AttributeInput& input, ValueKind kind) {
  const auto printer = std::make_shared<tinyxml2::XMLPrinter>(nullptr, true);
  row.output([printer] { return std::string(printer->CStr()); });
  row.peer("tinyxml2", [&input, kind, printer]() -> std::size_t {
    char text[400];
    printer->ClearBuffer();
    printer->OpenElement("e", true);
    for (std::size_t i = 0; i < input.names.size(); ++i) {
      if (kind == ValueKind::Integer) {
        printer->PushAttribute(input.names[i].c_str(), input.integers[i]);
      } else {
        printer->PushAttribute(input.names[i].c_str(), asText(text, input, kind, i));
      }
    }
    printer->CloseElement(true);
    return 0;
  });
}

}  // namespace

void addMessagePeers(Row& row, const MessageInput& input, std::string& out) {
  row.peer("{fmt}", [&] {
    out.clear();
    append(out, input.braceTexts[Single], input.path, input.line, input.column);
    return out.size();
  });
}

void addReportPeers(Row& row, const MessageInput& input, std::string& out) {
  row.peer("{fmt}", [&] {
    out.clear();
    append(out, input.braceTexts[Heading]);
    append(out, input.braceTexts[Failure]);
    append(out, input.braceTexts[File], input.path);
    append(out, input.braceTexts[Position], input.line, input.column);
    return out.size();
  });
}

void addAttributePeers(Row& row, const AttributeInput& input, ValueKind kind, std::string& out) {
  const auto memory = std::make_shared<Memory>();
  row.output([memory] { return std::string(memory->data(), memory->size()); });
  row.peer("{fmt}", [&input, kind, memory]() -> std::size_t {
    memory->clear();
    memory->append(std::string_view("<e"));
    for (std::size_t i = 0; i < input.names.size(); ++i) formatAttribute(*memory, input, kind, i);
    memory->append(std::string_view("/>"));
    return 0;
  });
  row.output([&out] { return out; });
  row.peer("pugixml", [&input, kind, &out]() -> std::size_t {
    char text[400];
    pugi::xml_document tree;
    pugi::xml_node node = tree.append_child("e");
    for (std::size_t i = 0; i < input.names.size(); ++i) {
      pugi::xml_attribute attribute = node.append_attribute(input.names[i].c_str());
      if (kind == ValueKind::Integer) {
        attribute.set_value(input.integers[i]);
      } else {
        attribute.set_value(asText(text, input, kind, i));
      }
    }
    out.clear();
    StringWriter writer(out);
    tree.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return 0;
  });
  addLibxml2(row, input, kind);
  addTinyxml2(row, input, kind);
}

}  // namespace bench
