#include "app/document/chart_view.h"

#include <QClipboard>
#include <QDateTime>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "app/document/graph_view_controller.h"
#include "app/shell/window_controller.h"
#include "engine/core/date_format.h"
#include "engine/core/pasteboard_date.h"
#include "engine/document/chart_layout.h"
#include "platform/clock.h"

namespace kavor::app {

namespace {

const QColor kBaseLineColour(170, 170, 170);
const QColor kBarColour(0, 0, 255);
// Text with no font of its own is drawn in the default font at 12 points. The chart's geometry
// counts in the points of a 72-dpi screen, which are pixels here, so the text is sized in pixels
// too; a default font wider than the one the layout was made for steps down until the date fits
// the room it is given at the right edge.
constexpr int kTopLinePixelSize = 12;
constexpr int kSmallestTopLinePixelSize = 9;
constexpr double kTopLineRoom = 178;

}  // namespace

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
  theReturnedDate =
      static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - kUnixToAbsoluteTime;
  setAttribute(Qt::WA_OpaquePaintEvent, false);
}

GraphViewController* ChartView::graphController() const {
  const WindowController* controller = windowControllerOf(this);
  return controller ? qobject_cast<GraphViewController*>(controller->contentViewController())
                    : nullptr;
}

void ChartView::paintEvent(QPaintEvent*) {
  const double w = width();
  const double h = height();
  QPainter painter(this);
  theTooltipTags.clear();
  theTooltipList.clear();
  tooltipRects_.clear();
  topLineText_.clear();

  const ChartLayout layout = layoutChart(logBarValue, w, h, drawString, !logBarDate.empty());
  // The layout's origin is at the lower left: flip each y.
  painter.setPen(QPen(kBaseLineColour, 1));
  painter.drawLine(QPointF(0, h - layout.baseLineY), QPointF(w, h - layout.baseLineY));
  for (size_t i = 0; i < layout.bars.size(); ++i) {
    const ChartRect& bar = layout.bars[i];
    const QRectF rect(bar.x, h - bar.y - bar.height, bar.width, bar.height);
    painter.fillRect(rect, kBarColour);
    tooltipRects_.push_back(rect);
    theTooltipTags.push_back(static_cast<int>(i));
    theTooltipList.push_back(i < logBarLabel.size() ? QString::fromStdString(logBarLabel[i])
                                                    : QString());
  }

  if (layout.topLine == ChartLayout::TopLine::date) {
    topLineText_ = QString::fromStdString(DateFormatter(kChartDatePattern).format(theReturnedDate));
  } else if (layout.topLine == ChartLayout::TopLine::subsystem) {
    if (const GraphViewController* controller = graphController())
      topLineText_ = controller->chosenSubsystemTitle();
  }
  if (topLineText_.isEmpty()) return;
  QFont font = painter.font();
  for (int size = kTopLinePixelSize; size >= kSmallestTopLinePixelSize; --size) {
    font.setPixelSize(size);
    if (QFontMetricsF(font).horizontalAdvance(topLineText_) <= kTopLineRoom) break;
  }
  painter.setFont(font);
  painter.setPen(palette().color(QPalette::WindowText));
  // The point is the text's lower left; Qt draws from the baseline.
  const double baseline = h - layout.textAt.y - painter.fontMetrics().descent();
  painter.drawText(QPointF(layout.textAt.x, baseline), topLineText_);
}

void ChartView::mousePressEvent(QMouseEvent* event) {
  GraphViewController* controller = graphController();
  if (event->button() == Qt::RightButton) {
    if (controller) controller->decreaseBins();
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  // Qt reports Command as the Control modifier on macOS.
  if ((event->modifiers() & Qt::ControlModifier) && !logBarDate.empty()) {
    const size_t bin = binAtX(event->position().x(), width(), logBarDate.size());
    theReturnedDate = logBarDate[bin];
    repaint();
    QGuiApplication::clipboard()->setText(
        QString::fromStdString(pasteboardTextFromDate(theReturnedDate)));
    return;
  }
  if (controller) controller->increaseBins();
}

bool ChartView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  for (size_t i = 0; i < tooltipRects_.size(); ++i) {
    if (!tooltipRects_[i].contains(help->pos())) continue;
    QToolTip::showText(help->globalPos(), theTooltipList[i], this, tooltipRects_[i].toRect());
    return true;
  }
  QToolTip::hideText();
  event->ignore();
  return true;
}

}  // namespace kavor::app
