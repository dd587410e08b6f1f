// What is wrong with documents, and how it is printed: as lines, or as JSON for machines.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "document.h"
#include "tttproc.h"

namespace ccml {

enum class Severity { Error, Warning };
enum class Format { Text, Json };

struct Finding {
  unsigned int offset;
  Severity severity;
  TTT message;
};

// The findings of one document, in any order.
using Findings = std::vector<Finding>;

// Prints findings document by document, and counts them: to the standard output where they are what
// was asked for, else to the error stream, beside the result.
class Printer {
 public:
  explicit Printer(Format format, FILE* to = stdout) : form(format), stream(to) {}

  // Prints the findings of a document that was read, in the order of their places.
  void document(const std::string& path, const Document& read, Findings& findings);
  // Prints the failure of a document that could not be read.
  void unreadable(const std::string& path, const TTT& failure);
  // Ends the output, with a summary if that is wanted.
  void finish(bool summary);

  // The exit code for everything printed so far.
  int exitCode() const;

 private:
  void finding(const std::string& path, const Place* place, const Finding& found);
  void openDocument(const std::string& path, bool readable);

  Format form;
  FILE* stream;
  int documents = 0;
  int withFindings = 0;
  int errors = 0;
  int warnings = 0;
  int unreadables = 0;
  bool firstFinding = true;
};

// Prints bytes.
void print(std::string_view text, FILE* stream = stdout);

}  // namespace ccml
