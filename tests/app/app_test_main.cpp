// Runs one QtTest class of the window tests, named by the first argument, on the offscreen
// platform unless another is asked for; --list-classes names them all.

#include <QApplication>
#include <QTest>
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/app/app_test_registry.h"

// Leaks of the PDF view's libraries (Qt 6.4), not ours: each view's flick gesture recognizer,
// and the reader state of a file that fails to load. The leak checker reads this list.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:QScroller::grabGesture\n"
         "leak:QPdfDocumentPrivate::initiateAsyncLoadWithTotalSizeKnown\n";
}

int main(int argc, char* argv[]) {
  // For ctest's discovery: the class names, one a line, without starting an application.
  if (argc == 2 && std::strcmp(argv[1], "--list-classes") == 0) {
    for (const auto& entry : kavor::app_testing::testClasses())
      std::printf("%s\n", entry.name);
    return 0;
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s TEST-CLASS [QtTest options]\n", argv[0]);
    for (const auto& entry : kavor::app_testing::testClasses())
      std::fprintf(stderr, "  %s\n", entry.name);
    return 64;
  }
  for (const auto& entry : kavor::app_testing::testClasses()) {
    if (std::strcmp(entry.name, argv[1]) != 0) continue;
    auto test = entry.make();
    std::vector<char*> args{argv[0]};
    for (int i = 2; i < argc; ++i)
      args.push_back(argv[i]);
    return QTest::qExec(test.get(), static_cast<int>(args.size()), args.data());
  }
  std::fprintf(stderr, "no test class %s\n", argv[1]);
  return 64;
}
