// Building and rendering messages, and loading their dictionaries. The same thousand texts stand
// in a .lng file and in a gettext catalogue with a hash table.

#include <libintl.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "families.h"
#include "harness.h"
#include "id_loc_loader.h"
#include "inputs.h"
#include "peers.h"
#include "scratch.h"
#include "tttproc.h"

namespace bench {
namespace {

constexpr int messageCount = 1000;
constexpr int stamp = 0x51A7;
constexpr int catalogueCount = 120;  // each can be loaded once in a process

// Numbers of the messages that the rows use, somewhere among the others.
enum Number { Single = 417, Heading = 88, Failure = 250, File = 600, Position = 911 };

struct Message {
  std::string id;    // what a gettext program asks for
  std::string text;  // in the language of the catalogue
};

std::vector<Message> makeMessages() {
  std::vector<Message> messages;
  for (int i = 0; i < messageCount; ++i) {
    const auto seed = static_cast<std::uint64_t>(i);
    const std::string number = std::to_string(i);
    messages.push_back({sentences(Ascii, 40, seed) + number, sentences(French, 60, seed) + number});
  }
  messages[Single] = {"The file %s is wrong in line %d, column %d",
                      "Le fichier %s est erroné à la ligne %d, colonne %d"};
  messages[Heading] = {"The document cannot be read: ", "Lecture du document impossible : "};
  messages[Failure] = {"an attribute has no value", "il manque la valeur d’un attribut"};
  messages[File] = {" (file %s)", " (fichier %s)"};
  messages[Position] = {", line %d, column %d", ", ligne %d, colonne %d"};
  return messages;
}

void appendWord(std::string& bytes, std::size_t value) {
  const auto word = static_cast<std::uint32_t>(value);
  bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
}

std::string lngFile(const std::vector<Message>& messages) {
  std::string pool, bytes;
  std::vector<std::size_t> offsets;
  for (const Message& message : messages) {
    offsets.push_back(pool.size());
    pool += message.text + '\0';
  }
  appendWord(bytes, 0);
  bytes += "LCLR";
  for (const std::size_t word :
       {std::size_t{1}, std::size_t{8}, std::size_t{stamp}, offsets.size(), pool.size()}) {
    appendWord(bytes, word);
  }
  for (const std::size_t offset : offsets) appendWord(bytes, offset);
  return bytes + pool;
}

std::uint32_t catalogueHash(const std::string& text) {
  std::uint32_t hash = 0;
  for (const char c : text) {
    hash = (hash << 4) + static_cast<unsigned char>(c);
    const std::uint32_t high = hash & 0xF0000000u;
    if (high) hash = (hash ^ high >> 24) ^ high;
  }
  return hash;
}

std::vector<std::uint32_t> catalogueTable(const std::vector<Message>& sorted) {
  constexpr std::uint32_t size = 1361;  // a prime above four thirds of the messages
  std::vector<std::uint32_t> table(size);
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const std::uint32_t hash = catalogueHash(sorted[i].id);
    std::uint32_t place = hash % size;
    const std::uint32_t step = 1 + hash % (size - 2);
    while (table[place]) place = (place + step) % size;
    table[place] = static_cast<std::uint32_t>(i + 1);
  }
  return table;
}

// The binary form of a catalogue: sorted by id, two tables of lengths and offsets, a hash table.
std::string gettextFile(std::vector<Message> messages) {
  messages.push_back({"", "Content-Type: text/plain; charset=UTF-8\n"});
  std::sort(messages.begin(), messages.end(),
            [](const Message& a, const Message& b) { return a.id < b.id; });
  const std::vector<std::uint32_t> table = catalogueTable(messages);
  const std::size_t n = messages.size(), ids = 28, texts = ids + 8 * n, hashes = texts + 8 * n;
  std::size_t place = hashes + 4 * table.size();
  std::string bytes, pool;
  for (const std::size_t word :
       {std::size_t{0x950412DE}, std::size_t{0}, n, ids, texts, table.size(), hashes}) {
    appendWord(bytes, word);
  }
  for (std::string Message::*part : {&Message::id, &Message::text}) {
    for (const Message& message : messages) {
      const std::string& text = message.*part;
      appendWord(bytes, text.size());
      appendWord(bytes, place + pool.size());
      pool += text + '\0';
    }
  }
  for (const std::uint32_t entry : table) appendWord(bytes, entry);
  return bytes + pool;
}

void replaceAll(std::string& text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
}

MessageInput inputOf(const std::vector<Message>& messages) {
  MessageInput input;
  for (const Number number : {Single, Heading, Failure, File, Position}) {
    std::string text = messages[number].text;
    input.printfTexts.push_back(text);
    replaceAll(text, "%s", "{}");
    replaceAll(text, "%d", "{}");
    input.braceTexts.push_back(text);
  }
  input.line = 1204;
  input.column = 17;
  input.path = "/usr/share/settings/defaults.xml";
  return input;
}

class Catalogues {
 public:
  Catalogues(const Scratch& scratch, const std::string& content) {
    const std::string file = scratch.write("fr/LC_MESSAGES/bench.mo", content);
    for (int i = 0; i < catalogueCount; ++i) {
      std::filesystem::create_symlink(
          file, scratch.path("fr/LC_MESSAGES/load" + std::to_string(i) + ".mo"));
    }
    folder = scratch.path("");
    setenv("LANGUAGE", "fr", 1);
    bindtextdomain("bench", folder.c_str());
  }

