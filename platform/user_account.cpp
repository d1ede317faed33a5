#include "platform/user_account.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <vector>

namespace kavor {

namespace {

// Room for one database record; grown while the system says it is too small.
constexpr size_t kFirstRecordRoom = 1024;
constexpr size_t kLargestRecordRoom = size_t{1} << 20;

#ifndef __APPLE__
// The group's number, or -1 when the system has no group of that name.
long groupNumber(const char* name) {
  std::vector<char> room(kFirstRecordRoom);
  group record{};
  group* found = nullptr;
  int err;
  while ((err = ::getgrnam_r(name, &record, room.data(), room.size(), &found)) == ERANGE &&
         room.size() < kLargestRecordRoom)
    room.resize(room.size() * 2);
  return err == 0 && found != nullptr ? static_cast<long>(found->gr_gid) : -1;
}
#endif

}  // namespace

std::string loginName() {
  std::vector<char> room(kFirstRecordRoom);
  passwd record{};
  passwd* found = nullptr;
  int err;
  while ((err = ::getpwuid_r(::geteuid(), &record, room.data(), room.size(), &found)) == ERANGE &&
         room.size() < kLargestRecordRoom)
    room.resize(room.size() * 2);
  return err == 0 && found != nullptr && found->pw_name != nullptr ? found->pw_name : "";
}

std::vector<std::string> administratorGroupNumbers() {
#ifdef __APPLE__
  return {"80"};
#else
  std::vector<std::string> numbers = {"0"};
  for (const char* name : {"sudo", "wheel", "admin"}) {
    const long number = groupNumber(name);
    if (number < 0) continue;
    std::string text = std::to_string(number);
    if (std::find(numbers.begin(), numbers.end(), text) == numbers.end())
      numbers.push_back(std::move(text));
  }
  return numbers;
#endif
}

}  // namespace kavor
