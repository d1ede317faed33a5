// kavor-cli lists export | import: the user's named lists (predicates, styles, filters) to and
// from the file that Export Preferences… and Import Preferences… use, on the settings the app
// itself reads.

#include <filesystem>
#include <optional>
#include <string>

#include "cli/command.h"
#include "cli/os_version_option.h"
#include "engine/query/prefs_exchange.h"
#include "engine/query/prefs_texts.h"
#include "engine/query/settings_texts.h"
#include "engine/shell/settings_trouble.h"
#include "platform/file_settings_store.h"
#include "platform/system_paths.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kStandardOutput = "-";

constexpr OptionSpec kExportOptions[] = {kOsVersionOption};
constexpr OptionSpec kImportOptions[] = {
    {"--merge", {}, "append the file's entries whose names a list lacks, instead of replacing"},
    kOsVersionOption,
};

// The version matters only when the factory lists stand in for lists the store lacks; asking
// for it otherwise would make a demo system for nothing.
std::optional<int> osVersionFor(const SettingsStore& store, const Arguments& args, int& status) {
  if (!listsInStoreNeedOsVersion(store)) return kFirstSignpostOsVersion;
  return osVersionOption(args, status);
}

// A settings file the store could not read was moved aside: the user must hear of it.
void tellTrouble(const SettingsStore& store) {
  for (const SettingsNotice& notice : SettingsTrouble().noticesAfter(store))
    printError(notice.message + " " + notice.informative);
}

int runExport(const Arguments& args) {
  if (args.operands.size() != 1)
    return badUsage("give the file to write, or - for standard output");
  const FileSettingsStore store(settingsFilePathFrom(processEnvironment()));
  int status = kExitOk;
  const auto osVersion = osVersionFor(store, args, status);
  tellTrouble(store);
  if (!osVersion) return status;
  const PrefsLists lists = listsInStore(store, *osVersion);
  if (args.operands[0] == kStandardOutput) {
    writeOut(exchangeFileBytes(lists));
    return kExitOk;
  }
  const Status written = writeExchangeFile(std::filesystem::path(args.operands[0]), lists);
  if (!written)
    return failed(std::string(kCouldntSaveExported) + " (" + written.error().message() + ")");
  return kExitOk;
}

int runImport(const Arguments& args) {
  if (args.operands.size() != 1) return badUsage("give the file to import");
  FileSettingsStore store(settingsFilePathFrom(processEnvironment()));
  int status = kExitOk;
  const auto osVersion = osVersionFor(store, args, status);
  if (!osVersion) {
    tellTrouble(store);
    return status;
  }
  const auto imported = importPrefsIntoStore(
      store, std::filesystem::path(args.operands[0]),
      args.has("--merge") ? ImportMode::merge : ImportMode::replace, *osVersion);
  tellTrouble(store);
  return imported ? kExitOk : failed(imported.error().message());
}

}  // namespace

const Command& listsExportCommand() {
  static const Command command{
      .name = "lists export",
      .summary = "write the stored predicates, styles and filters to a lists file",
      .synopsis = "[--os-version N] FILE",
      .details =
          "Writes the named lists Kavor keeps in its settings to FILE (- for standard output)\n"
          "as an XML property list, the form Export Preferences... writes. Where the settings\n"
          "hold no lists yet, the factory lists are written; their styles follow the system's\n"
          "version (from the system root unless --os-version is given).",
      .options = kExportOptions,
      .maxOperands = 1,
      .run = runExport,
  };
  return command;
}

const Command& listsImportCommand() {
  static const Command command{
      .name = "lists import",
      .summary = "replace the stored lists with those of a lists file, or merge them in",
      .synopsis = "[--merge] [--os-version N] FILE",
      .details =
          "Reads a lists file (any property-list form) and replaces Kavor's stored predicates,\n"
          "styles and filters with its lists, or with --merge appends each entry whose name\n"
          "the list does not hold yet. A file holding an empty dictionary changes nothing. A\n"
          "file that cannot be read, or whose lists are not entries of a name and a text,\n"
          "changes nothing and exits 1 with the reason. A running Kavor shows the new lists\n"
          "in the windows it opens afterwards.",
      .options = kImportOptions,
      .maxOperands = 1,
      .run = runImport,
  };
  return command;
}

}  // namespace kavor::cli
