// The main window showing a saved JSON log, read for its new document, as a fetch's result.

#include "app/document/app_document.h"
#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/app_delegate.h"

namespace kavor::app {

void ViewController::showOpenedLog(OpenedLogFile&& opened) {
  AppDocument* owner = document();
  if (!owner) return;
  std::string styleText;
  const DateFormatter formatter(kQueryDatePattern);
  LogShowCompletion done = completeLogFileOpen(
      std::move(opened), owner->record(), stylerInput(styleText),
      {formatter, 0, app_.clock().now(), app_.delegate().dontShowGraphView, true});
  showCompletion(done, *owner);
}

}  // namespace kavor::app
