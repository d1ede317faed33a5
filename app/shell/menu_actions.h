#pragma once
// Connects each menu command to its receiver: the main window in front for its own commands,
// the document in front for saving and closing, the focused control for copy and paste, and
// the application for the rest, as a responder chain would find them.

namespace kavor::app {

class AppContext;

void connectMenuActions(AppContext& app);

// Copy and paste go to the control with the focus when it has its own; else paste sets the base
// date of the main window in front.
void copyToClipboard(AppContext& app);
void pasteFromClipboard(AppContext& app);

}  // namespace kavor::app
