#pragma once
// The application delegate: the launch sequence and the switch that turns the chart view off.

#include <QObject>

namespace kavor::app {

class AppContext;

class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  explicit AppDelegate(AppContext& app);

  // Read from the settings at launch; a fetch collects chart data only while it is false.
  bool dontShowGraphView = false;

  // Reads "dontShowGraphView", then hides "Open Chart" and shows "Logarchive Tool".
  void applicationDidFinishLaunching();
  // Flips the switch, stores it, and ticks "Enable Chart View" while the chart view is on.
  void enableGraphView();

 private:
  AppContext& app_;
};

}  // namespace kavor::app
