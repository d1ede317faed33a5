#pragma once
// The stand-in tool's commands, each given the arguments after its name; they return the exit
// status and print their output and messages themselves.

#include <span>
#include <string_view>

namespace kavor::standin {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 64;

int runShow(std::span<const std::string_view> args);
int runCollect(std::span<const std::string_view> args);
int runMakeSystem(std::span<const std::string_view> args, std::string_view self);

// "log: message" on standard error, returning status.
int complain(int status, std::string_view message);

}  // namespace kavor::standin
