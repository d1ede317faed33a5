#include "cli/arguments.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace kavor::cli {

namespace {

Error usageError(std::string message) {
  return Error{ErrorKind::invalidInput, std::move(message)};
}

std::string quoted(std::string_view text) {
  std::string out = "\"";
  out += text;
  out += '"';
  return out;
}

}  // namespace

bool Arguments::has(std::string_view option) const {
  return value(option).has_value();
}

std::optional<std::string_view> Arguments::value(std::string_view option) const {
  const auto last = std::find_if(options.rbegin(), options.rend(),
                                 [&](const auto& given) { return given.first == option; });
  if (last == options.rend()) return std::nullopt;
  return last->second;
}

Expected<Arguments> parseArguments(std::span<const std::string_view> args,
                                   std::span<const OptionSpec> known) {
  Arguments parsed;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string_view arg = args[i];
    if (arg == "--") {
      parsed.operands.insert(parsed.operands.end(), args.begin() + i + 1, args.end());
      break;
    }
    if (arg.size() < 2 || arg[0] != '-') {
      parsed.operands.push_back(arg);
      continue;
    }
    if (arg == "-h" || arg == "--help") {
      parsed.help = true;
      return parsed;
    }
    const size_t equals = arg.find('=');
    const std::string_view name = arg.substr(0, equals);
    const auto option = std::find_if(known.begin(), known.end(),
                                     [&](const OptionSpec& s) { return s.name == name; });
    if (option == known.end()) return usageError("unknown option " + quoted(name));
    const bool takesValue = !option->valueName.empty();
    if (!takesValue) {
      if (equals != std::string_view::npos)
        return usageError("option " + std::string(name) + " takes no value");
      parsed.options.emplace_back(name, std::string_view());
    } else if (equals != std::string_view::npos) {
      parsed.options.emplace_back(name, arg.substr(equals + 1));
    } else if (i + 1 < args.size()) {
      parsed.options.emplace_back(name, args[++i]);
    } else {
      return usageError("option " + std::string(name) + " needs a value");
    }
  }
  return parsed;
}

Expected<int> positiveNumber(std::string_view option, std::string_view text) {
  int n = 0;
  const char* end = text.data() + text.size();
  const auto [next, ec] = std::from_chars(text.data(), end, n);
  if (ec != std::errc() || next != end || n <= 0)
    return usageError(std::string(option) + " wants a whole number above 0, not " + quoted(text));
  return n;
}

std::vector<OptionSpec> joinOptions(std::initializer_list<std::span<const OptionSpec>> parts) {
  std::vector<OptionSpec> all;
  for (const auto& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace kavor::cli
