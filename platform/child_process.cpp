#include "platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/owned_fd.h"

#ifdef __linux__
#include <sys/prctl.h>
#endif

extern char** environ;

namespace kavor {

namespace {

constexpr size_t kKeptErrorBytes = size_t{64} << 10;
constexpr size_t kStringSinkStep = size_t{1} << 20;
#ifdef F_SETPIPE_SZ
constexpr int kPipeBytes = 1 << 20;
#endif
// How long a child asked to end may take before it is killed, looked at in small steps.
constexpr int kGraceSteps = 50;
constexpr long kGraceStepNanoseconds = 10'000'000;

struct Pipe {
  int read = -1;
  int write = -1;
  ~Pipe() {
    closeRead();
    closeWrite();
  }
  // Close-on-exec, so that children started at the same time from other threads do not hold each
  // other's pipes open.
  bool open(int flags = 0) {
    int fds[2];
#ifdef __linux__
    if (::pipe2(fds, O_CLOEXEC | flags) != 0) return false;
    read = fds[0];
    write = fds[1];
#else
    // No atomic form here: a child started meanwhile by another thread may hold these until its
    // exec.
    if (::pipe(fds) != 0) return false;
    read = fds[0];
    write = fds[1];
    for (int fd : fds)
      if (::fcntl(fd, F_SETFD, FD_CLOEXEC) != 0 ||
          (flags && ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | flags) != 0))
        return false;
#endif
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

// Forks and runs the program; the child's exec failure comes back through a pipe as its errno.
Expected<pid_t> startChild(const char* path, char* const argv[], int outFd, int errFd,
                           bool ownGroup) {
  Pipe report;
  if (!report.open()) return ioError(std::string("starting ") + path, errno);
  sigset_t noSignals;
  ::sigemptyset(&noSignals);
  [[maybe_unused]] const pid_t parent = ::getpid();  // read only where a death signal is set
  const pid_t pid = ::fork();
  if (pid < 0) return ioError(std::string("starting ") + path, errno);
  if (pid == 0) {
    // The child, a copy of a threaded program: only async-signal-safe calls until exec.
    if (ownGroup) ::setpgid(0, 0);
#ifdef __linux__
    // Killed when the starting thread ends: that thread waits for the child, so this happens
    // only when the program itself ends. It may have ended already, before this line.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(127);
#endif
    ::sigprocmask(SIG_SETMASK, &noSignals, nullptr);
    if (::dup2(outFd, STDOUT_FILENO) >= 0 && ::dup2(errFd, STDERR_FILENO) >= 0)
      ::execve(path, argv, environ);
    const int failure = errno;
    (void)!::write(report.write, &failure, sizeof failure);
    ::_exit(127);
  }
  // Here as well as in the child, so that a stop that comes at once finds the group.
  if (ownGroup) ::setpgid(pid, pid);
  report.closeWrite();
  int failure = 0;
  ssize_t n;
  while ((n = ::read(report.read, &failure, sizeof failure)) < 0 && errno == EINTR) {
  }
  if (n <= 0) return pid;
  int ignored;
  while (::waitpid(pid, &ignored, 0) < 0 && errno == EINTR) {
  }
  return ioError(std::string("starting ") + path, failure);
}

// A started child: reaped however the caller leaves, an exception included, and ended first
// when it has not finished.
class Child {
 public:
  Child(pid_t pid, bool ownGroup) : pid_(pid), ownGroup_(ownGroup) {}
  ~Child() {
    if (pid_ > 0) (void)end();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // The wait status, or -1 with errno.
  int wait() {
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0)
      if (errno != EINTR) return -1;
    pid_ = -1;
    return status;
  }

  // Asks the child to end, kills it if it has not within the grace, and reaps it.
  int end() {
    signal(SIGTERM);
    for (int step = 0; step < kGraceSteps && !exited(); ++step) {
      const timespec pause{0, kGraceStepNanoseconds};
      ::nanosleep(&pause, nullptr);
    }
    // Whatever ignored the request, the group's other members included; the child itself, if
    // it has ended, is not reaped yet, so its group cannot have been taken by another.
    signal(SIGKILL);
    return wait();
  }

 private:
  // Whether it has ended, without reaping it.
  bool exited() const {
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid != 0;
  }
  void signal(int number) const {
    if (ownGroup_ && ::kill(-pid_, number) == 0) return;
    ::kill(pid_, number);
  }

