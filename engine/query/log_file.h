#pragma once
// A log saved as JSON, by "log show --style json" or by kavor-cli, opened into a main window:
// read in pieces straight into the decoder a fetch uses, never whole, so that a file of any size
// opens within the fetch memory budget.

#include <filesystem>
#include <optional>
#include <stop_token>
#include <utility>

#include "engine/core/entry_decoder.h"
#include "engine/document/document.h"
#include "engine/query/log_runner.h"
#include "platform/expected.h"
#include "platform/file_reader.h"

namespace kavor {

// Any thread. The entries, or why there are none, after the input's name: the reader's own
// failure, or the decoder's reason (which says where in the file). Once the input is known not
// to decode, or stop is asked, the rest is not read.
Expected<EntryList> decodeLogFile(FileReader& input, std::stop_token stop = {},
                                  EntryDecoder::Options decoding = {});

// What reading a file brings back to the main thread.
struct OpenedLogFile {
  std::filesystem::path path;
  Expected<EntryList> entries = Error{ErrorKind::parse, "the file was not read", 0};
  // The earliest and the latest time of the entries, the span their chart covers.
  std::optional<std::pair<double, double>> span;
};

// Any thread: opens, decodes and measures the file.
OpenedLogFile readLogFile(const std::filesystem::path& path, std::stop_token stop = {},
                          EntryDecoder::Options decoding = {});

// Main thread, for a file whose entries decoded, in the new document of its window: the entries
// become the document's, which knows the file (for its trailer) and takes its name and its time
// span; the window is told what to show as after a fetch. context.startDate is not read.
LogShowCompletion completeLogFileOpen(OpenedLogFile&& opened, Document& document, StylerInput style,
                                      const CompletionContext& context);

// Files a main window takes when they are dropped on it.
bool isJsonLogName(const std::filesystem::path& path);

}  // namespace kavor
