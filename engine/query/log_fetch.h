#pragma once
// The runs of the log tool that one owner (a main window, kavor-cli get) has started: each runs
// on the document's processing queue with the tool's output decoded as it arrives, and its output
// is handed to the main thread. A run owns its child process and can be cancelled: the child is
// ended and the output dropped, so that closing a window or quitting neither waits for the tool
// nor leaves it running.
//
// Threads: start, cancel and the destructor on the main thread, where the completions run too;
// the runs on the queue.

#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "engine/core/entry_decoder.h"
#include "engine/query/log_runner.h"
#include "platform/main_thread.h"
#include "platform/operation_queue.h"

namespace kavor {

class LogFetch {
 public:
  using Completion = std::function<void(LogShowOutput&&)>;
  // What one run does on the queue; it should return promptly once stop is requested.
  using Work = std::function<LogShowOutput(std::stop_token stop)>;

  // Both must outlive the runs: the queue's destructor waits for them, and each posts to
  // mainThread as it ends, cancelled or not.
  LogFetch(OperationQueue& queue, MainThread& mainThread, EntryDecoder::Options decoding = {});
  // Cancels the runs still going.
  ~LogFetch();
  LogFetch(const LogFetch&) = delete;
  LogFetch& operator=(const LogFetch&) = delete;

  // Runs the tool with args; done gets its output on the main thread unless cancelled first.
  void start(std::filesystem::path tool, std::vector<std::string> args, Completion done);
  void start(Work work, Completion done);
  // Ends every run started: their children are ended and their completions never run.
  void cancel();
  // Runs started and neither completed nor cancelled.
  size_t runsInFlight() const { return runs_.size(); }

 private:
  struct Run;
  OperationQueue& queue_;
  MainThread& mainThread_;
  EntryDecoder::Options decoding_;
  std::vector<std::shared_ptr<Run>> runs_;
};

// One run on the calling thread: the tool's output goes straight into the decoder. The tool is
// ended at once when stop is requested or when its output is known not to decode.
LogShowOutput runLogShow(const std::filesystem::path& tool, const std::vector<std::string>& args,
                         std::stop_token stop = {}, EntryDecoder::Options decoding = {});

}  // namespace kavor
