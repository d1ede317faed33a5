// kavor-cli style: the log tool's JSON output as the main window's styled log.

#include <cstdio>
#include <string>

#include "cli/command.h"
#include "cli/decoded_input.h"
#include "cli/os_version_option.h"
#include "cli/show_switches_option.h"
#include "cli/styled_output.h"
#include "engine/query/entry_styler.h"
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
    kOsVersionOption,
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

int runStyle(const Arguments& args) {
  StylerInput input;
  if (args.has(kStyle) && args.has(kStyleName))
    return badUsage("--style and --style-name exclude each other");
  const auto filter = filterFrom(args);
  if (!filter) return badUsage(filter.error().message());
  input.filter = *filter;
  if (const auto cap = args.value(kCap)) {
    const auto n = positiveNumber(kCap, *cap);
    if (!n) return badUsage(n.error().message());
    input.theLogCap = *n;
  }
  input.limitEntries = !args.has(kNoLimit);
  input.show = showSwitchesFrom(args);
  const auto mode = colourModeFrom(args.value(kColour).value_or("auto"));
  if (!mode) return badUsage("--color wants auto, always, never or markup");
  int status = kExitOk;
  const auto osVersion = osVersionOption(args, status);
  if (!osVersion) return status;
  input.osVersion = *osVersion;
  std::string styleText(args.value(kStyle).value_or(kFactoryStyles[0].text));
  if (const auto name = args.value(kStyleName)) {
    auto text = factoryStyle(*name, input.osVersion);
    if (!text) return badUsage(text.error().message());
    styleText = std::move(*text);
  }
  input.styleText = styleText;

  const auto list = decodeInput(args);
  if (!list) return failed(list.error().message());
  input.entries = &*list;
  const StyledEntries styled = styleEntries(input);
  writeStyled(styled.text, *mode);
  if (args.has(kCounts) && styled.entryCount)
    std::fprintf(stderr, "%s\n", styled.entryCount->c_str());
  return kExitOk;
}

}  // namespace

const Command& styleCommand() {
  static const Command command{
      .name = "style",
      .summary = "print the log tool's JSON output as the styled log of the main window",
      .synopsis = "[--style TEXT | --style-name NAME] [--filter TEXT] [--color WHEN] [FILE]",
      .details =
          "Decodes what \"log show --style json\" prints, read from FILE or from standard\n"
          "input, and prints one line per shown entry: the fields the style names, each\n"
          "followed by a space. A style item is a field number (see \"kavor-cli fields\")\n"
          "with letters: h the time of day and d the date and time of field 0; t the first\n"
          "21 characters, T all but the last 20, f the file name of a path; r, g, b red,\n"
          "green, blue. Entries are dropped by type (logEvent shown, signpostEvent and\n"
          "activityCreateEvent hidden, unless the options say otherwise), then counted\n"
          "toward the limit, then kept only when their message holds the filter.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set).",
      .options = kOptions,
      .maxOperands = 1,
      .run = runStyle,
  };
  return command;
}

}  // namespace kavor::cli
