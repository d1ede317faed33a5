#include "engine/query/log_fetch.h"

#include <algorithm>
#include <new>

#include "engine/core/memory_budget.h"
#include "platform/child_process.h"

namespace kavor {

namespace {

// As much as the pipe holds, so that each read takes what is there.
constexpr size_t kReadPiece = size_t{1} << 20;

// The tool's output goes straight into the decoder's buffers, and stops once it cannot decode.
class DecodingSink final : public OutputSink {
 public:
  explicit DecodingSink(EntryDecoder::Options options) : decoder_(options) {}
  std::span<char> room() override { return decoder_.prepare(kReadPiece); }
  void commit(size_t bytes) override { decoder_.commit(bytes); }
  bool wantsMore() const override { return !decoder_.failed(); }
  Expected<EntryList> finish() { return decoder_.finish(); }

 private:
  EntryDecoder decoder_;
};

}  // namespace

struct LogFetch::Run {
  std::stop_source stop;
  Completion done;
};

LogFetch::LogFetch(OperationQueue& queue, MainThread& mainThread, EntryDecoder::Options decoding)
    : queue_(queue), mainThread_(mainThread), decoding_(decoding) {}

LogFetch::~LogFetch() {
  cancel();
}

void LogFetch::start(std::filesystem::path tool, std::vector<std::string> args, Completion done) {
  start([tool = std::move(tool), args = std::move(args), decoding = decoding_](
            std::stop_token stop) { return runLogShow(tool, args, std::move(stop), decoding); },
        std::move(done));
}

void LogFetch::start(Work work, Completion done) {
  auto run = std::make_shared<Run>();
  run->done = std::move(done);
  runs_.push_back(run);
  queue_.addOperation([this, run, work = std::move(work), &mainThread = mainThread_] {
    // On the queue, where the fetch itself may be gone: only what was captured is used.
    if (run->stop.stop_requested()) return;  // cancelled while it waited: the tool never starts
    auto output = std::make_shared<LogShowOutput>();
    try {
      *output = work(run->stop.get_token());
    } catch (const std::bad_alloc&) {
      // The child is gone already: the platform ends it when an exception passes.
      *output = LogShowOutput{};
      output->entries = memoryRefusedError();
    }
    mainThread.post([this, run, output] {
      // A cancelled run's owner may be gone: nothing of it is touched.
      if (run->stop.stop_requested()) return;
      std::erase(runs_, run);
      run->done(std::move(*output));
    });
  });
}

void LogFetch::cancel() {
  for (const auto& run : runs_)
    run->stop.request_stop();
  runs_.clear();
}

LogShowOutput runLogShow(const std::filesystem::path& tool, const std::vector<std::string>& args,
                         std::stop_token stop, EntryDecoder::Options decoding) {
  LogShowOutput out;
  DecodingSink sink(decoding);
  auto exit = runChildProcess(tool, args, sink, stop);
  if (!exit) {
    out.launchFailure = exit.error();
    return out;
  }
  out.status = exit->status;
  out.endedEarly = exit->stopped;
  out.standardError = std::move(exit->standardError);
  out.standardErrorLines = exit->standardErrorLines;
  if (!stop.stop_requested()) out.entries = sink.finish();
  return out;
}

}  // namespace kavor
