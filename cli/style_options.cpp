#include "cli/style_options.h"

#include <cstdio>

#include "cli/command.h"
#include "cli/show_switches_option.h"
#include "engine/query/named_lists.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kStyle = "--style";
constexpr std::string_view kStyleName = "--style-name";
constexpr std::string_view kFilter = "--filter";
constexpr std::string_view kFilterName = "--filter-name";
constexpr std::string_view kFilterText = "--filter-text";
constexpr std::string_view kCap = "--cap";
constexpr std::string_view kNoLimit = "--no-limit";
constexpr std::string_view kColour = "--color";
constexpr std::string_view kCounts = "--counts";

constexpr OptionSpec kOptions[] = {
    {kStyle, "TEXT", "the style, such as \"0hr 2g 6b 9b 4r 10\" (default: \"0h 4 10\")"},
    {kStyleName, "NAME", "a style of the factory list: none, basic, basic+, regular, starters..."},
    {kFilter, "TEXT", "keep entries whose message holds TEXT, as typed into the filter box"},
    {kFilterName, "NAME", "a filter of the list; a NAME starting with * makes its text a regex"},
    {kFilterText, "TEXT", "the text of the --filter-name filter"},
    {kCap, "N", "the entry limit (default: 999, which lets 1000 entries through)"},
    {kNoLimit, {}, "no entry limit"},
    kShowSignpostsOption,
    kShowActivitiesOption,
    kHideLogEntriesOption,
    {kColour, "WHEN", "auto (default), always, never, or markup (<r>red </r>, <g>, <b>)"},
    {kCounts, {}, "print the entry count label on standard error"},
};

// The filter options, or a usage problem.
Expected<FilterChoice> filterFrom(const Arguments& args) {
  const auto typed = args.value(kFilter);
  const auto name = args.value(kFilterName);
  const auto text = args.value(kFilterText);
  if (typed && (name || text))
    return Error{ErrorKind::invalidInput,
                 "--filter goes alone, without --filter-name and --filter-text", 0};
  if (name.has_value() != text.has_value())
    return Error{ErrorKind::invalidInput, "--filter-name and --filter-text go together", 0};
  if (typed) return FilterChoice::typed(std::string(*typed));
  if (name) return FilterChoice::row(std::string(*name), std::string(*text));
  return FilterChoice::none();
}

// The text of the factory style NAME, which depends on the system version.
Expected<std::string> factoryStyle(std::string_view name, int osVersion) {
  std::string names;
  for (const ListEntry& entry : factoryStyleList(osVersion)) {
    if (entry.name == name) return entry.text;
    names += names.empty() ? "" : ", ";
    names += entry.name;
  }
  return Error{ErrorKind::invalidInput, "--style-name wants one of " + names, 0};
}

}  // namespace

std::span<const OptionSpec> styleOptions() {
  return kOptions;
}

std::optional<StyleChoice> styleChoiceFrom(const Arguments& args, int& exitStatus) {
  const auto usage = [&exitStatus](const std::string& message) {
    exitStatus = badUsage(message);
    return std::nullopt;
  };
  StyleChoice choice;
  if (args.has(kStyle) && args.has(kStyleName))
    return usage("--style and --style-name exclude each other");
  const auto filter = filterFrom(args);
  if (!filter) return usage(filter.error().message());
  choice.input.filter = *filter;
  if (const auto cap = args.value(kCap)) {
    const auto n = positiveNumber(kCap, *cap);
    if (!n) return usage(n.error().message());
    choice.input.theLogCap = *n;
  }
  choice.input.limitEntries = !args.has(kNoLimit);
  choice.input.show = showSwitchesFrom(args);
  const auto mode = colourModeFrom(args.value(kColour).value_or("auto"));
  if (!mode) return usage("--color wants auto, always, never or markup");
  choice.mode = *mode;
  choice.counts = args.has(kCounts);
  choice.styleText = args.value(kStyle).value_or(kFactoryStyles[0].text);
  if (const auto name = args.value(kStyleName)) choice.styleName = std::string(*name);
  return choice;
}

std::optional<StylerInput> stylerInputFor(const StyleChoice& choice, int osVersion,
                                          std::string& styleText, int& exitStatus) {
  StylerInput input = choice.input;
  styleText = choice.styleText;
  if (choice.styleName) {
    auto text = factoryStyle(*choice.styleName, osVersion);
    if (!text) {
      exitStatus = badUsage(text.error().message());
      return std::nullopt;
    }
    styleText = std::move(*text);
  }
  input.styleText = styleText;
  input.osVersion = osVersion;
  return input;
}

void writeStyledEntries(const StyleChoice& choice, const StyledEntries& styled) {
  writeStyled(styled.text, choice.mode);
  if (choice.counts && styled.entryCount) std::fprintf(stderr, "%s\n", styled.entryCount->c_str());
  // The output is partial: say so where a script or a person will see it.
  if (styled.notice) std::fprintf(stderr, "%s\n", styled.notice->c_str());
  if (styled.limitNotice) std::fprintf(stderr, "%s\n", styled.limitNotice->c_str());
}

int printStyled(const StyleChoice& choice, int osVersion, const EntryList& entries) {
  std::string styleText;
  int status = kExitOk;
  auto input = stylerInputFor(choice, osVersion, styleText, status);
  if (!input) return status;
  input->entries = &entries;
  writeStyledEntries(choice, styleEntries(*input));
  return kExitOk;
}

}  // namespace kavor::cli
