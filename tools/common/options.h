// The command line of the tools: options with one or two dashes, and operands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools {

// One option that a command knows.
struct Option {
  std::string_view name;       // with its dashes, as in "--output"
  std::string_view shortName;  // one dash and one letter, as in "-o"; empty when there is none
  bool hasValue;               // followed by a value: "--output FILE", "--output=FILE", "-oFILE"
};

// What stood on a command line. Texts are views of the arguments themselves.
struct CommandLine {
  struct Given {
    std::string_view name;  // the long name, whichever form was used
    std::string_view value;
  };

  std::vector<Given> given;                // in the order of the command line
  std::vector<std::string_view> operands;  // what is no option, and everything after "--"
  std::string problem;                     // what is wrong with it, as a sentence; else empty

  bool has(std::string_view name) const;
  // The value of the last `name`; null data when it was not given.
  std::string_view value(std::string_view name) const;
};

// Reads `arguments` (without the program's name). A single "-" is an operand. Stops at the first
// problem.
CommandLine parse_options(const std::vector<std::string_view>& arguments,
                          const std::vector<Option>& options);

}  // namespace tools
