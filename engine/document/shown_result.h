#pragma once
// What a main window shows: the text of the last styling or conversion with its colours, an
// index of its lines so that a view lays out only those on screen, the entries each line came
// from, and the trailers that styled saves appended. The document owns it; the view, saving,
// the counts and find read it here, never from a widget. Main thread only; a worker may hold
// the styled text through sharedStyled(), and an append then leaves that copy as it was.

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/core/styled_text.h"
#include "engine/query/entry_styler.h"
#include "engine/query/style_columns.h"

namespace kavor {

class ShownResult {
 public:
  ShownResult();
  // Indexes the text's lines; the columns and shown entries are empty for a conversion.
  explicit ShownResult(StyledText text, std::vector<StyleColumn> columns = {},
                       std::vector<ShownEntry> shown = {});

  // The CSV text of a conversion, shown without colours.
  static ShownResult csv(std::string text);
  bool isCsv() const { return csv_; }

  const StyledText& styled() const { return *styled_; }
  const std::string& text() const { return styled_->text; }
  // The styled text as it is now, for work off the main thread: later appends do not reach it.
  std::shared_ptr<const StyledText> sharedStyled() const { return styled_; }
  // The text as styled or converted, without the trailers that styled saves appended.
  std::string_view ownText() const { return std::string_view(text()).substr(0, entriesEnd_); }
  // Bytes before this carry the view's font; later ones, the appended trailers, do not.
  size_t fontedLength() const { return fontedLength_; }

  // Lines as a view shows them, split at LF, CR, CR LF and U+2029: a text ending in a break has
  // an empty last line, and the empty text one empty line.
  size_t lineCount() const { return lineStarts_.size(); }
  // Lines that hold text or end in a break: what the line count label says.
  size_t paragraphCount() const;
  size_t lineStart(size_t line) const { return lineStarts_[line]; }
  // The line's bytes without its break.
  std::string_view line(size_t line) const;
  // The line that holds a byte offset; the offset of a break belongs to the line it ends.
  size_t lineOf(size_t offset) const;
  // The longest line in bytes, an upper bound of its characters.
  size_t longestLine() const { return longestLine_; }
  // The coloured runs that overlap [begin, end).
  std::span<const ColourRun> runsIn(size_t begin, size_t end) const;

  const std::vector<StyleColumn>& columns() const { return columns_; }
  const std::vector<ShownEntry>& shown() const { return shown_; }
  // The shown entry whose line holds the byte offset, as its position in shown(); none past the
  // entries' text (a trailer) or for a conversion.
  std::optional<size_t> shownAt(size_t offset) const;

  // A styled save's trailer: in the text colour, with no font of its own.
  void appendUnfonted(std::string_view text);
  // The view's font now covers everything, the trailers too.
  void fontAll() { fontedLength_ = text().size(); }

 private:
  void indexFrom(size_t line);

  // Never null; shared with workers until an append copies it.
  std::shared_ptr<StyledText> styled_;
  size_t fontedLength_ = 0;
  std::vector<size_t> lineStarts_;
  size_t longestLine_ = 0;
  std::vector<StyleColumn> columns_;
  std::vector<ShownEntry> shown_;
  size_t entriesEnd_ = 0;  // where the entries' text ends and trailers begin
  bool csv_ = false;
};

}  // namespace kavor
