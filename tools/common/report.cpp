// Everything is written as it comes. In SARIF the rules are known last, so the part that describes
// the tool follows the results.
#include "report.h"

#include <array>

#include "diagnostics.h"
#include "json.h"

namespace tools {

namespace {

constexpr int LibraryDictionary = 3;
constexpr const char* SarifStart =
    "{\"$schema\":\"https://json.schemastore.org/sarif-2.1.0.json\",\"version\":\"2.1.0\",\n"
    "\"runs\":[{\"results\":[";

const char* nameOf(Severity severity) { return severity == Severity::Error ? "error" : "warning"; }

// A path as a URI: relative ones stay relative, and only what no URI can misread stays as it is.
std::string uri(const std::string& path) {
  std::string out = path.substr(0, 1) == "/" ? "file://" : "";
  for (const char c : path) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (letter || std::string_view("-._~/").find(c) != std::string_view::npos) {
      out += c;
    } else {
      std::array<char, 4> escape{};
      std::snprintf(escape.data(), escape.size(), "%%%02X",
                    static_cast<unsigned int>(static_cast<unsigned char>(c)));
      out += escape.data();
    }
  }
  return out;
}

// Text in a message of SARIF, where braces enclose arguments and brackets links.
std::string message(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '{' || c == '}') out += c;
    if (c == '[' || c == ']') out += '\\';
    out += c;
  }
  return "{\"text\":" + json_string(out) + "}";
}

std::string member(const char* name, int number) {
  return "\"" + std::string(name) + "\":" + std::to_string(number);
}

}  // namespace

std::optional<Format> parse_format(std::string_view name) {
  if (name == "text") return Format::Text;
  if (name == "json") return Format::Json;
  if (name == "sarif") return Format::Sarif;
  return std::nullopt;
}

void Report::document(const std::string& path, const std::vector<Finding>& findings,
                      bool readable) {
  std::string out;
  if (form == Format::Json) {
    out += count.documents == 0 ? "{\"documents\":[\n" : ",\n";
    out += "{\"name\":" + json_string(path) + ",\"readable\":" + (readable ? "true" : "false") +
           ",\"findings\":[";
  } else if (form == Format::Sarif && count.documents == 0) {
    out += SarifStart;
  }
  ++count.documents;
  if (!findings.empty()) ++count.withFindings;
  if (!readable) ++count.unreadable;
  const char* between = "\n";
  for (const Finding& finding : findings) {
    ++(finding.severity == Severity::Error ? count.errors : count.warnings);
    if (form == Format::Text) {
      out += finding_line(path, finding.place.line, finding.place.column, nameOf(finding.severity),
                          finding.text);
    } else if (form == Format::Json) {
      out += between + json(finding);
    } else {
      out += firstResult ? "\n" : ",\n";
      out += sarif(path, finding);
      firstResult = false;
    }
    between = ",\n";
  }
  if (form == Format::Json) out += "]}";
  std::fwrite(out.data(), 1, out.size(), stream);
}

std::string Report::json(const Finding& finding) const {
  std::string out = "{";
  if (finding.place.line != 0) {
    out += member("line", finding.place.line) + "," + member("column", finding.place.column) + ",";
  }
  return out + "\"severity\":\"" + nameOf(finding.severity) + "\"," +
         member("dictionary", finding.dictionary) + "," + member("number", finding.number) +
         ",\"text\":" + json_string(finding.text) + "}";
}

std::string Report::sarif(const std::string& path, const Finding& finding) {
  const Rule rule(finding.dictionary, finding.number);
  const auto [index, added] = indexes.emplace(rule, rules.size());
  if (added) rules.push_back(rule);
  std::string region;
  if (finding.place.line != 0) {
    region = ",\"region\":{" + member("startLine", finding.place.line);
    if (finding.place.character != 0) {
      region += "," + member("startColumn", finding.place.character);
    }
    region += "}";
  }
  return "{\"ruleId\":" + json_string(ruleId(rule)) + "," +
         member("ruleIndex", static_cast<int>(index->second)) + ",\"level\":\"" +
         nameOf(finding.severity) + "\",\"message\":" + message(finding.text) +
         ",\"locations\":[{\"physicalLocation\":{\"artifactLocation\":{\"uri\":" +
         json_string(uri(path)) + "}" + region + "}}]}";
}

std::string Report::ruleId(const Rule& rule) const {
  return (rule.first == LibraryDictionary ? "common_core" : tool) + std::string("-") +
         std::to_string(rule.second);
}

void Report::finish() {
  std::string out;
  if (form == Format::Json) {
    if (count.documents == 0) out += "{\"documents\":[";
    out += "],\n\"summary\":{" + member("documents", count.documents) + "," +
           member("withFindings", count.withFindings) + "," + member("errors", count.errors) + "," +
           member("warnings", count.warnings) + "," + member("unreadable", count.unreadable) +
           "}}\n";
  } else if (form == Format::Sarif) {
    if (count.documents == 0) out += SarifStart;
    out += "],\n\"columnKind\":\"unicodeCodePoints\",\"tool\":{\"driver\":{\"name\":" +
           json_string(tool) + ",\"version\":\"" CC_VERSION "\",\"rules\":[";
    const char* between = "\n";
    for (const Rule& rule : rules) {
      out += between;
      out += "{\"id\":" + json_string(ruleId(rule)) +
             ",\"shortDescription\":" + message(ruleText(rule.first, rule.second)) + "}";
      between = ",\n";
    }
    out += "]}}}]}\n";
  }
  std::fwrite(out.data(), 1, out.size(), stream);
}

int Report::exitCode() const {
  if (count.unreadable != 0) return ExitUnreadable;
  return count.errors != 0 || count.warnings != 0 ? ExitFindings : ExitClean;
}

}  // namespace tools
