// One pass over the arguments: each is an option, the value of the option before it, or an operand.
#include "options.h"

#include "diagnostics.h"

namespace tools {

namespace {

bool isLong(std::string_view argument) { return argument.substr(0, 2) == "--"; }

// The option that `argument` names. `attached` becomes the value that stands in the same argument;
// its data is null when there is none.
const Option* find(const std::vector<Option>& options, std::string_view argument,
                   std::string_view& attached) {
  attached = {};
  std::string_view name = argument;
  if (isLong(argument)) {
    const std::size_t equals = argument.find('=');
    name = argument.substr(0, equals);
    if (equals != std::string_view::npos) attached = argument.substr(equals + 1);
  } else {
    name = argument.substr(0, 2);
    if (argument.size() > 2) attached = argument.substr(2);
  }
  for (const Option& option : options) {
    if (name == (isLong(argument) ? option.name : option.shortName)) return &option;
  }
  return nullptr;
}

}  // namespace

bool CommandLine::has(std::string_view name) const { return value(name).data() != nullptr; }

std::string_view CommandLine::value(std::string_view name) const {
  for (auto it = given.rbegin(); it != given.rend(); ++it) {
    if (it->name == name) return it->value;
  }
  return {};
}

CommandLine parse_options(const std::vector<std::string_view>& arguments,
                          const std::vector<Option>& options) {
  CommandLine line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--") {
      line.operands.insert(line.operands.end(),
                           arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
      break;
    }
    if (argument.size() < 2 || argument[0] != '-') {
      line.operands.push_back(argument);
      continue;
    }
    std::string_view value;
    const Option* option = find(options, argument, value);
    if (!option) {
      line.problem = "Unknown option " + printable(argument) + ".";
      return line;
    }
    if (value.data() && !option->hasValue) {
      line.problem = "Option " + std::string(option->name) + " takes no value.";
      return line;
    }
    if (option->hasValue && !value.data()) {
      if (++i == arguments.size()) {
        line.problem = "Option " + std::string(option->name) + " needs a value.";
        return line;
      }
      value = arguments[i];
    }
    line.given.push_back({option->name, value.data() ? value : std::string_view("")});
  }
  return line;
}

}  // namespace tools
