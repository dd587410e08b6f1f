// PO files are read and written by gettext's own library, which works on named files: what goes in
// and out passes through a file in memory, so that reading and saving stay those of all commands.
// The texts need no conversion, since every placeholder of a dictionary is one of C too.
#include <gettext-po.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "catalogue.h"
#include "commands.h"
#include "diagnostics.h"
#include "failures.h"
#include "fileproc.h"
#include "languages.h"
#include "utf8proc.h"

namespace cclng {

namespace {

constexpr unsigned int MaxFileSize = 100000000;
constexpr const char* FormatFlag = "c-format";
constexpr const char* LanguageField = "X-Dictionary-Language";

// A file without a place in any folder.
class MemoryFile {
 public:
  MemoryFile() : descriptor(memfd_create("po", MFD_CLOEXEC)), stream(fdopen(descriptor, "w+b")) {}
  ~MemoryFile() {
    if (stream) std::fclose(stream);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

  bool write(const std::string& bytes) {
    return stream && std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
           std::fflush(stream) == 0;
  }

  // What others wrote under the path.
  std::string read() {
    std::string bytes;
    char block[65536];
    while (const std::size_t n = std::fread(block, 1, sizeof block, stream)) bytes.append(block, n);
    return bytes;
  }

 private:
  int descriptor;
  std::FILE* stream;
};

struct Freeing {
  void operator()(po_file_t file) const { po_file_free(file); }
  void operator()(po_message_iterator_t iterator) const { po_message_iterator_free(iterator); }
  void operator()(char* text) const { std::free(text); }
};
using PoFile = std::unique_ptr<std::remove_pointer_t<po_file_t>, Freeing>;
using Iterator = std::unique_ptr<std::remove_pointer_t<po_message_iterator_t>, Freeing>;
using Text = std::unique_ptr<char, Freeing>;

// The library reports through functions without an argument of ours.
Findings* reports = nullptr;

void report(int severity, po_message_t /*message*/, const char* /*file*/, std::size_t line,
            std::size_t column, int /*multiline*/, const char* text) {
  if (severity == PO_SEVERITY_WARNING) return;
  std::string sentence = text;
  while (!sentence.empty() && sentence.back() == '\n') sentence.pop_back();
  std::replace(sentence.begin(), sentence.end(), '\n', ' ');
  if (severity == PO_SEVERITY_FATAL_ERROR) {  // must not return
    tools::print_problem("cclng", sentence);
    std::exit(tools::ExitUnreadable);
  }
  constexpr std::size_t unknown = ~std::size_t{0};
  Place place;
  if (line != unknown) place.line = static_cast<int>(line);
  if (line != unknown && column != unknown) place.column = static_cast<int>(column);
  if (reports) reports->add(place, RulePoFile, std::move(sentence));
}

void report_two(int severity, po_message_t first, const char* file, std::size_t line,
                std::size_t column, int multiline, const char* text, po_message_t /*second*/,
                const char* /*file2*/, std::size_t /*line2*/, std::size_t /*column2*/,
                int /*multiline2*/, const char* /*text2*/) {
  report(severity, first, file, line, column, multiline, text);
}

constexpr po_xerror_handler handler = {report, report_two};

std::string field(const char* header, const char* name) {
  const Text value(header ? po_header_field(header, name) : nullptr);
  return value ? value.get() : "";
}

// Writing.

// What translators should know about the arguments of a text; empty when it has none.
std::string arguments(const std::string& text) {
  std::string list;
  for (const char kind : placeholders(text)) {
    list += list.empty() ? "Arguments, in this order: " : ", ";
    list += kind == 's' ? "a text" : kind == 'i' ? "a message of this dictionary" : "a number";
  }
  return list.empty() ? list : list + ".\n";
}

std::string line(const std::string& text) { return text.empty() ? text : text + "\n"; }

po_message_t header(const Catalogue& reference, const Catalogue* translation) {
  const std::string code = translation ? translation->language : "";
  const std::string_view locale = tools::locale_language(code);
  const std::pair<const char*, std::string> fields[] = {
      {"Project-Id-Version", reference.name + " " + hex(reference.stamp())},
      {"Language", locale.empty() ? code : std::string(locale)},
      {"MIME-Version", "1.0"},
      {"Content-Type", "text/plain; charset=UTF-8"},
      {"Content-Transfer-Encoding", "8bit"},
      {LanguageField, code},
  };
  Text text;
  for (const auto& [name, value] : fields) {
    if (name == LanguageField && !translation) continue;
    text.reset(po_header_set_field(text ? text.get() : "", name, value.c_str()));
  }
  po_message_t message = po_message_create();
  po_message_set_msgid(message, "");
  po_message_set_msgstr(message, text.get());
  po_message_set_extracted_comments(message, line(reference.comment).c_str());
  if (translation) po_message_set_comments(message, line(translation->comment).c_str());
  po_message_set_fuzzy(message, !translation);
  return message;
}

po_message_t entry(const Message& original, const Message* translated, const std::string& file) {
  po_message_t message = po_message_create();
  po_message_set_msgctxt(message, std::to_string(original.number).c_str());
  po_message_set_msgid(message, original.text.c_str());
  po_message_set_msgstr(message, translated ? translated->text.c_str() : "");
  po_message_set_extracted_comments(message,
                                    (line(original.note) + arguments(original.text)).c_str());
  po_message_add_filepos(message, file.c_str(), static_cast<std::size_t>(original.place.line));
  po_message_set_format(message, FormatFlag, 1);
  if (translated) {
    po_message_set_comments(message, line(translated->note).c_str());
    po_message_set_fuzzy(message, placeholders(translated->text) != placeholders(original.text));
  }
  return message;
}

// Reading.

// The message number that is the context of an entry, or -1.
int number_of(po_message_t message) {
  const char* context = po_message_msgctxt(message);
  const std::string_view text = context ? context : "";
  int number = -1;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && stop == text.data() + text.size() ? number : -1;
}

// The comment of translators, each line without the space around it.
std::string comment_of(po_message_t message, char between) {
  std::string out;
  std::string_view rest = po_message_comments(message);
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
    while (!line.empty() && (line.back() == ' ' || line.back() == '\r')) line.remove_suffix(1);
    if (line.empty()) continue;
    if (!out.empty()) out += between;
    out += line;
  }
  return out;
}

// The language of dictionaries that a header names. The field that says it in so many words is
// left behind where somebody made the file of one language from that of another.
std::string language_of(const char* header) {
  const std::string locale = field(header, "Language");
  std::string exact = field(header, LanguageField);
  const std::string_view expected = tools::locale_language(exact);
  if (!exact.empty() && (expected.empty() ? exact : expected) == locale) return exact;
  const std::string_view code = tools::dictionary_language(locale);
  return code.empty() ? locale : std::string(code);
}

void check_header(const char* header, Findings& findings) {
  std::string type = field(header, "Content-Type");
  const std::size_t start = type.find("charset=");
  type.erase(0, start == std::string::npos ? type.size() : start + 8);
  std::string upper = type;
  for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  if (upper != "UTF-8" && upper != "ASCII" && upper != "US-ASCII") {
    findings.add({1, 1, 1}, RulePoFile,
                 "The header says that the text is in \"" + type +
                     "\" instead of UTF-8; msgconv converts it.");
  }
  if (field(header, "Language").empty()) {
    findings.add({1, 1, 1}, RulePoFile, "The header names no language.");
  }
}

// What the entries say about the messages of the reference. Those that are fuzzy, or translate
// another text than that of the reference, are left out, as are those without a translation.
class PoReader {
 public:
  PoReader(const Catalogue& original, Findings& list) : reference(original), findings(list) {
    catalogue.place = {1, 1, 1};
    catalogue.name = reference.name;
    catalogue.givenStamp = reference.givenStamp;
  }

