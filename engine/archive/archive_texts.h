#pragma once
// The texts and names of the Logarchive Tool window and its three tools, written here once.

#include <string_view>

namespace kavor {

inline constexpr std::string_view kArchWindowTitle = "Logarchive Tool";
inline constexpr std::string_view kArchFontSizeKey = "archFontSize";
inline constexpr std::string_view kArchWindowControllerId = "ArchWindow";
inline constexpr std::string_view kLogarchiveExtension = "logarchive";

// The catalogue.
inline constexpr std::string_view kCatalogueHeading = "Catalogue listing of ";  // path, " :\n"
inline constexpr std::string_view kHeadingEnd = " :\n";
inline constexpr std::string_view kCatalogueDatePattern = "yyyy-MM-dd HH:mm:ss ZZZ";
inline constexpr std::string_view kTraceExtension = "tracev3";

// The statistics analysis.
inline constexpr std::string_view kAnalysisHeading = "Analysis of ";  // path, " :\n"
inline constexpr std::string_view kAnalysisCsvHeading =
    "date,time,totalsize,filename,size,percent,process\n";
inline constexpr std::string_view kStatsRecordSeparator = "--- !logd statistics record\n";
inline constexpr std::string_view kFileRotatePrefix = "type  : File Rotate\nfile  : Persist/";
inline constexpr std::string_view kStatsExtension = "txt";
inline constexpr std::string_view kExtraFolder = "Extra";
// A statistics file whose bytes are no UTF-8 text, said like the other failures to read a file.
inline constexpr std::string_view kStatsNotUtf8Lead = "cannot read ";  // path, then:
inline constexpr std::string_view kStatsNotUtf8End = ": the text is not UTF-8";

// The builder.
inline constexpr std::string_view kSourceLine = "Source: ";           // path, "\n"
inline constexpr std::string_view kDestinationLine = "Destination:";  // path, "\n"
inline constexpr std::string_view kCopyingFrom = "copying from ";
inline constexpr std::string_view kCopyingTo = " to ";
inline constexpr std::string_view kCreatingFolderAt = "creating folder at ";
inline constexpr std::string_view kGettingContentsAt = "getting contents of folder at ";
inline constexpr std::string_view kOpeningPlistAt = "opening property list at ";
inline constexpr std::string_view kImportDictEmpty = "theImportDict is empty or missing.\n";
inline constexpr std::string_view kBuildingExportDict = "building export dictionary\n";
inline constexpr std::string_view kWritingExportDictTo = "writing export dictionary to ";
inline constexpr std::string_view kCouldNotSaveExport = "Couldn't save exported file.";
inline constexpr std::string_view kLiveDataName = "logdata.LiveData.tracev3";

}  // namespace kavor
