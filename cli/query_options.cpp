#include "cli/query_options.h"

#include <string>

#include "cli/command.h"
#include "cli/os_version_option.h"
#include "engine/query/named_lists.h"
#include "engine/query/settings_texts.h"
#include "platform/clock.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kPeriod = "--period";
constexpr std::string_view kUnit = "--unit";
constexpr std::string_view kBase = "--base";
constexpr std::string_view kPredicate = "--predicate";
constexpr std::string_view kPredicateName = "--predicate-name";
constexpr std::string_view kPredicateText = "--predicate-text";
constexpr std::string_view kSource = "--source";
constexpr std::string_view kArchive = "--archive";
constexpr std::string_view kFile = "--file";
constexpr std::string_view kNoInfo = "--no-info";
constexpr std::string_view kNoSignposts = "--no-signposts";
constexpr std::string_view kDebug = "--debug";

constexpr std::string_view kDefaultPeriodText = "-20";

constexpr OptionSpec kOptions[] = {
    {kArchive, "PATH", "a logarchive instead of the live log"},
    {kFile, "PATH", "a single log data file (tracev3) instead of the live log"},
    {kPeriod, "TEXT", "the period field's text, a signed number of units (default: -20)"},
    {kUnit, "UNIT", "sec (default), min, hour or day"},
    {kBase, "DATE", "the base date, \"yyyy-MM-dd HH:mm:ss\" in local time (default: now)"},
    {kPredicate, "TEXT", "a predicate as typed into the box, sent as it is (even \"none\")"},
    {kPredicateName, "NAME",
     "the factory predicate NAME, or with --predicate-text a row of your own"},
    {kPredicateText, "TEXT", "the text of the --predicate-name row"},
    {kSource, "PATH", "either, as the open panel picks it: by the path's extension"},
    {kNoInfo, {}, "leave out info entries"},
    {kNoSignposts, {}, "leave out signposts"},
    {kDebug, {}, "fetch debug entries too"},
    kOsVersionOption,
};

// The predicate box and list that the options describe, or a usage problem.
struct PredicateChoice {
  ComboBoxModel box;
  NamedList list;
};

Expected<PredicateChoice> predicateChoiceFrom(const Arguments& args) {
  const auto typed = args.value(kPredicate);
  const auto name = args.value(kPredicateName);
  const auto text = args.value(kPredicateText);
  PredicateChoice choice;
  if (typed && (name || text))
    return Error{ErrorKind::invalidInput,
                 "--predicate goes alone, without --predicate-name and --predicate-text", 0};
  if (text && !name)
    return Error{ErrorKind::invalidInput, "--predicate-text needs --predicate-name", 0};
  if (typed) {
    choice.box.typeText(std::string(*typed));
    return choice;
  }
  if (!name) {
    // As a window starts: the first row, "none".
    choice.list = initialNamedList();
  } else if (text) {
    choice.list = {ListEntry{std::string(*name), std::string(*text)}};
  } else {
    std::string names;
    for (const ListEntry& entry : factoryPredicateList()) {
      if (entry.name == *name) choice.list = {entry};
      names += names.empty() ? "" : ", ";
      names += entry.name;
    }
    if (choice.list.empty())
      return Error{ErrorKind::invalidInput,
                   "--predicate-name without --predicate-text wants one of " + names, 0};
  }
  choice.box.addItem(choice.list.front().name);
  choice.box.selectItem(0);
  return choice;
}

std::optional<int64_t> unitIndexOf(std::string_view unit) {
  for (size_t i = 0; i < timeUnitsList.size(); ++i)
    if (timeUnitsList[i] == unit) return static_cast<int64_t>(i);
  return std::nullopt;
}

// What the period field would show after a Get Log, when it differs from what was typed.
void reportPeriod(std::string_view text, const PeriodFromText& period) {
  const std::string typed = "the period \"" + std::string(text) + "\"";
  const std::string value = std::to_string(period.theTimePeriod);
  if (!period.readable)
    printError(typed + " is not a number: the period is " + value + " and the field keeps it");
  else if (period.writeBack)
    printError(typed + " is out of range: the period is " + value + " and the field shows \"" +
               *period.writeBack + "\"");
}

}  // namespace

std::span<const OptionSpec> queryOptions() {
  return kOptions;
}

std::optional<QueryInput> queryInputFrom(const Arguments& args, const DateFormatter& formatter,
                                         int& exitStatus) {
  QueryInput input;
  const auto usage = [&exitStatus](const std::string& message) {
    exitStatus = badUsage(message);
    return std::nullopt;
  };
  const auto choice = predicateChoiceFrom(args);
  if (!choice) return usage(choice.error().message());
  const auto unit = unitIndexOf(args.value(kUnit).value_or(timeUnitsList[0]));
  if (!unit) return usage("--unit wants sec, min, hour or day");
  input.unitIndex = *unit;
  if (const auto base = args.value(kBase)) {
    const auto date = formatter.parse(*base);
    if (!date)
      return usage("--base wants a local date and time such as \"2020-05-01 10:00:00\", not \"" +
                   std::string(*base) + "\"");
    input.baseDate = *date;
  } else {
    input.baseDate = SystemClock().now();
  }
  const int sources = args.has(kSource) + args.has(kArchive) + args.has(kFile);
  if (sources > 1) return usage("--archive, --file and --source exclude each other");
  for (const std::string_view option : {kSource, kArchive, kFile}) {
    const auto path = args.value(option);
    if (!path) continue;
    if (path->empty()) return usage(std::string(option) + " wants a path");
    input.source = sourceFromPath(*path);
    // The open panel decides by the extension; these two say what the path is.
    if (option != kSource) {
      input.source.theSourceLogarchive = option == kArchive;
      input.source.theSourceFile = option == kFile;
    }
  }
  const auto osVersion = osVersionOption(args, exitStatus);
  if (!osVersion) return std::nullopt;
  input.osVersion = *osVersion;
  input.fetchInfo = !args.has(kNoInfo);
  input.fetchSignposts = !args.has(kNoSignposts);
  input.fetchDebug = args.has(kDebug);
  input.predicate = predicateFromBox(choice->box, choice->list);

  const std::string_view periodText = args.value(kPeriod).value_or(kDefaultPeriodText);
  const PeriodFromText period = periodFromText(periodText);
  reportPeriod(periodText, period);
  input.theTimePeriod = period.theTimePeriod;

  return input;
}

}  // namespace kavor::cli
