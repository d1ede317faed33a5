#include "platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

extern char** environ;

namespace kavor {

namespace {

constexpr size_t kKeptErrorBytes = size_t{64} << 10;
constexpr size_t kStringSinkStep = size_t{1} << 20;
constexpr int kPipeBytes = 1 << 20;

struct Pipe {
  int read = -1;
  int write = -1;
  ~Pipe() {
    closeRead();
    closeWrite();
  }
  // Close-on-exec, so that children started at the same time from other threads do not hold each
  // other's pipes open.
  bool open() {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return false;
    read = fds[0];
    write = fds[1];
    return true;
  }
  void closeRead() {
    if (read >= 0) ::close(read);
    read = -1;
  }
  void closeWrite() {
    if (write >= 0) ::close(write);
    write = -1;
  }
};

struct SpawnActions {
  posix_spawn_file_actions_t actions;
  SpawnActions() { posix_spawn_file_actions_init(&actions); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions); }
};

}  // namespace

OutputSink::~OutputSink() = default;

std::span<char> StringSink::room() {
  if (buffer_.size() - used_ < kStringSinkStep) buffer_.resize(used_ + kStringSinkStep);
  return {buffer_.data() + used_, buffer_.size() - used_};
}

void StringSink::commit(size_t n) {
  used_ += n;
}

std::string StringSink::take() {
  buffer_.resize(used_);
  used_ = 0;
  return std::move(buffer_);
}

Expected<ChildExit> runChildProcess(const std::filesystem::path& program,
                                    std::span<const std::string> args, OutputSink& output) {
  Pipe out, err;
  if (!out.open() || !err.open()) return ioError("making a pipe for " + program.string(), errno);
  // A larger pipe lets a fast writer such as the log tool run ahead in bigger pieces; without the
  // privilege for it the default size serves.
  ::fcntl(out.write, F_SETPIPE_SZ, kPipeBytes);
  SpawnActions spawn;
  posix_spawn_file_actions_adddup2(&spawn.actions, out.write, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&spawn.actions, err.write, STDERR_FILENO);

  std::vector<std::string> argvText;
  argvText.reserve(args.size() + 1);
  argvText.push_back(program.string());
  argvText.insert(argvText.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& a : argvText)
    argv.push_back(a.data());
  argv.push_back(nullptr);

  pid_t pid = 0;
  if (const int failed =
          ::posix_spawn(&pid, argv[0], &spawn.actions, nullptr, argv.data(), environ))
    return ioError("starting " + program.string(), failed);
  out.closeWrite();
  err.closeWrite();

  ChildExit exit;
  pollfd fds[2] = {{out.read, POLLIN, 0}, {err.read, POLLIN, 0}};
  int open = 2;
  while (open > 0) {
    if (::poll(fds, 2, -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    if (fds[0].revents) {
      const std::span<char> room = output.room();
      const ssize_t n = ::read(out.read, room.data(), room.size());
      if (n > 0) {
        output.commit(static_cast<size_t>(n));
      } else if (n == 0 || errno != EINTR) {
        fds[0].fd = -1;
        --open;
      }
    }
    if (fds[1].revents) {
      char buf[4096];
      const ssize_t n = ::read(err.read, buf, sizeof buf);
      if (n > 0) {
        const size_t keep =
            std::min(static_cast<size_t>(n),
                     kKeptErrorBytes - std::min(kKeptErrorBytes, exit.standardError.size()));
        exit.standardError.append(buf, keep);
      } else if (n == 0 || errno != EINTR) {
        fds[1].fd = -1;
        --open;
      }
    }
  }
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0)
    if (errno != EINTR) return ioError("waiting for " + program.string(), errno);
  exit.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return exit;
}

}  // namespace kavor
