// What is wrong with one document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report.h"
#include "rules.h"
#include "tttproc.h"

namespace cclng {

using tools::Place;

class Findings {
 public:
  explicit Findings(std::string_view document) : path(document) {}

  void add(Place place, Rule rule, std::string text);
  // An error of the library, which has a number of its own.
  void add(Place place, const TTT& error);
  bool isEmpty() const { return list.empty(); }
  // Hands all of them to the report, in the order of their places.
  void report(tools::Report& to, bool readable = true);

 private:
  std::string path;
  std::vector<tools::Finding> list;
};

// A report of this tool: text goes to the error stream, the other formats to the standard output.
tools::Report make_report(tools::Format format);

}  // namespace cclng
