// ccml, the tool for markup documents: reads the command line and hands over to a command.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "charproc.h"
#include "check.h"
#include "diagnostics.h"
#include "document.h"
#include "fileproc.h"
#include "findings.h"
#include "format.h"
#include "json.h"
#include "messages.h"
#include "options.h"
#include "outline.h"
#include "query.h"
#include "utf8io.h"

namespace {

using namespace ccml;
using tools::CommandLine;

constexpr char help[] =
    R"(Usage: ccml COMMAND [OPTION]... FILE...

Checks, rewrites and searches markup documents. A FILE of "-" is the standard
input.

  ccml check [--strict] [--summary] [--format=text|json|sarif] FILE...
      Walks each document to its end and prints every failure as
      file:line:column: error: text. --strict adds what a program's reader lets
      pass: tags that do not pair, attributes that stand twice, DOCTYPE and CDATA
      (which are read as comments), bytes that are not UTF-8, zero bytes, text
      outside of elements, parts of tags that are passed over, and elements
      nested more than 1000 deep. --summary ends with the counts. SARIF 2.1.0 is
      what code-review services read; its rules are the numbers of messages.
  ccml format [--layout=single|multi] [--indent=N] [--in-place] FILE...
      Rewrites documents: attributes beside the element's name or, with multi,
      each on a line of its own; N spaces a level, 0 for TABs. Texts, comments
      and mixed elements stay as they are. A document with findings of a strict
      check is left alone.
  ccml outline [--format=text|json] FILE...
      Prints the tree of elements and attributes, and how often each stands in
      the document.
  ccml query PATH FILE...
      Prints what stands at a path such as mime-type/glob/@pattern: the values of
      an attribute, the texts of an element, or its markup; "*" is any element.

Findings of check are its output; those of the other commands go to the error
stream.

  --lang LNG  the language of messages: deu, eng, fra, ita, pol, por, rus, spa,
              ukr, zho; without it the language of the environment
  --help      prints this text
  --version   prints the version

Exit codes: 0 nothing to report, 1 findings (query: nothing found), 2 a file could
not be read or written, 3 a wrong command line.
)";

int usage(const std::string& problem) {
  tools::print_problem("ccml", problem + "\nTry \"ccml --help\".");
  return tools::ExitUsage;
}

// Tells on a terminal how far the work on many files has come.
class Progress {
 public:
  explicit Progress(std::size_t files) : total(files), shown(files >= 50 && isatty(2) == 1) {}
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void step() {
    ++done;
    if (shown && done % 25 == 0) utf8printf(stderr, "\r%zu / %zu", done, total);
  }
  void clear() const {
    if (shown) utf8printf(stderr, "\r\033[K");
  }

 private:
  std::size_t total;
  std::size_t done = 0;
  bool shown;
};

using Paths = std::vector<std::string>;

// Opens a document, or prints why that fails.
bool open(Document& document, const std::string& path, Printer& printer) {
  try {
    document.open(path);
    return true;
  } catch (const TTT& failure) {
    printer.unreadable(path, failure);
    return false;
  }
}

int runCheck(const CommandLine& line, const Paths& paths, Format format) {
  Printer printer(format);
  Progress progress(paths.size());
  for (const std::string& path : paths) {
    Document document;
    Findings findings;
    progress.step();
    if (!open(document, path, printer)) continue;
    check(document, line.has("--strict"), findings);
    if (!findings.empty()) progress.clear();
    printer.document(path, document, findings);
  }
  progress.clear();
  printer.finish(line.has("--summary"));
  return printer.exitCode();
}

int runOutline(const CommandLine&, const Paths& paths, Format format) {
  Printer printer(Format::Text, stderr);
  bool first = true;
  for (const std::string& path : paths) {
    Document document;
    Findings findings;
    if (!open(document, path, printer)) continue;
    if (format == Format::Json) print(first ? "[" : ",\n");
    if (format == Format::Text && paths.size() > 1) print(tools::printable(path) + ":\n");
    first = false;
    if (!outline(document, path, format, findings)) {
      if (format == Format::Json)
        print("{\"name\":" + tools::json_string(path) + ",\"elements\":null}");
      printer.document(path, document, findings);
    }
  }
  if (format == Format::Json) print(first ? "[]\n" : "]\n");
  return printer.exitCode();
}

// Prints a value: as it is, but visibly on a terminal.
void printValue(const std::string& value) {
  print(isatty(1) == 1 ? tools::printable(value, tools::Lines::Keep) : value);
  print("\n");
}

