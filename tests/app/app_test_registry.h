#pragma once
// Test classes register themselves by name so that one executable runs each as its own test.

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

namespace kavor::app_testing {

struct TestClassEntry {
  const char* name;
  std::function<std::unique_ptr<QObject>()> make;
};

inline std::vector<TestClassEntry>& testClasses() {
  static std::vector<TestClassEntry> all;
  return all;
}

struct RegisterTestClass {
  RegisterTestClass(const char* name, std::function<std::unique_ptr<QObject>()> make) {
    testClasses().push_back({name, std::move(make)});
  }
};

}  // namespace kavor::app_testing

#define KAVOR_APP_TEST(Class)                                             \
  static const ::kavor::app_testing::RegisterTestClass registered##Class( \
      #Class, [] { return std::make_unique<Class>(); })
