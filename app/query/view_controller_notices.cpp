// What the main window says over and above its result: the hint of an empty result, and the
// notice that the entry limit cut the entries, with its button that turns the limit off.

#include <QLabel>
#include <QPushButton>

#include "app/query/result_view.h"
#include "app/query/view_controller.h"
#include "app/shell/qt_text.h"
#include "engine/query/limit_notice.h"
#include "engine/query/window_texts.h"
#include "ui_document_window.h"

namespace kavor::app {

void ViewController::setUpNotices() {
  resultView().setPlaceholderText(qstring(kEmptyResultHint));
  ui_->limitOffButton->setText(qstring(kLimitOffButtonTitle));
  ui_->limitNoticeBar->hide();
  connect(ui_->limitOffButton, &QPushButton::clicked, this, [this] {
    if (settings_.limitEntries) setLimit();
  });
}

void ViewController::showLimitNotice(const std::optional<std::string>& notice) {
  ui_->limitNotice->setText(notice ? qstring(*notice) : QString());
  ui_->limitNoticeBar->setVisible(notice.has_value());
}

}  // namespace kavor::app
