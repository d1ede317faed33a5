#include "tools/log/container.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/file_bytes.h"

namespace kavor::standin {

namespace {

// Our own mark; real data files begin otherwise and are refused.
constexpr std::string_view kMagic = "KVLOGST1";
// No entry of ours comes near this; a larger count or length means a damaged file.
constexpr uint64_t kLargestText = uint64_t{1} << 24;
constexpr uint64_t kLargestFile = uint64_t{1} << 32;

class Out {
 public:
  void field(int64_t v) { number(static_cast<uint64_t>(v)); }
  void field(uint64_t v) { number(v); }
  void field(bool v) { bytes_ += v ? '\1' : '\0'; }
  void field(const std::string& v) {
    number(v.size());
    bytes_ += v;
  }
  void number(uint64_t v) {
    char b[8];
    std::memcpy(b, &v, 8);
    bytes_.append(b, 8);
  }
  std::string& bytes() { return bytes_; }

 private:
  std::string bytes_;
};

class In {
 public:
  explicit In(std::string_view bytes) : rest_(bytes) {}
  void field(int64_t& v) { v = static_cast<int64_t>(number()); }
  void field(uint64_t& v) { v = number(); }
  void field(bool& v) {
    if (rest_.empty()) return fail();
    v = rest_[0] != 0;
    rest_.remove_prefix(1);
  }
  void field(std::string& v) {
    const uint64_t n = number();
    if (n > kLargestText || n > rest_.size()) return fail();
    v.assign(rest_.substr(0, n));
    rest_.remove_prefix(n);
  }
  uint64_t number() {
    if (rest_.size() < 8) {
      fail();
      return 0;
    }
    uint64_t v;
    std::memcpy(&v, rest_.data(), 8);
    rest_.remove_prefix(8);
    return v;
  }
  bool ok() const { return ok_; }
  bool atEnd() const { return rest_.empty(); }

 private:
  void fail() {
    ok_ = false;
    rest_ = {};
  }
  std::string_view rest_;
  bool ok_ = true;
};

// Every field in one fixed order, for writing and reading alike.
template <class Stream, class Entry>
void visit(Stream& s, Entry& e) {
  s.field(e.timeMicros);
  s.field(e.machTimestamp);
  s.field(e.messageType);
  s.field(e.eventType);
  s.field(e.category);
  s.field(e.subsystem);
  s.field(e.processUniqueID);
  s.field(e.threadID);
  s.field(e.traceID);
  s.field(e.senderProgramCounter);
  s.field(e.processID);
  s.field(e.eventMessage);
  s.field(e.formatString);
  s.field(e.processImagePath);
  s.field(e.processImageUUID);
  s.field(e.senderImagePath);
  s.field(e.senderImageUUID);
  s.field(e.timezoneName);
  s.field(e.activityIdentifier);
  s.field(e.parentActivityIdentifier);
  s.field(e.creatorActivityID);
  s.field(e.signpostID);
  s.field(e.signpostName);
  s.field(e.signpostType);
  s.field(e.signpostScope);
  s.field(e.bootUUID);
  s.field(e.userID);
  s.field(e.hasBacktrace);
}

}  // namespace

Status writeContainer(const std::filesystem::path& file, std::span<const LogEntry> entries) {
  Out out;
  out.bytes() = kMagic;
  out.number(entries.size());
  for (const LogEntry& e : entries)
    visit(out, e);
  return writeNewFileDurably(file, out.bytes());
}

Expected<std::vector<LogEntry>> readContainer(const std::filesystem::path& file) {
  auto bytes = readFileBytes(file, kLargestFile);
  if (!bytes) return bytes.error();
  const std::string_view all(*bytes);
  const Error damaged{ErrorKind::parse, file.string() + ": not a log data file of this system", 0};
  if (!all.starts_with(kMagic)) return damaged;
  In in(all.substr(kMagic.size()));
  const uint64_t count = in.number();
  std::vector<LogEntry> entries;
  // Each entry takes well over 100 bytes, which bounds what a damaged count may reserve.
  entries.reserve(std::min<uint64_t>(count, all.size() / 100));
  for (uint64_t i = 0; i < count && in.ok(); ++i)
    visit(in, entries.emplace_back());
  if (!in.ok() || !in.atEnd()) return damaged;
  return entries;
}

}  // namespace kavor::standin
