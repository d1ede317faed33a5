#include "app/shell/alerts.h"

#include <QMessageBox>
#include <QPushButton>

#include "engine/shell/check_texts.h"

namespace kavor::app {

AlertPresenter::~AlertPresenter() = default;

void showErrorAlert(AlertPresenter& alerts, std::string_view text, QWidget* parent) {
  alerts.runModal({Alert::Style::critical,
                   std::string(kShellErrorMessage),
                   std::string(text),
                   {std::string(kShellAlertButton)}},
                  parent);
}

int MessageBoxAlerts::runModal(const Alert& alert, QWidget* parent) {
  QMessageBox box(parent);
  switch (alert.style) {
    case Alert::Style::informational:
      box.setIcon(QMessageBox::Information);
      break;
    case Alert::Style::warning:
      box.setIcon(QMessageBox::Warning);
      break;
    case Alert::Style::critical:
      box.setIcon(QMessageBox::Critical);
      break;
  }
  box.setText(QString::fromStdString(alert.message));
  box.setInformativeText(QString::fromStdString(alert.informative));
  std::vector<QPushButton*> buttons;
  for (const auto& title : alert.buttons)
    buttons.push_back(box.addButton(QString::fromStdString(title), QMessageBox::AcceptRole));
  if (!buttons.empty()) box.setDefaultButton(buttons.front());
  box.exec();
  for (size_t i = 0; i < buttons.size(); ++i)
    if (box.clickedButton() == buttons[i]) return static_cast<int>(i);
  return 0;
}

}  // namespace kavor::app
