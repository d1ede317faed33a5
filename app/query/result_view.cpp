#include "app/query/result_view.h"

#include <QApplication>
#include <QSyntaxHighlighter>
#include <QTextCursor>
#include <algorithm>

#include "app/shell/qt_text.h"
#include "engine/core/text_colours.h"

namespace kavor::app {

namespace {

// UTF-16 units of valid UTF-8: one per lead byte, two for a four-byte sequence.
int utf16Length(std::string_view text, size_t from, size_t to) {
  int units = 0;
  for (size_t i = from; i < to; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

QColor qcolour(TextColour colour) {
  const Rgb rgb = colourValue(colour);
  return {rgb.red, rgb.green, rgb.blue};
}

}  // namespace

// Colours each block as it is laid out, from the runs that overlap it, so that a long text costs
// no formatting work until it is shown.
class ResultView::Highlighter final : public QSyntaxHighlighter {
 public:
  Highlighter(ResultView& view) : QSyntaxHighlighter(view.document()), view_(view) {}

 protected:
  void highlightBlock(const QString& text) override {
    const int start = currentBlock().position();
    const int end = start + static_cast<int>(text.size());
    const auto& runs = view_.runs16_;
    auto run = std::lower_bound(runs.begin(), runs.end(), start,
                                [](const Run16& r, int at) { return r.end <= at; });
    for (; run != runs.end() && run->begin < end; ++run) {
      const int from = std::max(run->begin, start);
      const int to = std::min(run->end, end);
      QTextCharFormat format;
      format.setForeground(qcolour(run->colour));
      setFormat(from - start, to - from, format);
    }
    if (view_.fontedLength16_ < end) {
      const int from = std::max(view_.fontedLength16_, start);
      QTextCharFormat format;
      format.setFont(QApplication::font());
      setFormat(from - start, end - from, format);
    }
  }

 private:
  ResultView& view_;
};

ResultView::ResultView(QWidget* parent)
    : QPlainTextEdit(parent), highlighter_(new Highlighter(*this)) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

ResultView::~ResultView() = default;

void ResultView::mapRuns() {
  runs16_.clear();
  runs16_.reserve(storage_.runs.size());
  size_t at = 0;
  int units = 0;
  for (const ColourRun& run : storage_.runs) {
    units += utf16Length(storage_.text, at, run.begin);
    const int begin = units;
    units += utf16Length(storage_.text, run.begin, run.begin + run.length);
    at = run.begin + run.length;
    runs16_.push_back({begin, units, run.colour});
  }
  fontedLength16_ = static_cast<int>(utf16Length(storage_.text, 0, fontedLength_));
}

void ResultView::setStyledText(StyledText text) {
  storage_ = std::move(text);
  fontedLength_ = storage_.text.size();
  mapRuns();
  setPlainText(qstring(storage_.text));
}

void ResultView::appendUnfontedText(std::string_view text) {
  storage_.text += text;
  QTextCursor cursor(document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(qstring(text));
}

void ResultView::applyFont(const QFont& font) {
  setFont(font);
  fontedLength_ = storage_.text.size();
  fontedLength16_ = utf16Length(storage_.text, 0, fontedLength_);
  highlighter_->rehighlight();
}

RtfFont ResultView::rtfFont() const {
  return {font().family().toStdString(), font().pointSizeF()};
}

}  // namespace kavor::app
