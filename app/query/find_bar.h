#pragma once
// The bar under the main window's result that finds text in it: the text, with or without case,
// plain or a regular expression; where the current match stands among all; buttons to step and
// to close. It gathers the query and shows the status; the window's controller searches.

#include <QWidget>

#include "engine/document/text_search.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace kavor::app {

class FindBar final : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);

  // What the controls ask for; the locale is the user's.
  TextQuery query() const;
  // Shows the bar and focuses its text, selected, so that typing replaces it.
  void open();
  // "3 of 120", "No matches", or why the pattern does not compile (problem).
  void setStatus(const QString& text, bool problem = false);

  QLineEdit* field() const { return field_; }
  QCheckBox* matchCase() const { return matchCase_; }
  QCheckBox* regularExpression() const { return regularExpression_; }
  QLabel* status() const { return status_; }
  QToolButton* previousButton() const { return previous_; }
  QToolButton* nextButton() const { return next_; }
  QToolButton* closeButton() const { return close_; }

 signals:
  // The text or a switch changed: the search starts again.
  void queryChanged();
  void nextRequested();
  void previousRequested();
  void closeRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // The bar's own keys in its field: true when the key was one, and it is done.
  bool stepKey(const QKeyEvent* event);

  QLineEdit* field_;
  QCheckBox* matchCase_;
  QCheckBox* regularExpression_;
  QLabel* status_;
  QToolButton* previous_;
  QToolButton* next_;
  QToolButton* close_;
};

}  // namespace kavor::app
