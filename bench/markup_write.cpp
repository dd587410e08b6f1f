// Writing attributes of each kind of value, and escaping text. All contestants write one element
// with a thousand attributes into memory.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>

#include "families.h"
#include "harness.h"
#include "inputs.h"
#include "mlproc.h"
#include "peers.h"

namespace bench {
namespace {

constexpr std::size_t attributeCount = 1000;

AttributeInput makeInput() {
  const std::vector<const char*> names = {"id",    "x",    "y",     "width", "height", "state",
                                          "title", "size", "count", "date",  "layer",  "opacity"};
  const std::string prose = sentences(French, 4096, 13) + sentences(Ascii, 4096, 13);
  Random random(61);
  AttributeInput input;
  for (std::size_t i = 0; i < attributeCount; ++i) {
    input.names.emplace_back(names[random.below(names.size())]);
    const int magnitude = static_cast<int>(random.below(random.below(3) ? 1000 : 2000000000));
    input.integers.push_back(random.below(5) ? magnitude : -magnitude);
    input.doubles.push_back(random.below(4) ? static_cast<double>(magnitude) / 1000
                                            : static_cast<double>(random.below(100)) / 7);
    input.dates.push_back(static_cast<std::time_t>(random.below(2000000000)));
    std::size_t start = random.below(prose.size() - 40);
    std::size_t end = start + random.below(32);
    while ((prose[start] & 0xC0) == 0x80) ++start;
    while ((prose[end] & 0xC0) == 0x80) ++end;
    std::string text = end > start ? prose.substr(start, end - start) : "";
    for (char& c : text) c = c == '\n' ? ' ' : c;  // not every writer leaves them as they are
    if (random.below(10) == 0) text += "<&";       // what all writers escape in the same way
    input.strings.push_back(std::move(text));
  }
  return input;
}

void write(MLDocOut& out, const AttributeInput& input, ValueKind kind, std::size_t i) {
  const char* name = input.names[i].c_str();
  switch (kind) {
    case ValueKind::Integer:
      return out.writeIntAttr(name, input.integers[i], false);
    case ValueKind::String:
      return out.writeStrAttr(name, input.strings[i].c_str(), false);
    case ValueKind::Double:
      return out.writeDoubleAttr(name, input.doubles[i], false);
    case ValueKind::Date:
      return out.writeDateAttr(name, input.dates[i], false);
  }
}

// Appends to a buffer that is large enough: the least that has to be done.
class Appender {
 public:
  explicit Appender(char* buffer) : start(buffer), end(buffer) {}

  void text(std::string_view s) {
    std::memcpy(end, s.data(), s.size());
    end += s.size();
  }
  void number(int value) { end = std::to_chars(end, end + 16, value).ptr; }
  void number(double value) {
    end = std::to_chars(end, end + 400, value, std::chars_format::fixed, 6).ptr;
  }
  void digits(int value, int count) {
    for (int i = count; i-- > 0; value /= 10) end[i] = static_cast<char>('0' + value % 10);
    end += count;
  }
  void date(std::time_t time) {
    std::tm parts;
    gmtime_r(&time, &parts);
    const std::pair<int, const char*> fields[] = {{parts.tm_mon + 1, "-"},
                                                  {parts.tm_mday, "-"},
                                                  {parts.tm_hour, "T"},
                                                  {parts.tm_min, ":"},
                                                  {parts.tm_sec, ":"}};
    digits(parts.tm_year + 1900, 4);
    for (const auto& [value, before] : fields) {
      *end++ = *before;
      digits(value, 2);
    }
  }
  void value(const AttributeInput& input, ValueKind kind, std::size_t i) {
    switch (kind) {
      case ValueKind::Integer:
        return number(input.integers[i]);
      case ValueKind::String:
        return text(input.strings[i]);
      case ValueKind::Double:
        return number(input.doubles[i]);
      case ValueKind::Date:
        return date(input.dates[i]);
    }
  }
  std::size_t size() const { return static_cast<std::size_t>(end - start); }

