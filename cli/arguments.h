#pragma once
// The options and operands that follow a command's name, taken apart the same way for every
// command: "--name value", "--name=value", "-h"/"--help", "--" ending the options, "-" an operand.

#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/expected.h"

namespace kavor::cli {

struct OptionSpec {
  std::string_view name;            // with its dashes: "--os-version"
  std::string_view valueName = {};  // "N" when the option takes a value, empty for a flag
  std::string_view help = {};       // one line for the command's usage text
};

struct Arguments {
  bool help = false;
  std::vector<std::pair<std::string_view, std::string_view>> options;  // in the order given
  std::vector<std::string_view> operands;

  bool has(std::string_view option) const;
  // The value given last, as with most tools when an option is repeated.
  std::optional<std::string_view> value(std::string_view option) const;
};

// Option tables shared between commands, joined in order into one table.
std::vector<OptionSpec> joinOptions(std::initializer_list<std::span<const OptionSpec>> parts);

// Fails with ErrorKind::invalidInput, the message naming the offending argument. Parsing stops
// at -h or --help so that a command's help shows whatever else is wrong with the line.
Expected<Arguments> parseArguments(std::span<const std::string_view> args,
                                   std::span<const OptionSpec> known);

// A whole number above zero, the whole of the text; the message names the option.
Expected<int> positiveNumber(std::string_view option, std::string_view text);

}  // namespace kavor::cli
