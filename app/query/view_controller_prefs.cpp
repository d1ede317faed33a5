// The main window's export and import of the three named lists.

#include "app/query/view_controller.h"
#include "app/shell/app_context.h"
#include "app/shell/file_panels.h"
#include "engine/query/exchange_file.h"
#include "engine/query/prefs_exchange.h"
#include "engine/query/prefs_texts.h"

namespace kavor::app {

namespace {
const SaveType kPrefsSaveType{"com.apple.property-list", "Property list",
                              std::string(kPrefsFileType)};
}

void ViewController::exportPrefs() {
  // A free-standing panel: the export concerns the lists, not this window.
  const SavePanelRequest request{"Export Preferences", "Kavor Preferences", {kPrefsSaveType}, true};
  const auto choice = app_.panels().runSavePanel(request, nullptr);
  if (!choice) return;
  if (!writeExchangeFile(choice->path, listsOf(settings_)))
    showActionError(std::string(kCouldntSaveExported));
}

void ViewController::importPrefs() {
  OpenPanelRequest request;
  request.title = "Import Preferences";
  request.allowedExtensions = {std::string(kPrefsFileType)};
  const auto path = app_.panels().runOpenPanel(request, window());
  if (!path) return;
  // Every main window reloads its lists on the notification the import posts, this one too.
  const Expected<bool> imported = kavor::importPrefs(settings_, app_.settings(), *path);
  if (!imported) {
    showActionError(imported.error().message());
    return;
  }
  if (*imported) showComboBoxes();  // row 0 of each list, after the reload kept the selections
}

}  // namespace kavor::app
