#pragma once
// The activity chart's data: how many of a document's entries fall into each of theNoBins equal
// time bins between startDate and endDate, for all entries or for one subsystem.
//
// Three steps. After a fetch the main thread calls beginChartCollection; collectChartEntries then
// reads every entry once on the document's processingQueue and builds its arrays aside; back on
// the main thread indexSubsystems puts them into the document, sorts the subsystem names and bins
// everything. binChartData runs again on the main thread whenever the chart window changes the
// subsystem or the number of bins. The document's chart fields thus only ever change on the main
// thread, all at once, and a reader never sees half of an update.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/core/entry_list.h"
#include "engine/document/document.h"

namespace kavor {

inline constexpr std::string_view kNoSubsystemName = "[nil]";
inline constexpr std::string_view kKernelName = "*kernel*";

// What one collection found, one element per entry in the list's order.
struct ChartEntries {
  std::vector<double> times;    // seconds after startDate, never negative; 0 without a usable time
  std::vector<uint32_t> names;  // positions in distinctNames
  std::vector<std::string> distinctNames;  // in the order they first appear
  uint64_t collection = 0;                 // from beginChartCollection
};

// Main thread, once per fetch that the chart is to show: the number the collection passes on.
uint64_t beginChartCollection(Document& document);

// Any thread. Reads nothing but its arguments; `entries` must stay unchanged until it returns.
// `collection` is what beginChartCollection gave (0 when nothing else can collect meanwhile).
ChartEntries collectChartEntries(const EntryList& entries, double startDate,
                                 uint64_t collection = 0);

// Main thread. Replaces the per-entry fields with `entries`, sorts the names into popSSystTypes,
// then bins all entries. Returns false and changes nothing when a later collection has begun
// since `entries` was started: its result is the one the chart must show.
// timeZone: for the bin labels, as DateFormatter takes it (empty: the current zone).
bool indexSubsystems(Document& document, ChartEntries&& entries, std::string_view timeZone = {});

// Main thread. Fills logBarValue, logBarLabel, logBarDate and logSSystCount with theNoBins bins.
// selection 0 counts every entry, k >= 1 those of popSSystTypes[k-1]; any other selection counts
// nothing. A width that is 0 or not finite puts entries with time 0 in the first bin and the rest
// in the last (t/w is +inf or NaN); the bins then all start at startDate.
void binChartData(Document& document, int64_t selection, std::string_view timeZone = {});

// Any thread. The earliest and the latest time of the entries' timestamps, read as
// collectChartEntries reads them; none when no entry has a usable one.
std::optional<std::pair<double, double>> entryTimeSpan(const EntryList& entries);

// The log tool's own timestamp shape, "2020-05-01 09:41:07.123456+0100", read without ICU: the
// absolute time DateFormatter("yyyy-MM-dd HH:mm:ss.SSSSSSZZZZZ").parse would give (milliseconds
// kept, the rest of the fraction dropped). None for any other text, even one that the
// formatter accepts: those go to the formatter.
std::optional<double> parseToolTimestamp(std::string_view text);

}  // namespace kavor