  Catalogue read(po_file_t file) {
    const char* header = po_file_domain_header(file, nullptr);
    check_header(header, findings);
    catalogue.language = language_of(header);
    const Iterator iterator(po_message_iterator(file, nullptr));
    while (po_message_t message = po_next_message(iterator.get())) {
      if (po_message_is_obsolete(message)) continue;
      if (!po_message_msgctxt(message) && !*po_message_msgid(message)) {
        catalogue.comment = comment_of(message, '\n');
      } else {
        entry(message);
      }
    }
    count(fuzzy, "marked as fuzzy");
    count(outdated, "translated from another text than that of the reference");
    return std::move(catalogue);
  }

 private:
  void entry(po_message_t message) {
    const int number = number_of(message);
    const Message* original = reference.find(number);
    const std::string text = po_message_msgstr(message);
    if (!original) {
      const char* context = po_message_msgctxt(message);
      findings.add({}, RulePoFile,
                   context ? "The context \"" + std::string(context) +
                                 "\" is no message number of the reference."
                           : "The entry of \"" + std::string(po_message_msgid(message)) +
                                 "\" has no message number for its context.");
    } else if (po_message_msgid_plural(message)) {
      findings.add({}, RulePoFile,
                   "Message " + std::to_string(number) +
                       " has plural forms, which dictionaries do not have.");
    } else if (po_message_is_fuzzy(message)) {
      ++fuzzy;
    } else if (original->text != po_message_msgid(message)) {
      ++outdated;
    } else if (strchk_utf8(text.data(), static_cast<unsigned int>(text.size()))) {
      findings.add(
          {}, RulePoFile,
          "Message " + std::to_string(number) + " holds a character of more than three bytes.");
    } else if (!text.empty() || original->text.empty()) {
      catalogue.messages.push_back({number, {}, text, comment_of(message, ' ')});
    }
  }