int runQuery(const CommandLine&, const Paths& operands, Format) {
  Path path;
  const std::string& wanted = operands.front();
  if (!path.parse(wanted)) return usage("\"" + tools::printable(wanted) + "\" is no path.");
  const Paths paths(operands.begin() + 1, operands.end());
  if (paths.empty()) return usage("A file is missing.");
  Printer printer(Format::Text, stderr);
  bool found = false;
  for (const std::string& file : paths) {
    Document document;
    if (!open(document, file, printer)) continue;
    try {
      for (const std::string& value : query(document, path)) {
        found = true;
        if (paths.size() > 1) print(tools::printable(file) + ": ");
        printValue(value);
      }
    } catch (const TTT& failure) {
      Findings findings = {{document.offset(), Severity::Error, failure}};
      printer.document(file, document, findings);
    }
  }
  return std::max(printer.exitCode(),
                  static_cast<int>(found ? tools::ExitClean : tools::ExitFindings));
}

// Replaces the file by its new form. False, with the reason printed, when that fails.
bool replace(const std::string& path, const Bag& content, Printer& printer) {
  try {
    UTF8File::saveAtomic(path.c_str(), content);
    return true;
  } catch (const TTT& failure) {
    printer.unreadable(path, failure);
    return false;
  }
}

int runFormat(const CommandLine& line, const Paths& paths, Format) {
  Layout layout;
  layout.multiLine = line.value("--layout") == "multi";
  if (line.has("--layout") && !layout.multiLine && line.value("--layout") != "single")
    return usage("The layout is single or multi.");
  const std::string_view indent = line.value("--indent");
  constexpr int widest = 64;
  if (line.has("--indent") &&
      (!strtoint(indent.data(), indent.data() + indent.size(), layout.indentSize) ||
       layout.indentSize < 0 || layout.indentSize > widest))
    return usage("The indentation is 0 to 64 spaces.");
  Printer printer(Format::Text, stderr);
  for (const std::string& path : paths) {
    Document document;
    Findings findings;
    if (!open(document, path, printer)) continue;
    Bag written;
    if (!format(document, layout, written, findings)) {
      findings.push_back({document.size(), Severity::Error, own(MsgNotFormatted)});
      printer.document(path, document, findings);
      continue;
    }
    if (line.has("--in-place") && path != "-") {
      const std::string_view before(document.begin(), document.size());
      const std::string_view after(written.getBuffer(),
                                   static_cast<std::size_t>(written.getSize()));
      if (before != after) replace(path, written, printer);
    } else {
      std::fwrite(written.getBuffer(), 1, static_cast<std::size_t>(written.getSize()), stdout);
    }
  }
  return printer.exitCode();
}

const struct {
  std::string_view name;
  int (*run)(const CommandLine& line, const Paths& paths, Format format);
  std::vector<tools::Option> options;
} commands[] = {
    {"check",
     runCheck,
     {{"--strict", "", false}, {"--summary", "", false}, {"--format", "", true}}},
    {"format",
     runFormat,
     {{"--layout", "", true}, {"--indent", "", true}, {"--in-place", "-i", false}}},
    {"outline", runOutline, {{"--format", "", true}}},
    {"query", runQuery, {}},
};

int runCommand(const CommandLine& line, int (*run)(const CommandLine&, const Paths&, Format)) {
  Format format = Format::Text;
  if (line.has("--format")) {
    const std::optional<Format> given = tools::parse_format(line.value("--format"));
    const bool sarif = run == runCheck;
    if (!given || (given == Format::Sarif && !sarif))
      return usage(sarif ? "The format is text, json or sarif." : "The format is text or json.");
    format = *given;
  }
  if (line.operands.empty()) return usage("A file is missing.");
  std::string error;
  if (!loadTexts(line.value("--lang"), error)) {
    tools::print_problem("ccml", error);
    return tools::ExitUnreadable;
  }
  const Paths paths(line.operands.begin(), line.operands.end());
  const int code = run(line, paths, format);
  return tools::close_output() ? code : static_cast<int>(tools::ExitUnreadable);
}

int run(const std::vector<std::string_view>& arguments) {
  if (arguments.empty()) return usage("A command is missing.");
  if (arguments[0] == "--help" || arguments[0] == "-h") return print(help), tools::ExitClean;
  if (arguments[0] == "--version") return print("ccml " CC_VERSION "\n"), tools::ExitClean;
  for (const auto& command : commands) {
    if (arguments[0] != command.name) continue;
    std::vector<tools::Option> options = command.options;
    options.push_back({"--lang", "", true});
    options.push_back({"--help", "-h", false});
    const CommandLine line =
        tools::parse_options({arguments.begin() + 1, arguments.end()}, options);
    if (!line.problem.empty()) return usage(line.problem);
    return line.has("--help") ? (print(help), tools::ExitClean) : runCommand(line, command.run);
  }
  return usage("There is no command " + tools::printable(arguments[0]) + ".");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    StringVector<char> args;
    utf8args(argc, argv, args);
    std::vector<std::string_view> arguments(args.begin(), args.end());
    if (!arguments.empty()) arguments.erase(arguments.begin());
    return run(arguments);
  } catch (const std::bad_alloc&) {
    tools::print_problem("ccml", "There is not enough memory.");
    return tools::ExitUnreadable;
  }
}
