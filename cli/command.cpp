#include "cli/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace kavor::cli {

namespace {

constexpr std::string_view kHelpOption = "-h, --help";
constexpr std::string_view kHelpText = "show this help";

std::string seeHelp(const Command& command) {
  return " (see \"kavor-cli " + std::string(command.name) + " --help\")";
}

std::string optionLabel(const OptionSpec& option) {
  std::string label(option.name);
  if (!option.valueName.empty()) {
    label += ' ';
    label += option.valueName;
  }
  return label;
}

using Row = std::pair<std::string, std::string_view>;

// Labels on the left, indented, their texts lined up two spaces after the longest label.
void appendRows(std::string& text, const std::vector<Row>& rows) {
  size_t width = 0;
  for (const Row& row : rows)
    width = std::max(width, row.first.size());
  for (const auto& [label, help] : rows)
    text += "  " + label + std::string(width - label.size() + 2, ' ') + std::string(help) + "\n";
}

}  // namespace

std::span<const Command* const> commands() {
  static const Command* const table[] = {
      &entriesCommand(),      &fieldsCommand(),       &styleCommand(), &csvCommand(),
      &queryCommand(),        &getCommand(),          &chartCommand(), &archiveCatalogueCommand(),
      &archiveStatsCommand(), &archiveBuildCommand(), &checkCommand(), &listsExportCommand(),
      &listsImportCommand(),
  };
  return table;
}

const Command* findCommand(std::string_view name) {
  for (const Command* command : commands())
    if (command->name == name) return command;
  return nullptr;
}

const Command* findCommand(std::span<const std::string_view> words, size_t& taken) {
  taken = 0;
  if (words.empty()) return nullptr;
  if (const Command* command = findCommand(words[0])) {
    taken = 1;
    return command;
  }
  if (words.size() < 2) return nullptr;
  const Command* command = findCommand(std::string(words[0]) + " " + std::string(words[1]));
  if (command) taken = 2;
  return command;
}

std::string overallUsage() {
  std::string text =
      "Usage: kavor-cli COMMAND [OPTIONS] [ARGUMENTS]\n"
      "       kavor-cli --help | --version\n\n"
      "Commands:\n";
  std::vector<Row> rows;
  for (const Command* command : commands())
    rows.emplace_back(command->name, command->summary);
  appendRows(text, rows);
  text +=
      "\nRun \"kavor-cli COMMAND --help\" for a command's options.\n"
      "Exit status: 0 success, 1 failure, 64 bad usage.\n";
  return text;
}

std::string commandUsage(const Command& command) {
  std::string text = "Usage: kavor-cli ";
  text += command.name;
  if (!command.synopsis.empty()) {
    text += ' ';
    text += command.synopsis;
  }
  text += "\n\n";
  text += command.details;
  text += "\n\nOptions:\n";
  std::vector<Row> rows;
  for (const OptionSpec& option : command.options)
    rows.emplace_back(optionLabel(option), option.help);
  rows.emplace_back(kHelpOption, kHelpText);
  appendRows(text, rows);
  return text;
}

int runCommand(const Command& command, std::span<const std::string_view> args) {
  const auto parsed = parseArguments(args, command.options);
  if (!parsed) return badUsage(parsed.error().message() + seeHelp(command));
  if (parsed->help) {
    writeOut(commandUsage(command));
    return finishOutput(kExitOk);
  }
  if (parsed->operands.size() > command.maxOperands) {
    const std::string_view extra = parsed->operands[command.maxOperands];
    return badUsage("unexpected argument \"" + std::string(extra) + "\"" + seeHelp(command));
  }
  return finishOutput(command.run(*parsed));
}

void printError(std::string_view message) {
  std::fprintf(stderr, "kavor-cli: %.*s\n", static_cast<int>(message.size()), message.data());
}

int failed(std::string_view message) {
  printError(message);
  return kExitFailure;
}

int badUsage(std::string_view message) {
  printError(message);
  return kExitUsage;
}

void writeOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

int finishOutput(int status) {
  if (std::fflush(stdout) != 0 || std::ferror(stdout))
    return failed(std::string("writing the output: ") + std::strerror(errno));
  return status;
}

}  // namespace kavor::cli
