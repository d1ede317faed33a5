#include "app/query/result_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <algorithm>

#include "app/shell/colour_scheme.h"
#include "engine/core/text_colours.h"
#include "engine/document/shown_result.h"

namespace kavor::app {

namespace {

constexpr int kMargin = 4;
constexpr qreal kUnwrapped = 1.0e7;  // a line never wraps
constexpr int kTabColumns = 8;

bool isLead(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// UTF-16 units of valid UTF-8: one per lead byte, two for a four-byte sequence.
int unitsOf(std::string_view text) {
  int units = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (isLead(c)) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

// The bytes of text that make its first `units` UTF-16 units.
size_t bytesOfUnits(std::string_view text, int units) {
  size_t at = 0;
  while (at < text.size() && units > 0) {
    units -= static_cast<unsigned char>(text[at]) >= 0xF0 ? 2 : 1;
    ++at;
    while (at < text.size() && !isLead(text[at]))
      ++at;
  }
  return at;
}

QColor qcolour(TextColour colour, bool dark) {
  const Rgb rgb = colourValue(colour, dark);
  return {rgb.red, rgb.green, rgb.blue};
}

}  // namespace

ResultView::ResultView(QWidget* parent) : QAbstractScrollArea(parent) {
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setAutoFillBackground(true);
  viewport()->setCursor(Qt::IBeamCursor);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { fitScrollRanges(); });
}

ResultView::~ResultView() = default;

void ResultView::setResult(const ShownResult* result) {
  result_ = result;
  resultReplaced();
}

void ResultView::resultReplaced() {
  anchor_ = cursor_ = 0;
  highlights_.clear();
  widestSeen_ = 0;
  updateScrollRanges();
  verticalScrollBar()->setValue(0);
  horizontalScrollBar()->setValue(0);
  fitScrollRanges();
  viewport()->update();
  emit resultChanged();
}

void ResultView::resultAppended() {
  fitScrollRanges();
  viewport()->update();
  emit resultChanged();
}

void ResultView::applyFont(const QFont& font) {
  setFont(font);
  widestSeen_ = 0;
  fitScrollRanges();
  viewport()->update();
}

RtfFont ResultView::rtfFont() const {
  return {font().family().toStdString(), font().pointSizeF()};
}

int ResultView::lineHeight() const {
  int height = QFontMetrics(font()).lineSpacing();
  // Trailers keep the application's font; a larger one must not overlap the next line.
  if (result_ && result_->fontedLength() < result_->text().size())
    height = std::max(height, QFontMetrics(QApplication::font()).lineSpacing());
  return std::max(height, 1);
}

void ResultView::updateScrollRanges() {
  const int height = lineHeight();
  const int lines = result_ ? static_cast<int>(result_->lineCount()) : 0;
  const int page = std::max(1, viewport()->height() / height);
  verticalScrollBar()->setRange(0, std::max(0, lines - page));
  verticalScrollBar()->setPageStep(page);
  verticalScrollBar()->setSingleStep(1);
  // Characters are at most as many as bytes; the widest line painted so far corrects the guess.
  const qint64 guess = result_ ? static_cast<qint64>(result_->longestLine()) *
                                     QFontMetrics(font()).averageCharWidth()
                               : 0;
  const qint64 width = std::max<qint64>(guess, widestSeen_) + 2 * kMargin;
  const int range = static_cast<int>(std::min<qint64>(width - viewport()->width(), INT_MAX / 2));
  horizontalScrollBar()->setRange(0, std::max(0, range));
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setSingleStep(QFontMetrics(font()).averageCharWidth() * 4);
}

void ResultView::layoutLine(QTextLayout& layout, size_t line) const {
  const std::string_view text = result_->line(line);
  const size_t begin = result_->lineStart(line);
  const size_t end = begin + text.size();
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  shown.replace(QChar::LineSeparator, QLatin1Char(' '));  // one row per line
  layout.setText(shown);
  layout.setFont(font());
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setTabStopDistance(QFontMetrics(font()).horizontalAdvance(QLatin1Char(' ')) * kTabColumns);
  layout.setTextOption(option);

  QList<QTextLayout::FormatRange> formats;
  auto add = [&](size_t from, size_t to, const QTextCharFormat& format) {
    from = std::max(from, begin);
    to = std::min(to, end);
    if (from >= to) return;
    const int start = unitsOf(text.substr(0, from - begin));
    formats.append({start, unitsOf(text.substr(from - begin, to - from)), format});
  };
  const bool dark = prefersDarkColours(palette());
  for (const ColourRun& run : result_->runsIn(begin, end)) {
    QTextCharFormat format;
    format.setForeground(qcolour(run.colour, dark));
    add(run.begin, run.begin + run.length, format);
  }
  if (result_->fontedLength() < end) {
    QTextCharFormat format;
    format.setFont(QApplication::font());
    add(result_->fontedLength(), end, format);
  }
  const auto firstFound =
      std::lower_bound(highlights_.begin(), highlights_.end(), begin,
                       [](const Range& r, size_t at) { return r.second <= at; });
  for (auto found = firstFound; found != highlights_.end() && found->first < end; ++found) {
    const bool current = static_cast<size_t>(found - highlights_.begin()) == currentHighlight_;
    QTextCharFormat format;
    format.setBackground(current ? QColor(255, 150, 50) : QColor(255, 230, 120));
    format.setForeground(Qt::black);
    add(found->first, found->second, format);
  }
  const Range selected = selection();
  if (selected.first < selected.second) {
    QTextCharFormat format;
    format.setBackground(palette().color(QPalette::Highlight));
    format.setForeground(palette().color(QPalette::HighlightedText));
    add(selected.first, selected.second, format);
  }
  layout.setFormats(formats);
  layout.beginLayout();
  layout.createLine().setLineWidth(kUnwrapped);
  layout.endLayout();
}

void ResultView::setPlaceholderText(const QString& text) {
  placeholder_ = text;
  viewport()->update();
}

void ResultView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  if (!result_ || result_->text().empty()) {
    QColor colour = palette().color(QPalette::Text);
    colour.setAlpha(128);
    painter.setPen(colour);
    painter.drawText(viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, placeholder_);
    return;
  }
  painter.setPen(palette().color(QPalette::Text));
  const int height = lineHeight();
  const auto [first, last] = visibleLines();
  const int x = kMargin - horizontalScrollBar()->value();
  for (size_t line = first; line < last; ++line) {
    QTextLayout layout;
    layoutLine(layout, line);
    const int y = static_cast<int>(line - first) * height;
    layout.draw(&painter, QPointF(x, y));
  }
}

std::pair<size_t, size_t> ResultView::visibleLines() const {
  const size_t first = firstVisibleLine();
  const size_t rows = static_cast<size_t>(viewport()->height() / lineHeight()) + 1;
  return {first, result_ ? std::min(result_->lineCount(), first + rows) : first};
}

void ResultView::fitScrollRanges() {
  updateScrollRanges();
  // The guess from the longest line in bytes can be short of lines with wide characters: the
  // lines that come on screen widen the range, so each can be scrolled to its end.
  if (!result_) return;
  const auto [first, last] = visibleLines();
  int widest = widestSeen_;
  for (size_t line = first; line < last; ++line) {
    QTextLayout layout;
    layoutLine(layout, line);
    widest = std::max(widest, static_cast<int>(layout.lineAt(0).naturalTextWidth()));
  }
  if (widest <= widestSeen_) return;
  widestSeen_ = widest;
  updateScrollRanges();
}

void ResultView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  fitScrollRanges();
}