  // The text of `id` from a catalogue that was never loaded before.
  const char* loadAndAsk(const char* id) {
    char name[16];
    std::snprintf(name, sizeof name, "load%d", next++);
    bindtextdomain(name, folder.c_str());
    return dgettext(name, id);
  }

 private:
  std::string folder;
  int next = 0;
};

const char* translated(const Message& message) { return dgettext("bench", message.id.c_str()); }

void appendFormatted(std::string& out, const char* format, const MessageInput& input) {
  char buffer[512];
  std::snprintf(buffer, sizeof buffer, format, input.path, input.line, input.column);
  out += buffer;
}

void single(Bench& bench, const std::vector<Message>& messages, const MessageInput& input) {
  Row row("message, build and render", "text and two numbers");
  std::string out;
  row.items(1).output([&] { return out; });
  row.ours([&] {
    TTT message(LocDictionary1, Single);
    message << input.path << input.line << input.column;
    message.makeMulti(out);
    return out.size();
  });
  row.peer("dgettext + snprintf", [&] {
    out.clear();
    appendFormatted(out, translated(messages[Single]), input);
    return out.size();
  });
  addMessagePeers(row, input, out);
  bench.run(std::move(row.atLeast(2, "dgettext + snprintf").atLeast(1, "{fmt}")));
}

void report(Bench& bench, const std::vector<Message>& messages, const MessageInput& input) {
  Row row("message, build and render", "four entries");
  std::string out;
  row.items(1).output([&] { return out; });
  row.ours([&] {
    TTT message(LocDictionary1, Heading);
    message <= TTT(LocDictionary1, Failure);
    message <= (TTT(LocDictionary1, File) << input.path);
    message <= (TTT(LocDictionary1, Position) << input.line << input.column);
    message.makeMulti(out);
    return out.size();
  });
  row.peer("dgettext + snprintf", [&] {
    char buffer[512];
    out = translated(messages[Heading]);
    out += translated(messages[Failure]);
    std::snprintf(buffer, sizeof buffer, translated(messages[File]), input.path);
    out += buffer;
    std::snprintf(buffer, sizeof buffer, translated(messages[Position]), input.line, input.column);
    out += buffer;
    return out.size();
  });
  addReportPeers(row, input, out);
  bench.run(std::move(row.atLeast(2, "dgettext + snprintf").atLeast(1, "{fmt}")));
}

void loading(Bench& bench, const std::vector<Message>& messages, const std::string& lng,
             Catalogues& catalogues) {
  Row row(".lng load", "1,000 messages, file opened and closed");
  IDLocLoader loader;
  row.items(1).atMost(catalogueCount);
  row.ours([&]() -> std::size_t {
    IDLocLoader::Localization info = {messageCount, 8, stamp};
    FILE* file = std::fopen(lng.c_str(), "rb");
    const int code = loader.load(file, info);
    std::fclose(file);
    return code == 0 ? std::strlen(loader.getString(Single)) : 0;
  });
  row.peer("gettext",
           [&] { return std::strlen(catalogues.loadAndAsk(messages[Single].id.c_str())); });
  bench.run(std::move(row.atLeast(1)));
}

}  // namespace

void messageRows(Bench& bench) {
  const Scratch scratch;
  const std::vector<Message> messages = makeMessages();
  const MessageInput input = inputOf(messages);
  const std::string lng = scratch.write("bench.lng", lngFile(messages));
  Catalogues catalogues(scratch, gettextFile(messages));

  IDLocLoader dictionary;
  IDLocLoader::Localization info = {messageCount, 8, stamp};
  FILE* file = std::fopen(lng.c_str(), "rb");
  dictionary.load(file, info);
  std::fclose(file);
  TTT::dictionaries[LocDictionary1] = &dictionary;
  single(bench, messages, input);
  report(bench, messages, input);
  TTT::dictionaries[LocDictionary1] = nullptr;
  loading(bench, messages, lng, catalogues);
}

}  // namespace bench
