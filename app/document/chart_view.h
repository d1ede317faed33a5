#pragma once
// The activity chart: a blue bar per time bin over a grey base line, a tooltip per bar, and one
// line of text at the top (the chosen date, or the subsystem in a saved image). A click asks the
// chart window for one bin more, a right click for one fewer, and a Ctrl-click (Command on
// macOS) picks the clicked bin's start as the date and copies it.

#include <QRectF>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

namespace kavor::app {

class GraphViewController;

class ChartView final : public QWidget {
  Q_OBJECT

 public:
  explicit ChartView(QWidget* parent = nullptr);

  // Copied from the document after each binning, then redrawn.
  std::vector<int64_t> logBarValue;
  int64_t logSSystCount = 0;
  std::vector<std::string> logBarLabel;
  // The tooltips the last drawing registered: the bin of each, and its text.
  std::vector<int> theTooltipTags;
  std::vector<QString> theTooltipList;
  std::vector<double> logBarDate;
  // The date of the top line, as an absolute time.
  double theReturnedDate = 0;
  // False while an image is made: the top line then names the chosen subsystem.
  bool drawString = true;

  // The tooltip rectangles of the last drawing, in widget coordinates (y downwards).
  const std::vector<QRectF>& tooltipRects() const { return tooltipRects_; }
  // Where the last drawing put the top line's text (its start, on the baseline), if it drew one.
  const QString& topLineText() const { return topLineText_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool event(QEvent* event) override;

 private:
  GraphViewController* graphController() const;

  std::vector<QRectF> tooltipRects_;
  QString topLineText_;
};

}  // namespace kavor::app
