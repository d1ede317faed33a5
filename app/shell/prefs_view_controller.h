#pragma once
// The Preferences window's controller: the three named lists with their popups, name and text
// fields and buttons, the replace-on-import switch, the entry limit and the reset. The editing
// rules are the engine's PrefsEditor; this shows what it returns. Edits are stored when the
// window goes away, and every main window then reloads its lists.

#include <QWidget>
#include <memory>

#include "engine/query/prefs_editor.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace Ui {
class PrefsWindow;
}

namespace kavor::app {

class AppContext;

class PrefsViewController final : public QWidget {
  Q_OBJECT

 public:
  explicit PrefsViewController(AppContext& app, QWidget* parent = nullptr);
  ~PrefsViewController() override;

  // Reads the lists, their selections, the switch and the limit.
  void viewDidLoad();
  // Titles the window.
  void viewDidAppear();
  // Stores every edit at once and tells the main windows; once per appearance.
  void viewWillDisappear();

  Ui::PrefsWindow& ui() const { return *ui_; }
  const PrefsEditor& editor() const { return *editor_; }

 public slots:
  void buttonResetAllPrefs();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  struct Group {
    QComboBox* popup;
    QLineEdit* name;
    QLineEdit* text;
  };
  Group group(PrefsList which) const;
  PrefsFields shownFields(PrefsList which) const;
  void showGroup(PrefsList which);
  void showAll();
  void connectGroup(PrefsList which, QPushButton* add, QPushButton* change, QPushButton* remove);

  AppContext& app_;
  std::unique_ptr<Ui::PrefsWindow> ui_;
  std::unique_ptr<PrefsEditor> editor_;
  bool stored_ = false;
};

}  // namespace kavor::app
