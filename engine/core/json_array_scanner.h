#pragma once
// Finds where the elements of a top-level JSON array may be cut apart, while the bytes arrive.
// It tracks strings (with their escapes) and bracket depth 64 bytes at a time and remembers where
// the last object or array element ended; the comma after it is a safe cut. It does not validate
// the elements: whoever parses the pieces does. Offsets are into the caller's buffer, which may
// drop bytes it has consumed (shift).

#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/core/json_scan_state.h"

namespace kavor {

class JsonArrayScanner {
 public:
  static constexpr size_t npos = JsonScanState::npos;
  enum class State { beforeArray, inArray, afterArray, failed };

  JsonArrayScanner();

  // Scans buf[scanned(), end). Without `final`, a last piece shorter than a block waits for more
  // bytes; with it, everything is scanned.
  void scan(const char* buf, size_t end, bool final);

  State state() const { return state_; }
  // Why the bytes are no JSON array, and where: the byte of the output (counted from 1, across
  // shifts) at which that shows.
  const std::string& failure() const { return failure_; }
  // Bytes dropped by shift so far: where the caller's buffer starts in the output.
  uint64_t shifted() const { return shifted_; }
  size_t scanned() const { return scanned_; }
  size_t arrayOpen() const { return open_; }           // the "[" that opens the array
  size_t arrayClose() const { return blocks_.close; }  // the "]" that closes it, once seen
  // The comma after the last object or array element that ended, when it has arrived: a cut
  // there leaves whole elements on both sides. npos otherwise. Elements that are plain values
  // give no cuts, so an array of them is parsed in one piece.
  size_t lastSeparator(const char* buf, size_t end) const;

  // Goes on from a position known to lie between two elements of the array (just after a "," at
  // its top level), forgetting what was scanned before.
  void resumeAt(size_t position);
  // The buffer dropped its first `count` bytes; none of them is still needed.
  void shift(size_t count);

 private:
  using Kernel = size_t (*)(const char*, size_t, size_t, JsonScanState&);

  void scanPrologue(const char* buf, size_t end);
  void scanEpilogue(const char* buf, size_t end);
  void fail(std::string why);
  // Fails at buf[at].
  void failAt(std::string why, size_t at);

  Kernel kernel_;
  State state_ = State::beforeArray;
  std::string failure_;
  size_t scanned_ = 0;
  uint64_t shifted_ = 0;
  size_t open_ = npos;
  JsonScanState blocks_;
};

}  // namespace kavor