  void count(int messages, const char* what) {
    if (messages == 0) return;
    findings.add({}, RulePoFile,
                 "Messages that are " + std::string(what) + ": " + std::to_string(messages) +
                     ". They count as not translated.");
  }

  const Catalogue& reference;
  Findings& findings;
  Catalogue catalogue;
  int fuzzy = 0;
  int outdated = 0;
};

int no_memory_file() { return unreadable("A file in memory could not be made."); }

}  // namespace

int po_export(const std::string& reference, const std::string& translation,
              const std::string& output) {
  int code = tools::ExitClean;
  const Catalogue original = load_checked(reference, code);
  if (code != tools::ExitClean) return code;
  Catalogue translated;
  if (!translation.empty()) translated = load_partial(translation, original, code);
  if (code != tools::ExitClean) return code;

  const PoFile file(po_file_create());
  const Iterator iterator(po_message_iterator(file.get(), nullptr));
  const bool given = !translation.empty();
  const std::string shown = tools::printable(reference);
  po_message_insert(iterator.get(), header(original, given ? &translated : nullptr));
  for (const Message* message : original.sorted()) {
    po_message_insert(iterator.get(), entry(*message, translated.find(message->number), shown));
  }
  MemoryFile memory;
  if (!memory.write("") || !po_file_write(file.get(), memory.path().c_str(), &handler)) {
    return no_memory_file();
  }
  return deliver(output, memory.read());
}

int po_import(const std::string& reference, const std::string& file, const std::string& output) {
  int code = tools::ExitClean;
  const Catalogue original = load_checked(reference, code);
  if (code != tools::ExitClean) return code;
  try {
    std::string bytes;
    UTF8File::load(file.c_str(), bytes, MaxFileSize);
    MemoryFile memory;
    if (!memory.write(bytes)) return no_memory_file();
    Findings findings(file);
    reports = &findings;
    const PoFile content(po_file_read(memory.path().c_str(), &handler));
    reports = nullptr;
    if (!content) return no_memory_file();
    Catalogue catalogue;
    if (findings.isEmpty()) {
      catalogue = PoReader(original, findings).read(content.get());
      if (!catalogue.language.empty()) check_file_name(catalogue, output, findings);
      check_placeholders(catalogue, findings);
      check_against(catalogue, original, findings);
    }
    code = verdict(findings);
    return code == tools::ExitClean ? deliver(output, write_catalogue(catalogue)) : code;
  } catch (const TTT& error) {
    return unreadable(tools::describe(error));
  }
}

}  // namespace cclng
