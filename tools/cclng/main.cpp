// cclng, the dictionary tool: reads the command line and hands over to a command.
#include <cstdio>
#include <new>
#include <optional>

#include "commands.h"
#include "diagnostics.h"
#include "options.h"

namespace {

using tools::CommandLine;

constexpr char help[] =
    R"(Usage: cclng COMMAND [OPTION]...

Dictionaries of translated messages: from documents, one per language, to the
.lng files that programs load.

  cclng compile DOCUMENT -o FILE [--byte-order little|big]
      Writes the dictionary file. Nothing is written when the document has
      findings. The byte order is that of this machine unless it is given.
  cclng decompile FILE [-o DOCUMENT]
      Writes the texts of a dictionary file as a document, and tells when
      compiling that would not give the same bytes again.
  cclng check [--reference DOCUMENT] [--format=text|json|sarif] DOCUMENT...
      Checks documents: the numbers from 0 on, each once; placeholders that are
      known; texts in UTF-8, of at most three bytes per character; and, against
      the reference, the same name, stamp, numbers and placeholders.
  cclng header DOCUMENT [-o FILE]
      Writes the C++ record that a program compiles in: count, encoding, stamp.
  cclng stats [--reference DOCUMENT] [--format=text|json] DOCUMENT...
      Prints for each translation how many texts the reference has, and how many
      of them are translated, the same as in the reference, missing or empty.
      The reference is the first document unless it is given.
  cclng diff OLD NEW
      Prints the numbers and texts of the messages that were added, removed or
      changed. The exit code is 1 when there are any.
  cclng po-export REFERENCE [TRANSLATION] [-o FILE]
      Writes a PO file, for translators who work with such: a template of the
      reference, or the translation as far as it goes. Notes become comments. A
      text whose placeholders are not those of the reference is marked as fuzzy.
  cclng po-import REFERENCE FILE [-o DOCUMENT]
      Writes the document of a translation from its PO file. Fuzzy entries and
      those of a text that the reference no longer has count as not translated;
      nothing is written unless every message is translated.

  --help     prints this text
  --version  prints the version

In a PO file the context of an entry is the number of its message, and its flag
is c-format, since the placeholders are among those of C. "Language" in the
header is as gettext has it: "de" for "deu". msgfmt, msgmerge and the editors of
PO files can be used; but placeholders stay in their order, without "%2$s".

A document:

  <dictionary name="editor" language="eng">
    <message number="0" note="For translators.">Saved %s.</message>
    <message number="1">%d of %d lines were changed.</message>
  </dictionary>

Placeholders are %d, %u, %s and %i; %% is a percent sign. A text is the content
of its element as it stands, line breaks included, with &amp; &lt; &gt; &quot;
and &apos; decoded.

The stamp ties a program to the files made for it. The attribute "stamp" of the
dictionary gives it, in hexadecimal. Otherwise it is the 32-bit FNV-1a hash of
the name and a line feed, and then, for every message in the order of the
numbers, of its decimal number, the letters of its placeholders and a line feed.
For the document above that is "editor\n0s\n1dd\n". Texts may thus change and
files be translated later, but a program never loads a file with other messages.

Findings are printed to the error stream as file:line:column: error: text; those
of check as JSON or SARIF 2.1.0 to the standard output. Exit codes: 0 nothing to
report, 1 findings, 2 a file could not be read or written, 3 a wrong command
line.
)";

int usage(const std::string& problem) {
  tools::print_problem("cclng", problem + "\nTry \"cclng --help\".");
  return tools::ExitUsage;
}

int print(const std::string& text) { return cclng::deliver("", text); }

std::string text(std::string_view view) { return std::string(view); }

