#include "engine/document/shown_result.h"

#include <algorithm>
#include <cstring>

namespace kavor {

namespace {

constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9";

// The break that ends before `next`, the start of the following line.
size_t breakLength(std::string_view text, size_t next) {
  const char last = text[next - 1];
  if (last == '\n') return next >= 2 && text[next - 2] == '\r' ? 2 : 1;
  if (last == '\r') return 1;
  return kParagraphSeparator.size();
}

}  // namespace

ShownResult::ShownResult() : styled_(std::make_shared<StyledText>()), lineStarts_{0} {}

ShownResult::ShownResult(StyledText text, std::vector<StyleColumn> columns,
                         std::vector<ShownEntry> shown)
    : styled_(std::make_shared<StyledText>(std::move(text))),
      fontedLength_(styled_->text.size()),
      lineStarts_{0},
      columns_(std::move(columns)),
      shown_(std::move(shown)),
      entriesEnd_(styled_->text.size()) {
  indexFrom(0);
}

ShownResult ShownResult::csv(std::string text) {
  ShownResult result(StyledText{std::move(text), {}});
  result.csv_ = true;
  return result;
}

void ShownResult::indexFrom(size_t line) {
  lineStarts_.resize(line + 1);
  const std::string_view text = styled_->text;
  const char* data = text.data();
  size_t at = lineStarts_.back();
  // Styled text breaks lines with LF only, unless a message brought other breaks: then every
  // byte is looked at.
  const bool onlyLineFeeds = std::memchr(data + at, '\r', text.size() - at) == nullptr &&
                             text.find(kParagraphSeparator, at) == std::string_view::npos;
  while (at < text.size()) {
    size_t end;
    size_t next;
    if (onlyLineFeeds) {
      const void* found = std::memchr(data + at, '\n', text.size() - at);
      if (!found) break;
      end = static_cast<size_t>(static_cast<const char*>(found) - data);
      next = end + 1;
    } else {
      end = text.find_first_of("\n\r\xE2", at);
      if (end == std::string_view::npos) break;
      if (text[end] == '\xE2' && text.substr(end, 3) != kParagraphSeparator) {
        at = end + 1;
        continue;
      }
      next = end + (text[end] == '\xE2' ? 3 : 1);
      if (text[end] == '\r' && next < text.size() && text[next] == '\n') ++next;
    }
    longestLine_ = std::max(longestLine_, end - lineStarts_.back());
    lineStarts_.push_back(next);
    at = next;
  }
  longestLine_ = std::max(longestLine_, text.size() - lineStarts_.back());
}

size_t ShownResult::paragraphCount() const {
  const bool lastEmpty = lineStarts_.back() == text().size();
  return lineStarts_.size() - (lastEmpty ? 1 : 0);
}

std::string_view ShownResult::line(size_t line) const {
  const std::string_view text = styled_->text;
  const size_t begin = lineStarts_[line];
  if (line + 1 == lineStarts_.size()) return text.substr(begin);
  const size_t next = lineStarts_[line + 1];
  return text.substr(begin, next - breakLength(text, next) - begin);
}

size_t ShownResult::lineOf(size_t offset) const {
  const auto after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  return static_cast<size_t>(after - lineStarts_.begin()) - 1;
}

std::span<const ColourRun> ShownResult::runsIn(size_t begin, size_t end) const {
  const auto& runs = styled_->runs;
  const auto first =
      std::lower_bound(runs.begin(), runs.end(), begin,
                       [](const ColourRun& r, size_t at) { return r.begin + r.length <= at; });
  auto last = first;
  while (last != runs.end() && last->begin < end)
    ++last;
  return {first, last};
}

std::optional<size_t> ShownResult::shownAt(size_t offset) const {
  if (shown_.empty() || offset >= entriesEnd_ || offset < shown_.front().textBegin)
    return std::nullopt;
  const auto after =
      std::upper_bound(shown_.begin(), shown_.end(), offset,
                       [](size_t at, const ShownEntry& e) { return at < e.textBegin; });
  return static_cast<size_t>(after - shown_.begin()) - 1;
}

void ShownResult::appendUnfonted(std::string_view text) {
  if (styled_.use_count() > 1) styled_ = std::make_shared<StyledText>(*styled_);
  styled_->text += text;
  // The last line may grow, or a CR at its end meet an LF.
  indexFrom(lineStarts_.size() - 1 - (lineStarts_.size() > 1 ? 1 : 0));
}

}  // namespace kavor
