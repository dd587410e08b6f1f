// What is wrong with documents, as a walk over them finds it.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "document.h"
#include "report.h"
#include "tttproc.h"

namespace ccml {

using tools::Format;
using tools::Severity;

struct Finding {
  unsigned int offset;
  Severity severity;
  TTT message;
};

// The findings of one document, in any order.
using Findings = std::vector<Finding>;

// Prints findings document by document: to the standard output where they are what was asked for,
// else to the error stream, beside the result.
class Printer {
 public:
  explicit Printer(Format format, FILE* to = stdout);

  // Prints the findings of a document that was read, in the order of their places.
  void document(const std::string& path, const Document& read, Findings& findings);
  // Prints the failure of a document that could not be read.
  void unreadable(const std::string& path, const TTT& failure);
  // Ends the output, with a summary if that is wanted and the format is text.
  void finish(bool summary);

  // The exit code for everything printed so far.
  int exitCode() const { return report.exitCode(); }

 private:
  Format form;
  FILE* stream;
  tools::Report report;
};

// Prints bytes.
void print(std::string_view text, FILE* stream = stdout);

}  // namespace ccml