int runCompile(const CommandLine& line) {
  if (line.operands.size() != 1) return usage("compile takes one document.");
  if (line.value("--output").empty()) return usage("compile needs the file to write, with -o.");
  tools::ByteOrder order = tools::host_byte_order();
  if (line.has("--byte-order")) {
    const std::string_view name = line.value("--byte-order");
    if (name != "little" && name != "big") return usage("The byte order is little or big.");
    order = name == "big" ? tools::ByteOrder::Big : tools::ByteOrder::Little;
  }
  return cclng::compile(text(line.operands[0]), text(line.value("--output")), order);
}

int runDecompile(const CommandLine& line) {
  if (line.operands.size() != 1) return usage("decompile takes one dictionary file.");
  return cclng::decompile(text(line.operands[0]), text(line.value("--output")));
}

int runCheck(const CommandLine& line) {
  if (line.operands.empty()) return usage("check needs a document.");
  std::optional<tools::Format> format = tools::Format::Text;
  if (line.has("--format")) format = tools::parse_format(line.value("--format"));
  if (!format) return usage("The format is text, json or sarif.");
  const std::vector<std::string> documents(line.operands.begin(), line.operands.end());
  return cclng::check(documents, text(line.value("--reference")), *format);
}

int runHeader(const CommandLine& line) {
  if (line.operands.size() != 1) return usage("header takes one document.");
  return cclng::header(text(line.operands[0]), text(line.value("--output")));
}

int runStats(const CommandLine& line) {
  if (line.operands.empty()) return usage("stats needs a document.");
  const std::string_view form = line.value("--format");
  if (line.has("--format") && form != "text" && form != "json") {
    return usage("The format is text or json.");
  }
  return cclng::stats({line.operands.begin(), line.operands.end()}, text(line.value("--reference")),
                      form == "json");
}

int runDiff(const CommandLine& line) {
  if (line.operands.size() != 2) return usage("diff takes two documents.");
  return cclng::diff(text(line.operands[0]), text(line.operands[1]));
}

int runPoExport(const CommandLine& line) {
  if (line.operands.empty() || line.operands.size() > 2) {
    return usage("po-export takes the reference and at the most one translation.");
  }
  return cclng::po_export(text(line.operands[0]),
                          line.operands.size() > 1 ? text(line.operands[1]) : "",
                          text(line.value("--output")));
}

int runPoImport(const CommandLine& line) {
  if (line.operands.size() != 2) return usage("po-import takes the reference and one PO file.");
  return cclng::po_import(text(line.operands[0]), text(line.operands[1]),
                          text(line.value("--output")));
}

const tools::Option output = {"--output", "-o", true};

const struct {
  std::string_view name;
  int (*run)(const CommandLine& line);
  std::vector<tools::Option> options;
} commands[] = {
    {"compile", runCompile, {output, {"--byte-order", "", true}}},
    {"decompile", runDecompile, {output}},
    {"check", runCheck, {{"--reference", "", true}, {"--format", "", true}}},
    {"header", runHeader, {output}},
    {"stats", runStats, {{"--reference", "", true}, {"--format", "", true}}},
    {"diff", runDiff, {}},
    {"po-export", runPoExport, {output}},
    {"po-import", runPoImport, {output}},
};

int run(const std::vector<std::string_view>& arguments) {
  if (arguments.empty()) return usage("A command is missing.");
  if (arguments[0] == "--help" || arguments[0] == "-h") return print(help);
  if (arguments[0] == "--version") return print("cclng " CC_VERSION "\n");
  for (const auto& command : commands) {
    if (arguments[0] != command.name) continue;
    std::vector<tools::Option> options = command.options;
    options.push_back({"--help", "-h", false});
    const CommandLine line =
        tools::parse_options({arguments.begin() + 1, arguments.end()}, options);
    if (!line.problem.empty()) return usage(line.problem);
    return line.has("--help") ? print(help) : command.run(line);
  }
  return usage("There is no command " + tools::printable(arguments[0]) + ".");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + (argc > 0 ? 1 : 0), argv + argc});
  } catch (const std::bad_alloc&) {
    tools::print_problem("cclng", "There is not enough memory.");
    return tools::ExitUnreadable;
  }
}
