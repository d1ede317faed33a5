#pragma once
// Running a program of the build as Kavor runs the log tool: an argument list, the environment
// given, standard output and standard error kept apart.

#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

namespace kavor::testing_support {

struct ProgramRun {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string drainPipe(int fd) {
  std::string text;
  char buf[65536];
  ssize_t n;
  while ((n = ::read(fd, buf, sizeof buf)) > 0)
    text.append(buf, static_cast<size_t>(n));
  ::close(fd);
  return text;
}

// argv[0] is the program; env adds to the test's own environment.
inline ProgramRun runProgram(std::vector<std::string> argv,
                             const std::vector<std::pair<std::string, std::string>>& env) {
  int out[2], err[2];
  if (::pipe(out) != 0 || ::pipe(err) != 0) return {};
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(out[1], 1);
    ::dup2(err[1], 2);
    ::close(out[0]);
    ::close(err[0]);
    for (const auto& [name, value] : env)
      ::setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> args;
    for (std::string& a : argv)
      args.push_back(a.data());
    args.push_back(nullptr);
    ::execv(args[0], args.data());
    ::_exit(127);
  }
  ::close(out[1]);
  ::close(err[1]);
  ProgramRun run;
  // Standard error stays small; standard output is read to the end first.
  run.out = drainPipe(out[0]);
  run.err = drainPipe(err[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

}  // namespace kavor::testing_support
