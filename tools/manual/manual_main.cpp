// kavor-manual: makes Kavor's manual, KavorHelp.pdf, from its Markdown text, with screenshots that
// the application draws offscreen on a demo system of its own.
//
//   kavor-manual --log-tool PATH MANUAL.md OUTPUT.pdf

#include <unistd.h>
#include <QApplication>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/clock.h"
#include "platform/demo_root.h"
#include "platform/system_paths.h"
#include "tools/manual/manual_pdf.h"
#include "tools/manual/screenshots.h"

namespace {

// 2026-03-02 09:30:00 UTC: the present of the pictures.
constexpr double kPictureNow = 794136600.0;

// The offscreen platform's remarks on what it cannot do are no news to a build.
void quietMessages(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg)
    std::fprintf(stderr, "kavor-manual: %s\n", qPrintable(message));
}

int fail(const std::string& what) {
  std::fprintf(stderr, "kavor-manual: %s\n", what.c_str());
  return 1;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 5 || std::strcmp(argv[1], "--log-tool") != 0) {
    std::fprintf(stderr, "usage: kavor-manual --log-tool PATH MANUAL.md OUTPUT.pdf\n");
    return 64;
  }
  const std::string tool = argv[2];
  const QString source = QFile::decodeName(argv[3]);
  const QString output = QFile::decodeName(argv[4]);

  // The fonts' subsets in the PDF follow the order of Qt's hash tables, which is random unless
  // the seed is fixed before Qt first hashes anything: start again with a fixed one.
  if (qgetenv("QT_HASH_SEED") != "0") {
    ::setenv("QT_HASH_SEED", "0", 1);
    ::execv(argv[0], argv);
    return fail(std::string("cannot start again: ") + std::strerror(errno));
  }
  // The same pictures on every machine: no display, UTC, the stand-in's clock pinned to ours,
  // and drawn at twice the size for the page.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", "2");
  qputenv("TZ", "UTC");
  qputenv("LC_ALL", "C.UTF-8");
  qputenv("KAVOR_LOG_NOW",
          std::to_string(static_cast<long long>(kPictureNow + kavor::kUnixToAbsoluteTime)).c_str());
  qInstallMessageHandler(quietMessages);
  QApplication application(argc, argv);

  QFile text(source);
  if (!text.open(QIODevice::ReadOnly)) return fail("cannot read " + source.toStdString());
  const QString markdown = QString::fromUtf8(text.readAll());

  const QTemporaryDir data;
  if (!data.isValid()) return fail("cannot make a temporary folder");
  const kavor::EnvLookup env = [&](std::string_view name) -> std::optional<std::string> {
    if (name == "XDG_DATA_HOME") return QFile::encodeName(data.path()).toStdString();
    if (name == "KAVOR_LOG_TOOL") return tool;
    return std::nullopt;
  };
  if (const kavor::Status made = kavor::ensureDemoRoot(env, {}); !made)
    return fail(made.error().message());
  const auto shots = kavor::manual::takeScreenshots(kavor::systemRootFrom(env), kPictureNow);
  if (!shots) return fail(shots.error().message());

  QSaveFile file(output);
  if (!file.open(QIODevice::WriteOnly) ||
      file.write(kavor::manual::manualPdf(markdown, *shots)) < 0 || !file.commit())
    return fail("cannot write " + output.toStdString() + ": " + file.errorString().toStdString());
  return 0;
}
