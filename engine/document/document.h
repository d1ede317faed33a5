#pragma once
// One main window's document: the entries of its last fetch, the time window that was asked
// for, and the chart data computed from them. It lives as long as its window, and the fields
// of one document never affect another's.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/core/entry_list.h"
#include "engine/document/shown_result.h"
#include "platform/clock.h"
#include "platform/operation_queue.h"

namespace kavor {

class Document {
 public:
  static constexpr int64_t kInitialBinCount = 50;
  static constexpr int kMaxConcurrentOperations = 4;

  // Both ends of the time window start at the clock's now.
  explicit Document(const Clock& clock);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // Documents are saved only when the user asks.
  static constexpr bool autosavesInPlace() { return false; }

  // Fetch data, written on the main thread (the time window before a fetch, the entries after).
  // The entries are shared, so that a chart collection still reading a list keeps it alive when
  // a newer fetch replaces it.
  std::shared_ptr<const EntryList> theJSONDictionaries = std::make_shared<const EntryList>();
  double startDate = 0;  // absolute time, seconds since 2001
  double endDate = 0;

  // Chart data (engine/document/chart_data.h), written on the main thread only: a collection
  // builds its per-entry arrays aside on processingQueue and hands them over when it ends.
  std::vector<double> logTimes;
  // Per entry, the position of its subsystem name in logSSystTypes: a million entries share a
  // few dozen names, so each keeps an index rather than a copy.
  std::vector<uint32_t> logSubsys;
  std::vector<std::string> logSSystTypes;  // the distinct names, in the order they first appear
  std::vector<std::string> popSSystTypes;  // the same names ordered by byte, as the menu lists them
  std::vector<int64_t> logSSystIndexes;    // per entry, the position of its name in popSSystTypes
  std::vector<int64_t> logBarValue;
  std::vector<std::string> logBarLabel;
  std::vector<double> logBarDate;  // absolute times
  int64_t logSSystCount = 0;
  int64_t theNoBins = kInitialBinCount;
  // The newest collection begun; one that began earlier and ends later is dropped.
  uint64_t chartCollection = 0;

  // What the main window shows: the styled entries or their CSV text, with the trailers that
  // styled saves appended. Main thread only.
  ShownResult shown;

  // Names the document's windows; set after each fetch, or to the name of the file opened.
  std::string displayName;
  // The saved JSON log the entries were read from; none once a fetch replaced them.
  std::optional<std::filesystem::path> sourceFile;

  // Where the document's work runs: the log tool's runs and the chart preparation; its threads
  // start with the first. Declared last so that it is destroyed first: its destructor waits for
  // operations that still write the fields above.
  std::unique_ptr<OperationQueue> processingQueue;
};

}  // namespace kavor
