#pragma once
// The main window's result view: the document's shown result, read-only, with a colour per
// piece. It lays out and paints only the lines on screen, so a million lines cost no more than
// a screenful; selection and highlights are byte ranges of the result's text.

#include <QAbstractScrollArea>
#include <QFont>
#include <QString>
#include <QTextLayout>
#include <cstddef>
#include <utility>
#include <vector>

#include "engine/document/rtf_writer.h"

namespace kavor {
class ShownResult;
}

namespace kavor::app {

class ResultView final : public QAbstractScrollArea {
  Q_OBJECT

 public:
  using Range = std::pair<size_t, size_t>;  // bytes [first, second) of the text

  explicit ResultView(QWidget* parent = nullptr);
  ~ResultView() override;

  // What to show; it must outlive the view or be replaced first. None shows nothing.
  void setResult(const ShownResult* result);
  const ShownResult* result() const { return result_; }
  // The result holds another text: the view goes back to its top, without a selection.
  void resultReplaced();
  // The result's text grew at its end: the view keeps its place and selection.
  void resultAppended();
  // The font of the text the result counts as fonted; the rest keeps the application's.
  void applyFont(const QFont& font);
  RtfFont rtfFont() const;
  // Shown, greyed, while there is no text.
  void setPlaceholderText(const QString& text);
  const QString& placeholderText() const { return placeholder_; }

  Range selection() const;
  // Selects the range and scrolls its start into view.
  void select(Range range);
  // Ranges painted as found text, sorted and apart; current is painted stronger.
  void setHighlights(std::vector<Range> ranges, size_t current);
  const std::vector<Range>& highlights() const { return highlights_; }
  size_t currentHighlight() const { return currentHighlight_; }
  void setCurrentHighlight(size_t current);
  QString selectedText() const;
  size_t firstVisibleLine() const;
  // A line as it is painted: its text in one row and the formats laid over it.
  std::pair<QString, QList<QTextLayout::FormatRange>> paintedLine(size_t line) const;
  void scrollToLine(size_t line);

 public slots:
  void copy() const;
  void selectAll();

 signals:
  // A double click on a line: the byte offset clicked.
  void lineActivated(size_t offset);
  // The result was replaced or grew: offsets into the old text may mean something else now.
  void resultChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void updateScrollRanges();
  // The scroll ranges, widened to the lines now on screen.
  void fitScrollRanges();
  std::pair<size_t, size_t> visibleLines() const;  // [first, last)
  int lineHeight() const;
  // The line laid out in one row, its colours and the selection as formats.
  void layoutLine(QTextLayout& layout, size_t line) const;
  size_t offsetAt(const QPoint& point) const;
  void moveCursor(size_t offset, bool extend);

  const ShownResult* result_ = nullptr;
  size_t anchor_ = 0;
  size_t cursor_ = 0;
  std::vector<Range> highlights_;
  size_t currentHighlight_ = 0;
  int widestSeen_ = 0;
  QString placeholder_;
};

}  // namespace kavor::app
