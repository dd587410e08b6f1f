// What the checks of the tools found, as lines for people, as JSON, or as SARIF 2.1.0.
#pragma once

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "place.h"

namespace tools {

enum class Format { Text, Json, Sarif };
enum class Severity { Error, Warning };

// The format that a command line asks for with "text", "json" or "sarif".
std::optional<Format> parse_format(std::string_view name);

struct Finding {
  Place place;
  Severity severity = Severity::Error;
  int dictionary = 0;  // 3 for messages of the library, 0 for those of the tool itself
  int number = 0;      // of the message
  std::string text;
};

// Writes findings document by document, and counts them.
class Report {
 public:
  // The text of a message without its arguments.
  using RuleText = std::string (*)(int dictionary, int number);
  struct Counts {
    int documents = 0;
    int withFindings = 0;
    int errors = 0;
    int warnings = 0;
    int unreadable = 0;
  };

  Report(const char* toolName, Format format, std::FILE* to, RuleText text)
      : tool(toolName), form(format), stream(to), ruleText(text) {}

  // The findings of a document in the order in which they are written; of one that could not be
  // read, the reason.
  void document(const std::string& path, const std::vector<Finding>& findings,
                bool readable = true);
  // Ends what is no text.
  void finish();

  const Counts& counts() const { return count; }
  // The exit code for everything written so far.
  int exitCode() const;

 private:
  using Rule = std::pair<int, int>;  // dictionary and number

  std::string json(const Finding& finding) const;
  std::string sarif(const std::string& path, const Finding& finding);
  std::string ruleId(const Rule& rule) const;

  const char* tool;
  Format form;
  std::FILE* stream;
  RuleText ruleText;
  Counts count;
  std::map<Rule, std::size_t> indexes;  // of the rules
  std::vector<Rule> rules;              // that findings broke, in the order of their indexes
  bool firstResult = true;
};

}  // namespace tools
