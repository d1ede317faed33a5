#include "bench/window/floor_case.h"

#include <chrono>
#include <cstdio>
#include <optional>

#include "bench/window/case_report.h"
#include "engine/core/entry_decoder.h"
#include "engine/query/entry_styler.h"
#include "engine/query/log_runner.h"
#include "platform/child_process.h"
#include "platform/memory_block.h"
#include "platform/process_memory.h"
#include "tests/platform/temp_folder.h"

namespace kavor::bench {

namespace {

using Clock = std::chrono::steady_clock;

// Room for any output of the bench, paid for only as it is written: the floor grows no buffer.
constexpr size_t kRoom = size_t{8} << 30;

class BlockSink final : public OutputSink {
 public:
  std::span<char> room() override { return {block_.data() + used_, block_.size() - used_}; }
  void commit(size_t bytes) override { used_ += bytes; }
  bool wantsMore() const override { return used_ < block_.size(); }
  std::string_view bytes() const { return {block_.data(), used_}; }
  bool full() const { return used_ == block_.size(); }

 private:
  MemoryBlock block_{kRoom};
  size_t used_ = 0;
};

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// The same bytes from a file, read through a pipe from a child that only copies them: what
// reading costs when the tool is not what limits it. Seconds; none when it fails.
std::optional<double> readThroughPipe(std::string_view bytes) {
  const testing_support::TempFolder folder;
  const std::filesystem::path file = folder / "output.json";
  testing_support::writeFile(file, bytes);
  BlockSink sink;
  const auto start = Clock::now();
  const auto ran = runChildProcess("/bin/cat", std::vector<std::string>{file.string()}, sink);
  const double seconds = secondsSince(start);
  if (!ran || ran->status != 0 || sink.bytes() != bytes) {
    std::fprintf(stderr, "reading the output back from a file failed\n");
    return std::nullopt;
  }
  return seconds;
}

}  // namespace

int runFloorCase(const FloorChoices& choices) {
  BlockSink sink;
  auto start = Clock::now();
  const auto ran = runChildProcess(choices.tool, choices.args, sink);
  const double read = secondsSince(start);
  if (!ran || ran->status != 0 || sink.full()) {
    std::fprintf(stderr, "the log tool's run failed\n");
    return 1;
  }
  const auto fileRead = readThroughPipe(sink.bytes());
  if (!fileRead) return 1;

  start = Clock::now();
  Expected<EntryList> entries = decodeEntries(sink.bytes());
  const double decode = secondsSince(start);
  if (!entries) {
    std::fprintf(stderr, "the output does not decode: %s\n", entries.error().message().c_str());
    return 1;
  }

  StylerInput input;
  input.entries = &*entries;
  input.styleText = choices.style;
  input.show = {choices.show.size() > 0 && choices.show[0] == '1',
                choices.show.size() > 1 && choices.show[1] == '1',
                choices.show.size() > 2 && choices.show[2] == '1'};
  input.limitEntries = false;
  input.osVersion = choices.osVersion;
  start = Clock::now();
  const StyledEntries styled = styleEntries(input);
  const double style = secondsSince(start);

  const ResidentMemory memory = residentMemory();
  say("read.seconds", read);
  say("read.file.seconds", *fileRead);
  say("json.bytes", static_cast<double>(sink.bytes().size()));
  say("decode.seconds", decode);
  say("style.seconds", style);
  say("entries", static_cast<double>(entries->size()));
  say("lines", static_cast<double>(paragraphCount(styled.text.text)));
  say("entries.bytes", static_cast<double>(entries->memoryBytes()));
  say("resident", static_cast<double>(memory.current));
  say("peak", static_cast<double>(memory.peak));
  return 0;
}

}  // namespace kavor::bench
