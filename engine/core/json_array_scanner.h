#pragma once
// Finds where the elements of a top-level JSON array may be cut apart, while the bytes arrive.
// It tracks strings (with their escapes) and bracket depth 64 bytes at a time and remembers the
// last comma between two elements. It does not validate the elements: whoever parses the pieces
// does. Offsets are into the caller's buffer, which may drop bytes it has consumed (shift).

#include <cstddef>
#include <cstdint>
#include <string>

namespace kavor {

class JsonArrayScanner {
 public:
  static constexpr size_t npos = static_cast<size_t>(-1);
  enum class State { beforeArray, inArray, afterArray, failed };

  // Scans buf[scanned(), end). Without `final`, a last piece shorter than a block waits for more
  // bytes; with it, everything is scanned.
  void scan(const char* buf, size_t end, bool final);

  State state() const { return state_; }
  const std::string& failure() const { return failure_; }
  size_t scanned() const { return scanned_; }
  size_t arrayOpen() const { return open_; }    // the "[" that opens the array
  size_t arrayClose() const { return close_; }  // the "]" that closes it, once seen
  // The last comma between two elements seen so far, or npos.
  size_t lastSeparator() const { return lastSeparator_; }

  // The buffer dropped its first `count` bytes; none of them is still needed.
  void shift(size_t count);

 private:
  void scanPrologue(const char* buf, size_t end);
  void scanBlock(const char* block, size_t base);
  void scanEpilogue(const char* buf, size_t end);
  void fail(std::string why);

  State state_ = State::beforeArray;
  std::string failure_;
  size_t scanned_ = 0;
  size_t open_ = npos;
  size_t close_ = npos;
  size_t lastSeparator_ = npos;
  int64_t depth_ = 0;
  uint64_t prevInString_ = 0;  // all ones when the previous block ended inside a string
  uint64_t prevEscaped_ = 0;   // 1 when the previous block ended with an unfinished escape
};

}  // namespace kavor
