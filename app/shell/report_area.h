#pragma once
// The output area of a report window (the Logarchive Tool, the Log Check): the text as the tools
// wrote it, shown in one font at the window's size, which steps within 4 and 60 points and is
// kept under the window's own settings key.

#include <QFont>
#include <QPlainTextEdit>
#include <string>
#include <string_view>

#include "engine/archive/archive_output.h"

namespace kavor::app {

class AppContext;

// The output text style: the monospaced (or the system) font at the size, regular weight.
QFont outputFont(double points, bool monospaced = true);

class ReportArea final : public ArchiveOutput {
 public:
  enum class Face { monospaced, system };

  ReportArea(AppContext& app, QPlainTextEdit& view, std::string_view fontSizeKey, Face face);

  // Reads the stored font size.
  void load();
  double theFontSize() const { return theFontSize_; }
  // What the area shows, byte for byte as written.
  const std::string& text() const { return text_; }
  // While on, appended text is kept in sight as long as the reader stays at the end.
  void setFollowing(bool following) { following_ = following; }

  void replaceOutputText(std::string_view text) override;
  void appendOutputText(std::string_view text) override;
  void restyleOutput();
  void incFontSize();
  void decFontSize();

 private:
  void stepFontSize(int points);

  AppContext& app_;
  QPlainTextEdit& view_;
  std::string fontSizeKey_;
  Face face_;
  double theFontSize_ = 12.0;
  std::string text_;
  bool following_ = false;
};

}  // namespace kavor::app
