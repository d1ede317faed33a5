#pragma once
// The Log Fields window's controller: which field number stands for which log entry field on
// the running system, so that styles can be written by number.

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

namespace Ui {
class FieldWindow;
}

namespace kavor::app {

class AppContext;

class FieldViewController final : public QWidget {
  Q_OBJECT

 public:
  explicit FieldViewController(AppContext& app, QWidget* parent = nullptr);
  ~FieldViewController() override;

  // The running system's version and its field lines, shown one per line.
  void viewDidLoad();
  // The title, and on 10.13 and 10.14 a taller window for their longer lists, at each appearance.
  void viewDidAppear();

  int64_t osVersion() const { return osVersion_; }
  const std::vector<std::string>& theKeys() const { return theKeys_; }
  Ui::FieldWindow& ui() const { return *ui_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AppContext& app_;
  std::unique_ptr<Ui::FieldWindow> ui_;
  int64_t osVersion_ = 12;
  std::vector<std::string> theKeys_;
};

}  // namespace kavor::app
