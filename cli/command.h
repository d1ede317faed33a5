#pragma once
// The commands of kavor-cli and what they share: exit statuses, messages, standard output.
// Adding a command: a file that defines its Command, and its line in the table in command.cpp.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "cli/arguments.h"

namespace kavor::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 64;  // as the log tool and the BSD tools: EX_USAGE

struct Command {
  std::string_view name;
  std::string_view summary;   // one line, for the list of commands
  std::string_view synopsis;  // what follows the name on the usage line: "[--count] [FILE]"
  std::string_view details;   // what it does, for COMMAND --help
  std::span<const OptionSpec> options;
  size_t maxOperands = 0;
  int (*run)(const Arguments& args) = nullptr;  // the exit status
};

const Command& entriesCommand();
const Command& fieldsCommand();
const Command& styleCommand();
const Command& csvCommand();
const Command& queryCommand();
const Command& getCommand();
const Command& chartCommand();
const Command& archiveCatalogueCommand();
const Command& archiveStatsCommand();
const Command& archiveBuildCommand();
const Command& checkCommand();
const Command& listsExportCommand();
const Command& listsImportCommand();

std::span<const Command* const> commands();
const Command* findCommand(std::string_view name);
// Commands of a group ("archive catalogue") are named by two words; the words the command
// took, 0 when there is none.
const Command* findCommand(std::span<const std::string_view> words, size_t& taken);

// Parses the arguments after the command's name, answers --help, then runs it.
int runCommand(const Command& command, std::span<const std::string_view> args);
// The list of commands for --help, and one command's usage for COMMAND --help.
std::string overallUsage();
std::string commandUsage(const Command& command);

// "kavor-cli: message" on standard error, and the status to exit with.
void printError(std::string_view message);
int failed(std::string_view message);
int badUsage(std::string_view message);

// Standard output, checked once at the end so that a full disk or a closed pipe is not success.
void writeOut(std::string_view text);
int finishOutput(int status);

}  // namespace kavor::cli