size_t ResultView::firstVisibleLine() const {
  return static_cast<size_t>(verticalScrollBar()->value());
}

std::pair<QString, QList<QTextLayout::FormatRange>> ResultView::paintedLine(size_t line) const {
  QTextLayout layout;
  layoutLine(layout, line);
  return {layout.text(), layout.formats()};
}

void ResultView::scrollToLine(size_t line) {
  verticalScrollBar()->setValue(static_cast<int>(line));
}

size_t ResultView::offsetAt(const QPoint& point) const {
  if (!result_) return 0;
  const int row = point.y() < 0 ? -1 : point.y() / lineHeight();
  const auto line =
      static_cast<size_t>(std::clamp<qint64>(static_cast<qint64>(firstVisibleLine()) + row, 0,
                                             static_cast<qint64>(result_->lineCount()) - 1));
  QTextLayout layout;
  layoutLine(layout, line);
  const int units =
      layout.lineAt(0).xToCursor(point.x() - kMargin + horizontalScrollBar()->value());
  return result_->lineStart(line) + bytesOfUnits(result_->line(line), units);
}

ResultView::Range ResultView::selection() const {
  return {std::min(anchor_, cursor_), std::max(anchor_, cursor_)};
}

void ResultView::select(Range range) {
  if (!result_) return;
  const size_t size = result_->text().size();
  anchor_ = std::min(range.first, size);
  cursor_ = std::min(range.second, size);
  const size_t line = result_->lineOf(anchor_);
  const size_t first = firstVisibleLine();
  const size_t page = static_cast<size_t>(verticalScrollBar()->pageStep());
  if (line < first || line >= first + page) scrollToLine(line > page / 2 ? line - page / 2 : 0);
  QTextLayout layout;
  layoutLine(layout, line);
  const std::string_view text = result_->line(line);
  const size_t column = std::min(anchor_ - result_->lineStart(line), text.size());
  const int x = static_cast<int>(layout.lineAt(0).cursorToX(unitsOf(text.substr(0, column))));
  const int left = horizontalScrollBar()->value();
  if (x < left || x > left + viewport()->width() - 2 * kMargin)
    horizontalScrollBar()->setValue(std::max(0, x - viewport()->width() / 3));
  viewport()->update();
}