  pid_t pid_;
  bool ownGroup_;
};

void keepError(ChildExit& exit, const char* bytes, size_t count, bool& endsLine) {
  const size_t room = kKeptErrorBytes - std::min(kKeptErrorBytes, exit.standardError.size());
  exit.standardError.append(bytes, std::min(count, room));
  exit.standardErrorLines += static_cast<size_t>(std::count(bytes, bytes + count, '\n'));
  endsLine = bytes[count - 1] == '\n';
}

// Reads both streams to their ends, or until a stop is asked for or the sink wants no more.
// Returns whether it stopped early.
bool readOutputs(int out, int err, int wake, OutputSink& output, const std::stop_token& stop,
                 ChildExit& exit) {
  pollfd fds[3] = {{out, POLLIN, 0}, {err, POLLIN, 0}, {wake, POLLIN, 0}};
  bool errorEndsLine = true;
  int open = 2;
  while (open > 0) {
    if (stop.stop_requested() || !output.wantsMore()) return true;
    if (::poll(fds, 3, -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    if (fds[0].revents) {
      const std::span<char> room = output.room();
      const ssize_t n = ::read(out, room.data(), room.size());
      if (n > 0) {
        output.commit(static_cast<size_t>(n));
      } else if (n == 0 || errno != EINTR) {
        fds[0].fd = -1;
        --open;
      }
    }
    if (fds[1].revents) {
      char buf[4096];
      const ssize_t n = ::read(err, buf, sizeof buf);
      if (n > 0) {
        keepError(exit, buf, static_cast<size_t>(n), errorEndsLine);
      } else if (n == 0 || errno != EINTR) {
        fds[1].fd = -1;
        --open;
      }
    }
  }
  if (!errorEndsLine) ++exit.standardErrorLines;
  return false;
}

// The middle child of a detached start: starts the program in a session of its own and leaves
// at once, so that the program is nobody's child to wait for. Only async-signal-safe calls.
[[noreturn]] void startOrphan(const char* path, char* const argv[], int nullFd, int reportFd) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::setsid();
    sigset_t noSignals;
    ::sigemptyset(&noSignals);
    ::sigprocmask(SIG_SETMASK, &noSignals, nullptr);
    if (::dup2(nullFd, STDIN_FILENO) >= 0 && ::dup2(nullFd, STDOUT_FILENO) >= 0 &&
        ::dup2(nullFd, STDERR_FILENO) >= 0)
      ::execve(path, argv, environ);
  }
  const int failure = pid < 0 || pid == 0 ? errno : 0;
  if (failure != 0) (void)!::write(reportFd, &failure, sizeof failure);
  ::_exit(failure != 0 ? 127 : 0);
}

std::vector<std::string> argumentVector(const std::filesystem::path& program,
                                        std::span<const std::string> args) {
  std::vector<std::string> argvText;
  argvText.reserve(args.size() + 1);
  argvText.push_back(program.string());
  argvText.insert(argvText.end(), args.begin(), args.end());
  return argvText;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> argv;
  for (std::string& a : texts)
    argv.push_back(a.data());
  argv.push_back(nullptr);
  return argv;
}

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
                                    std::span<const std::string> args, OutputSink& output,
                                    std::stop_token stop) {
  Pipe out, err, wake;
  if (!out.open() || !err.open() || !wake.open(O_NONBLOCK))
    return ioError("making a pipe for " + program.string(), errno);
#ifdef F_SETPIPE_SZ
  // A larger pipe lets a fast writer such as the log tool run ahead in bigger pieces; without the
  // privilege for it the default size serves.
  ::fcntl(out.write, F_SETPIPE_SZ, kPipeBytes);
#endif

  // Everything the child needs is made before the fork.
  std::vector<std::string> argvText = argumentVector(program, args);
  const std::vector<char*> argv = pointersTo(argvText);

  const bool ownGroup = stop.stop_possible();
  const auto started = startChild(argv[0], argv.data(), out.write, err.write, ownGroup);
  if (!started) return started.error();
  Child child(*started, ownGroup);
  out.closeWrite();
  err.closeWrite();

  // The request may come from any thread; the byte wakes the read loop's poll.
  const std::stop_callback onStop(stop, [fd = wake.write] {
    const char byte = 0;
    (void)!::write(fd, &byte, 1);
  });
  ChildExit exit;
  exit.stopped = readOutputs(out.read, err.read, wake.read, output, stop, exit);
  // A child still writing meets a closed pipe.
  out.closeRead();
  err.closeRead();
  const int status = exit.stopped ? child.end() : child.wait();
  if (status < 0) return ioError("waiting for " + program.string(), errno);
  exit.signalled = WIFSIGNALED(status);
  exit.status = exit.signalled ? WTERMSIG(status) : WEXITSTATUS(status);
  return exit;
}

Status startDetachedProcess(const std::filesystem::path& program,
                            std::span<const std::string> args) {
  const std::string context = "starting " + program.string();
  std::vector<std::string> argvText = argumentVector(program, args);
  const std::vector<char*> argv = pointersTo(argvText);
  const OwnedFd nullFd(::open("/dev/null", O_RDWR | O_CLOEXEC));
  if (nullFd.get() < 0) return ioError(context, errno);
  // Closed on exec: a started program leaves it empty, a failure leaves its errno in it.
  Pipe report;
  if (!report.open()) return ioError(context, errno);
  const pid_t middle = ::fork();
  if (middle < 0) return ioError(context, errno);
  if (middle == 0) startOrphan(argv[0], argv.data(), nullFd.get(), report.write);
  report.closeWrite();
  int ignored;
  while (::waitpid(middle, &ignored, 0) < 0 && errno == EINTR) {
  }
  int failure = 0;
  ssize_t n;
  while ((n = ::read(report.read, &failure, sizeof failure)) < 0 && errno == EINTR) {
  }
  if (n > 0) return ioError(context, failure);
  return okStatus();
}

std::optional<std::filesystem::path> findProgramInPath(std::string_view name,
                                                       const EnvLookup& env) {
  const std::string folders = env("PATH").value_or("");
  size_t start = 0;
  while (start <= folders.size()) {
    size_t end = folders.find(':', start);
    if (end == std::string::npos) end = folders.size();
    const std::filesystem::path folder = folders.substr(start, end - start);
    start = end + 1;
    // Relative entries (an empty one is the current folder) would run whatever lies where
    // Kavor happens to be started.
    if (!folder.is_absolute()) continue;
    const std::filesystem::path candidate = folder / name;
    std::error_code ec;
    if (std::filesystem::is_regular_file(candidate, ec) && ::access(candidate.c_str(), X_OK) == 0)
      return candidate;
  }
  return std::nullopt;
}

}  // namespace kavor
