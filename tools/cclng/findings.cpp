// Errors of the library keep their dictionary and number, findings of the tool have rules.
#include "findings.h"

#include <algorithm>
#include <tuple>

#include "diagnostics.h"
#include "failures.h"

namespace cclng {

void Findings::add(Place place, Rule rule, std::string text) {
  list.push_back({place, tools::Severity::Error, 0, rule, std::move(text)});
}

void Findings::add(Place place, const TTT& error) {
  tools::Finding finding;
  finding.place = place;
  error.getErrorCode(&finding.dictionary, &finding.number);
  finding.text = tools::one_line(tools::describe(error));
  list.push_back(std::move(finding));
}

void Findings::report(tools::Report& to, bool readable) {
  std::stable_sort(list.begin(), list.end(), [](const tools::Finding& a, const tools::Finding& b) {
    return std::tie(a.place.line, a.place.column) < std::tie(b.place.line, b.place.column);
  });
  to.document(path, list, readable);
}

tools::Report make_report(tools::Format format) {
  const auto text = [](int dictionary, int number) {
    if (dictionary == 0) return rule_text(static_cast<Rule>(number));
    return tools::describe(TTT(static_cast<LocDictionaryId>(dictionary), number));
  };
  return {"cclng", format, format == tools::Format::Text ? stderr : stdout, text};
}

}  // namespace cclng
