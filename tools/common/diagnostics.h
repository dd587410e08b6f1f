// What the tools print about their work. Nothing that comes from a document, a file name or the
// command line reaches a terminal as anything but visible text.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// The exit codes that all tools share.
enum ExitCode : int {
  ExitClean = 0,       // done, nothing to report
  ExitFindings = 1,    // the input was read and something in it is wrong
  ExitUnreadable = 2,  // a file could not be read or written
  ExitUsage = 3,       // the command line makes no sense
};

enum class Lines {
  Escape,  // line feeds become visible escapes: the text stays on one line
  Keep,    // line feeds stay
};

// `text` as it may be shown on a terminal: bytes that are no UTF-8 stand as "\x9B", control
// characters and those that change the direction or the order of a text as "\u{202E}", line feeds
// and tabs as "\n" and "\t". Everything else stays.
std::string printable(std::string_view text, Lines lines = Lines::Escape);

// "path:line:column: severity: text" and a line feed. A line or column of 0 is left out.
std::string finding_line(std::string_view path, int line, int column, std::string_view severity,
                         std::string_view text);

// A text of several lines as one: a line that ends without a full stop gets a semicolon.
std::string one_line(std::string_view text);

// Prints "path:line:column: error: text" and a line feed to the error stream. A line or column of 0
// is left out.
void print_finding(std::string_view path, int line, int column, std::string_view text);

// Prints "tool: text" and a line feed to the error stream; the text may have several lines.
void print_problem(std::string_view tool, std::string_view text);

// Writes `bytes` to the standard output as they are. False when that fails.
bool write_output(std::string_view bytes);

// Hands on what the standard output holds back. False when some of it could not be written.
bool close_output();

}  // namespace tools