void ResultView::setHighlights(std::vector<Range> ranges, size_t current) {
  highlights_ = std::move(ranges);
  currentHighlight_ = current;
  viewport()->update();
}

void ResultView::setCurrentHighlight(size_t current) {
  currentHighlight_ = current;
  viewport()->update();
}

QString ResultView::selectedText() const {
  if (!result_) return {};
  const Range selected = selection();
  const std::string_view text =
      std::string_view(result_->text()).substr(selected.first, selected.second - selected.first);
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void ResultView::copy() const {
  if (selection().first < selection().second) QGuiApplication::clipboard()->setText(selectedText());
}

void ResultView::selectAll() {
  if (!result_) return;
  anchor_ = 0;
  cursor_ = result_->text().size();
  viewport()->update();
}

void ResultView::moveCursor(size_t offset, bool extend) {
  cursor_ = offset;
  if (!extend) anchor_ = offset;
  const size_t line = result_->lineOf(cursor_);
  const size_t first = firstVisibleLine();
  const auto page = static_cast<size_t>(verticalScrollBar()->pageStep());
  if (line < first)
    scrollToLine(line);
  else if (line >= first + page)
    scrollToLine(line + 1 - page);
  viewport()->update();
}

void ResultView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !result_) return;
  moveCursor(offsetAt(event->position().toPoint()), event->modifiers() & Qt::ShiftModifier);
}

void ResultView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton) || !result_) return;
  // Dragging past an edge scrolls toward it.
  const int y = event->position().toPoint().y();
  if (y < 0) scrollToLine(firstVisibleLine() > 0 ? firstVisibleLine() - 1 : 0);
  if (y > viewport()->height()) scrollToLine(firstVisibleLine() + 1);
  moveCursor(offsetAt(event->position().toPoint()), true);
}

void ResultView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !result_) return;
  const size_t offset = offsetAt(event->position().toPoint());
  const size_t line = result_->lineOf(offset);
  anchor_ = result_->lineStart(line);
  cursor_ = anchor_ + result_->line(line).size();
  viewport()->update();
  emit lineActivated(offset);
}

void ResultView::keyPressEvent(QKeyEvent* event) {
  if (!result_) return QAbstractScrollArea::keyPressEvent(event);
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  const bool extend = event->modifiers() & Qt::ShiftModifier;
  const size_t line = result_->lineOf(cursor_);
  const size_t column = cursor_ - result_->lineStart(line);
  const size_t lines = result_->lineCount();
  const auto page = static_cast<size_t>(verticalScrollBar()->pageStep());
  auto toLine = [&](size_t target) {
    target = std::min(target, lines - 1);
    const size_t start = result_->lineStart(target);
    std::string_view text = result_->line(target);
    size_t at = std::min(column, text.size());
    while (at > 0 && at < text.size() && !isLead(text[at]))
      --at;
    moveCursor(start + at, extend);
  };
  const std::string_view text = result_->text();
  switch (event->key()) {
    case Qt::Key_Up:
      return toLine(line > 0 ? line - 1 : 0);
    case Qt::Key_Down:
      return toLine(line + 1);
    case Qt::Key_PageUp:
      return toLine(line > page ? line - page : 0);
    case Qt::Key_PageDown:
      return toLine(line + page);
    case Qt::Key_Left: {
      size_t at = cursor_;
      while (at > 0 && !isLead(text[--at])) {
      }
      return moveCursor(at, extend);
    }
    case Qt::Key_Right: {
      size_t at = std::min(cursor_ + 1, text.size());
      while (at < text.size() && !isLead(text[at]))
        ++at;
      return moveCursor(at, extend);
    }
    case Qt::Key_Home:
      if (event->modifiers() & Qt::ControlModifier) return moveCursor(0, extend);
      return moveCursor(result_->lineStart(line), extend);
    case Qt::Key_End:
      if (event->modifiers() & Qt::ControlModifier) return moveCursor(text.size(), extend);
      return moveCursor(result_->lineStart(line) + result_->line(line).size(), extend);
    default:
      QAbstractScrollArea::keyPressEvent(event);
  }
}

void ResultView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
    fitScrollRanges();
    viewport()->update();
  }
}

void ResultView::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  QAction* copyItem = menu.addAction(tr("Copy"), this, &ResultView::copy);
  copyItem->setEnabled(selection().first < selection().second);
  menu.addAction(tr("Select All"), this, &ResultView::selectAll);
  menu.exec(event->globalPos());
}

}  // namespace kavor::app
