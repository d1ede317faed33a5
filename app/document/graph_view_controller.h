#pragma once
// The chart window's controller: the subsystem menu, binning through the document for the
// chosen subsystem and bin count, the date copy, and the PNG export.

#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace Ui {
class GraphWindow;
}

namespace kavor {
class Document;
}

namespace kavor::app {

class AppContext;
class AppDocument;
class ChartView;

class GraphViewController final : public QWidget {
  Q_OBJECT

 public:
  explicit GraphViewController(AppContext& app, QWidget* parent = nullptr);
  ~GraphViewController() override;

  // Each time the window appears: the title, the menu refilled from the document, "All" binned.
  void viewDidAppear();

  AppDocument* document() const;
  ChartView& chartView() const;
  Ui::GraphWindow& ui() const { return *ui_; }
  // The chosen item's title, or empty when nothing is chosen.
  QString chosenSubsystemTitle() const;
  // The image writePNGFile saves: the chart with the subsystem in place of the date, at the
  // screen's pixel ratio.
  QByteArray pngOfChart();

 public slots:
  void selectSsystPopup();
  void increaseBins();
  void decreaseBins();
  void copy();
  void writePNGFile();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // Bins the document for the chosen item and hands the bins to the chart view.
  void binAndHandOver(int64_t selection);
  // One step of the bin count, when the step allows one, then a new binning.
  void stepBins(std::optional<int64_t> (*step)(int64_t));

  AppContext& app_;
  std::unique_ptr<Ui::GraphWindow> ui_;
};

}  // namespace kavor::app
