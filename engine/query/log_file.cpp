#include "engine/query/log_file.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "engine/document/chart_data.h"

namespace kavor {

Expected<EntryList> decodeLogFile(FileReader& input, std::stop_token stop,
                                  EntryDecoder::Options decoding) {
  EntryDecoder decoder(decoding);
  while (!decoder.failed()) {
    if (stop.stop_requested()) return Error{ErrorKind::io, input.name() + ": reading was stopped"};
    const auto n = input.read(decoder.prepare());
    if (!n) return n.error();
    if (*n == 0) break;
    decoder.commit(*n);
  }
  auto list = decoder.finish();
  if (!list) return Error{list.error().kind, input.name() + ": " + list.error().message(), 0};
  return list;
}

OpenedLogFile readLogFile(const std::filesystem::path& path, std::stop_token stop,
                          EntryDecoder::Options decoding) {
  OpenedLogFile opened;
  opened.path = path;
  auto input = FileReader::open(path);
  if (!input) {
    opened.entries = input.error();
    return opened;
  }
  opened.entries = decodeLogFile(*input, std::move(stop), decoding);
  if (opened.entries) opened.span = entryTimeSpan(*opened.entries);
  return opened;
}

LogShowCompletion completeLogFileOpen(OpenedLogFile&& opened, Document& document, StylerInput style,
                                      const CompletionContext& context) {
  LogShowCompletion done;
  done.theNowStr = context.formatter.format(context.now);
  if (opened.span) {
    document.startDate = opened.span->first;
    document.endDate = opened.span->second;
  }
  document.displayName = opened.path.filename().string();
  document.sourceFile = opened.path;
  takeDecodedEntries(std::move(*opened.entries), document, style, context, done);
  return done;
}

bool isJsonLogName(const std::filesystem::path& path) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension == ".json";
}

}  // namespace kavor
