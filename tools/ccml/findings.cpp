// Messages become texts here; the report, which all tools share, writes them.
#include "findings.h"

#include <algorithm>

#include "diagnostics.h"
#include "messages.h"
#include "utf8io.h"

namespace ccml {

namespace {

tools::Finding rendered(const Finding& finding) {
  tools::Finding out;
  out.severity = finding.severity;
  finding.message.getErrorCode(&out.dictionary, &out.number);
  out.text = tools::one_line(textOf(finding.message));
  return out;
}

}  // namespace

void print(std::string_view text, FILE* stream) {
  utf8printf_s(stream, text.data(), text.data() + text.size());
}

Printer::Printer(Format format, FILE* to)
    : form(format), stream(to), report("ccml", format, to, plainText) {}

void Printer::document(const std::string& path, const Document& read, Findings& findings) {
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.offset < b.offset; });
  tools::PlaceCounter places(read.source());
  std::vector<tools::Finding> list;
  for (const Finding& finding : findings) {
    list.push_back(rendered(finding));
    list.back().place = places.placeOf(read.source() + finding.offset);
  }
  report.document(path, list);
}

void Printer::unreadable(const std::string& path, const TTT& failure) {
  report.document(path, {rendered({0, Severity::Error, failure})}, false);
}

void Printer::finish(bool summary) {
  report.finish();
  if (!summary || form != Format::Text) return;
  const tools::Report::Counts& counts = report.counts();
  TTT message = own(MsgSummary);
  message << counts.documents << counts.withFindings << counts.errors << counts.warnings;
  print(textOf(message) + "\n", stream);
}

}  // namespace ccml
