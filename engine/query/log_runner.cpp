#include "engine/query/log_runner.h"

#include "engine/core/entry_decoder.h"
#include "platform/child_process.h"

namespace kavor {

namespace {

// As much as the pipe holds, so that each read takes what is there.
constexpr size_t kReadPiece = size_t{1} << 20;

// The tool's output goes straight into the decoder's buffers.
class DecodingSink final : public OutputSink {
 public:
  std::span<char> room() override { return decoder_.prepare(kReadPiece); }
  void commit(size_t bytes) override { decoder_.commit(bytes); }
  Expected<EntryList> finish() { return decoder_.finish(); }

 private:
  EntryDecoder decoder_;
};

constexpr std::string_view kParagraphSeparator = "\u2029";

}  // namespace

LogShowOutput runLogShow(const std::filesystem::path& tool, const std::vector<std::string>& args) {
  LogShowOutput out;
  DecodingSink sink;
  auto exit = runChildProcess(tool, args, sink);
  if (!exit) {
    out.launchFailure = exit.error();
    return out;
  }
  out.status = exit->status;
  out.standardError = std::move(exit->standardError);
  if (auto entries = sink.finish()) out.entries = std::move(*entries);
  return out;
}

LogShowCompletion completeLogShow(LogShowOutput&& output, Document& document, StylerInput style,
                                  const CompletionContext& context) {
  LogShowCompletion done;
  if (output.launchFailure) {
    done.alertText = std::string(kLogNotStartedPrefix) + output.launchFailure->message();
    return done;
  }
  if (output.status != 0) {
    std::string text(kLogErrorPrefix);
    text += std::to_string(output.status);
    // What the tool said comes after the fixed message, as extra text.
    if (!output.standardError.empty()) {
      text += "\n\n";
      text += output.standardError;
      while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    }
    done.alertText = std::move(text);
    return done;
  }
  done.theNowStr = context.formatter.format(context.now);
  if (!output.entries) {
    document.theJSONDictionaries = std::make_shared<const EntryList>();
    return done;
  }
  document.theJSONDictionaries = std::make_shared<const EntryList>(std::move(*output.entries));
  document.displayName =
      std::string(kDocumentNamePrefix) + context.formatter.format(context.startDate);
  done.redraw = true;
  done.displayName = document.displayName;
  style.entries = document.theJSONDictionaries.get();
  done.styled = styleEntries(style);
  done.lineCount = paragraphCount(done.styled.text.text);
  done.queueChart = !context.dontShowGraphView && !document.theJSONDictionaries->empty();
  return done;
}

size_t paragraphCount(std::string_view text) {
  size_t count = 0;
  size_t at = 0;
  while (at < text.size()) {
    const size_t end = text.find_first_of("\n\r\xE2", at);
    if (end == std::string_view::npos) return count + 1;
    if (text[end] == '\xE2' && text.substr(end, 3) != kParagraphSeparator) {
      at = end + 1;  // another character beginning with that byte
      continue;
    }
    ++count;
    at = end + (text[end] == '\xE2' ? 3 : 1);
    if (text[end] == '\r' && at < text.size() && text[at] == '\n') ++at;
  }
  return count;
}

}  // namespace kavor
