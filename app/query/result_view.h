#pragma once
// The main window's result view: read-only text with a colour per piece. It keeps the styled
// text it shows (its text storage), so that saving writes exactly what is on screen, and knows
// which part carries no font of its own: text appended after the font was last applied.

#include <QPlainTextEdit>
#include <string_view>
#include <vector>

#include "engine/core/styled_text.h"
#include "engine/document/rtf_writer.h"

namespace kavor::app {

class ResultView final : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ResultView(QWidget* parent = nullptr);
  ~ResultView() override;

  // Replaces the whole contents; all of it takes the view's font.
  void setStyledText(StyledText text);
  // Appends text in the text colour and with no font of its own, shown in the default font.
  void appendUnfontedText(std::string_view text);
  // The font over the whole text, the appended text included.
  void applyFont(const QFont& font);

  const StyledText& styledText() const { return storage_; }
  // Bytes before this carry the view's font.
  size_t fontedLength() const { return fontedLength_; }
  RtfFont rtfFont() const;

 private:
  class Highlighter;
  struct Run16 {
    int begin = 0;  // in UTF-16 units, as the view counts
    int end = 0;
    TextColour colour = TextColour::text;
  };
  void mapRuns();

  StyledText storage_;
  size_t fontedLength_ = 0;
  std::vector<Run16> runs16_;
  int fontedLength16_ = 0;
  Highlighter* highlighter_;
};

}  // namespace kavor::app
