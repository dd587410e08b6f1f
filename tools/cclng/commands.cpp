// Compiling, checking and writing the record all start from a catalogue that was read and checked.
#include "commands.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iterator>
#include <optional>
#include <stdexcept>

#include "catalogue.h"
#include "diagnostics.h"
#include "failures.h"
#include "fileproc.h"

namespace cclng {

namespace {

void check_alone(const Catalogue& catalogue, const std::string& path, Findings& findings) {
  check_file_name(catalogue, path, findings);
  check_placeholders(catalogue, findings);
}

// Checks one document for a report; against the reference unless that is null.
std::optional<Catalogue> check_one(const std::string& path, const Catalogue* reference,
                                   tools::Report& report) {
  Findings findings(path);
  try {
    Catalogue catalogue = read_catalogue(path, findings);
    check_alone(catalogue, path, findings);
    if (reference) {
      check_against(catalogue, *reference, findings);
    } else {
      check_numbers(catalogue, -1, Gaps::Wrong, findings);
    }
    findings.report(report);
    return findings.isEmpty() ? std::optional(std::move(catalogue)) : std::nullopt;
  } catch (const TTT& error) {
    findings.add({}, error);
    findings.report(report, false);
    return std::nullopt;
  }
}

// A C++ name made of `text`.
std::string identifier(const std::string& text) {
  std::string name;
  for (const char c : text) {
    name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  }
  if (!name.empty() && std::isdigit(static_cast<unsigned char>(name[0]))) name.insert(0, 1, '_');
  return name;
}

// Reads a document, checks it by itself and lets `others` look at it.
template <class Checks>
Catalogue load(const std::string& document, int& code, Checks others) {
  try {
    Findings findings(document);
    Catalogue catalogue = read_catalogue(document, findings);
    check_alone(catalogue, document, findings);
    others(catalogue, findings);
    code = verdict(findings);
    return catalogue;
  } catch (const TTT& error) {
    code = unreadable(tools::describe(error));
    return {};
  }
}

}  // namespace

int unreadable(const std::string& problem) {
  tools::print_problem("cclng", problem);
  return tools::ExitUnreadable;
}

int verdict(Findings& findings) {
  tools::Report report = make_report(tools::Format::Text);
  findings.report(report);
  return findings.isEmpty() ? tools::ExitClean : tools::ExitFindings;
}

Catalogue load_checked(const std::string& document, int& code) {
  return load(document, code, [](const Catalogue& catalogue, Findings& findings) {
    check_numbers(catalogue, -1, Gaps::Wrong, findings);
  });
}

Catalogue load_partial(const std::string& document, const Catalogue& reference, int& code) {
  return load(document, code, [&](const Catalogue& catalogue, Findings& findings) {
    check_name(catalogue, reference, findings);
    const int count = static_cast<int>(reference.messages.size());
    check_numbers(catalogue, count, Gaps::Allowed, findings);
  });
}

Catalogue load_any(const std::string& document, int& code) {
  return load(document, code, [](const Catalogue& catalogue, Findings& findings) {
    check_numbers(catalogue, LastNumber + 1, Gaps::Allowed, findings);
  });
}

int deliver(const std::string& output, const std::string& bytes) {
  if (output.empty()) {
    const bool written = tools::write_output(bytes) && tools::close_output();
    return written ? tools::ExitClean : unreadable("The standard output could not be written.");
  }
  try {
    UTF8File::saveAtomic(output.c_str(), bytes);
    return tools::ExitClean;
  } catch (const TTT& error) {
    return unreadable(tools::describe(error));
  }
}

int compile(const std::string& document, const std::string& output, tools::ByteOrder order) {
  int code = tools::ExitClean;
  const Catalogue catalogue = load_checked(document, code);
  if (code != tools::ExitClean) return code;
  try {
    return deliver(output, tools::write_lng(catalogue.stamp(), catalogue.texts(), order));
  } catch (const std::length_error&) {
    tools::print_finding(document, 0, 0, "The texts are too long for one dictionary.");
    return tools::ExitFindings;
  }
}

int check(const std::vector<std::string>& documents, const std::string& reference,
          tools::Format format) {
  tools::Report report = make_report(format);
  std::optional<Catalogue> original;
  // A reference with findings says nothing about the others: they are checked by themselves.
  if (!reference.empty()) original = check_one(reference, nullptr, report);
  for (const std::string& document : documents) {
    if (document != reference) check_one(document, original ? &*original : nullptr, report);
  }
  report.finish();
  if (!tools::close_output()) return unreadable("The standard output could not be written.");
  return report.exitCode();
}

int header(const std::string& document, const std::string& output) {
  int code = tools::ExitClean;
  const Catalogue catalogue = load_checked(document, code);
  if (code != tools::ExitClean) return code;

  const std::string file = document.substr(document.rfind('/') + 1);
  char record[128];
  std::snprintf(record, sizeof record, "{%zu, 8, static_cast<int>(0x%08X)}",
                catalogue.messages.size(), static_cast<unsigned int>(catalogue.stamp()));
  const std::string text = "// Made by \"cclng header " + tools::printable(file) +
                           "\". Not to be edited.\n"
                           "#pragma once\n\n#include \"id_loc_loader.h\"\n\n"
                           "// Count, encoding and stamp of the dictionary \"" +
                           tools::printable(catalogue.name) +
                           "\".\ninline IDLocLoader::Localization " + identifier(catalogue.name) +
                           "_info = " + record + ";\n";
  return deliver(output, text);
}

}  // namespace cclng
