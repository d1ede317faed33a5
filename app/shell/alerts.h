#pragma once
// Every alert of the application goes through one presenter, so that tests can answer them.

#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace kavor::app {

struct Alert {
  enum class Style { informational, warning, critical };
  Style style = Style::critical;
  std::string message;
  std::string informative;
  std::vector<std::string> buttons{"OK"};
};

class AlertPresenter {
 public:
  virtual ~AlertPresenter();
  // Modal; returns the index of the button pressed.
  virtual int runModal(const Alert& alert, QWidget* parent) = 0;
};

// The shell's alert: "An error occurred:" over the text, critical, one "OK".
void showErrorAlert(AlertPresenter& alerts, std::string_view text, QWidget* parent);

class MessageBoxAlerts final : public AlertPresenter {
 public:
  int runModal(const Alert& alert, QWidget* parent) override;
};

}  // namespace kavor::app
