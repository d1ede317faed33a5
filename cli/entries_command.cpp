// kavor-cli entries: the log tool's JSON output decoded, one line per entry.

#include <string>

#include "cli/command.h"
#include "cli/decoded_input.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kCount = "--count";

constexpr OptionSpec kOptions[] = {
    {kCount, {}, "print only the number of entries"},
};

// Written out in pieces of about this size rather than a line at a time.
constexpr size_t kOutputPiece = size_t{64} << 10;

// Keeps an entry on one line whatever its message holds.
void appendOnOneLine(std::string& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '\n':
        out += "\\n";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        out += c;
    }
  }
}

void appendEntry(std::string& out, const EntryList& list, size_t index, std::string& scratch) {
  if (!list.isRecord(index)) {
    out += "(not an object)\n";
    return;
  }
  bool first = true;
  for (int k = 0; k < kFieldKeyCount; ++k) {
    const auto key = static_cast<EntryKey>(k);
    const FieldValue value = list.value(index, key);
    if (!value.present()) continue;
    if (!first) out += "  ";
    first = false;
    out += entryKeyName(key);
    out += '=';
    scratch.clear();
    value.appendPlainText(scratch);
    appendOnOneLine(out, scratch);
  }
  out += '\n';
}

int runEntries(const Arguments& args) {
  const auto list = decodeInput(args);
  if (!list) return failed(list.error().message());

  if (args.has(kCount)) {
    writeOut(std::to_string(list->size()) + "\n");
    return kExitOk;
  }
  std::string out;
  std::string scratch;
  for (size_t i = 0; i < list->size(); ++i) {
    appendEntry(out, *list, i, scratch);
    if (out.size() >= kOutputPiece) {
      writeOut(out);
      out.clear();
    }
  }
  writeOut(out);
  return kExitOk;
}

}  // namespace

const Command& entriesCommand() {
  static const Command command{
      .name = "entries",
      .summary = "decode the log tool's JSON output and print one line per entry",
      .synopsis = "[--count] [FILE]",
      .details =
          "Decodes what \"log show --style json\" prints, read from FILE or from standard\n"
          "input (no FILE, or \"-\"), and prints each entry on one line: its fields in\n"
          "field-number order as key=value, two spaces apart. Line feeds, tabs and\n"
          "carriage returns in values show as \\n, \\t and \\r; an element of the array\n"
          "that is not an object shows as \"(not an object)\".",
      .options = kOptions,
      .maxOperands = 1,
      .run = runEntries,
  };
  return command;
}

}  // namespace kavor::cli
