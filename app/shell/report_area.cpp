#include "app/shell/report_area.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextCursor>

#include "app/shell/app_context.h"
#include "app/shell/qt_text.h"
#include "engine/shell/report_font_size.h"

namespace kavor::app {

QFont outputFont(double points, bool monospaced) {
  QFont font =
      QFontDatabase::systemFont(monospaced ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont);
  font.setPointSizeF(points);
  font.setWeight(QFont::Normal);
  return font;
}

ReportArea::ReportArea(AppContext& app, QPlainTextEdit& view, std::string_view fontSizeKey,
                       Face face)
    : app_(app), view_(view), fontSizeKey_(fontSizeKey), face_(face) {}

void ReportArea::load() {
  theFontSize_ = reportFontSizeFromStore(app_.settings(), fontSizeKey_);
  restyleOutput();
}

void ReportArea::replaceOutputText(std::string_view text) {
  text_.assign(text);
  view_.setPlainText(qstring(text));
}

void ReportArea::appendOutputText(std::string_view text) {
  text_.append(text);
  QScrollBar* bar = view_.verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  QTextCursor end(view_.document());
  end.movePosition(QTextCursor::End);
  end.insertText(qstring(text));
  if (following_ && atEnd) bar->setValue(bar->maximum());
}

void ReportArea::restyleOutput() {
  view_.setFont(outputFont(theFontSize_, face_ == Face::monospaced));
}

void ReportArea::incFontSize() {
  stepFontSize(1);
}

void ReportArea::decFontSize() {
  stepFontSize(-1);
}

void ReportArea::stepFontSize(int points) {
  app_.reportSettings(stepReportFontSize(theFontSize_, app_.settings(), fontSizeKey_, points),
                      view_.window());
  restyleOutput();
}

}  // namespace kavor::app