 private:
  char* start;
  char* end;
};

void attributes(Bench& bench, const char* name, const AttributeInput& input, ValueKind kind,
                double bar) {
  Row row("MLDocOut, attribute", name);
  Bag bag;
  std::string out;
  Buffer<char> room(attributeCount * 512);
  row.items(attributeCount);
  row.output([&bag] {  // without the line end, which is our own
    return std::string(bag.getBuffer(), static_cast<std::size_t>(bag.getSize()) - 1);
  });
  row.ours([&, kind]() -> std::size_t {
    MLDocOut writer;
    writer.multiLine = false;
    bag.setPosition(0);
    writer.begin(&bag);
    writer.beginItem("e");
    for (std::size_t i = 0; i < attributeCount; ++i) write(writer, input, kind, i);
    writer.endItem(nullptr);
    return 0;
  });
  row.output([&out] { return out; });
  addAttributePeers(row, input, kind, out);
  row.limit("to_chars", [&, kind] {
    Appender appender(room.data());
    appender.text("<e");
    for (std::size_t i = 0; i < attributeCount; ++i) {
      appender.text(" ");
      appender.text(input.names[i]);
      appender.text("=\"");
      appender.value(input, kind, i);
      appender.text("\"");
    }
    appender.text("/>");
    return appender.size();
  });
  bench.run(std::move(row.atLeast(bar)));
}

std::string_view entityOf(char c) {
  switch (c) {
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

using Holder = std::unique_ptr<char[]>;

// Counts, allocates, writes.
std::size_t escapeInTwoPasses(std::string_view source, Holder& holder) {
  std::size_t size = 0;
  for (const char c : source) {
    const std::string_view entity = entityOf(c);
    size += entity.empty() ? 1 : entity.size();
  }
  holder.reset();
  holder.reset(new char[size + 1]);
  char* out = holder.get();
  for (const char c : source) {
    const std::string_view entity = entityOf(c);
    if (entity.empty()) {
      *out++ = c;
    } else {
      out = std::copy(entity.begin(), entity.end(), out);
    }
  }
  *out = 0;
  return 0;
}

// Writes into room for the worst case.
std::size_t escapeInOnePass(std::string_view source, Holder& holder) {
  holder.reset();
  holder.reset(new char[6 * source.size() + 1]);
  char* out = holder.get();
  for (const char c : source) {
    const std::string_view entity = entityOf(c);
    if (entity.empty()) {
      *out++ = c;
    } else {
      out = std::copy(entity.begin(), entity.end(), out);
    }
  }
  *out = 0;
  return 0;
}

void escaping(Bench& bench, const char* input, const std::string& source) {
  Row row("escapeString", input);
  ChArr out;
  Holder holder;
  row.bytes(source.size());
  row.output([&out] { return std::string(out.c_str()); });
  row.ours([&]() -> std::size_t {
    MLDocOut::escapeString(ChPair(source.data(), source.data() + source.size()), out);
    return 0;
  });
  row.output([&holder] { return std::string(holder.get()); });
  row.peer("byte loop, 2 passes", [&] { return escapeInTwoPasses(source, holder); });
  row.peer("byte loop, 1 pass", [&] { return escapeInOnePass(source, holder); });
  bench.run(std::move(row.atLeast(3)));
}

// A special character in about every `distance` bytes.
std::string specialText(std::size_t size, std::size_t distance) {
  Random random(71);
  std::string text = sentences(French, size, 9);
  for (char& c : text) {
    if ((c & 0x80) == 0 && random.below(distance) == 0) c = "\"'&<>"[random.below(5)];
  }
  return text;
}

}  // namespace

void writingRows(Bench& bench) {
  const AttributeInput input = makeInput();
  attributes(bench, "integer", input, ValueKind::Integer, 1);
  attributes(bench, "string", input, ValueKind::String, 1);
  attributes(bench, "double", input, ValueKind::Double, 2);
  attributes(bench, "date", input, ValueKind::Date, 3);
  escaping(bench, "special in 12 bytes, 1 MB", specialText(megabyte, 12));
  escaping(bench, "special in 100 bytes, 1 MB", specialText(megabyte, 100));
  escaping(bench, "no special, 1 MB", sentences(Cyrillic, megabyte, 9));
  escaping(bench, "no special, 24 bytes", sentences(Ascii, 24, 9));
}

}  // namespace bench
