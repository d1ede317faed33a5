#pragma once
// Decodes what "log show --style json" prints into an EntryList while the bytes arrive: the
// output is cut between elements of its top-level array into pieces of a few hundred kilobytes,
// and each piece is parsed and stored while the next is read. Memory stays bounded by a few
// pieces plus the compact list, whatever the size of the output (also beyond 4 GiB), and within
// a budget: an output whose list, or whose single entry, would need more ends with an error
// instead, as does one for which the system refuses memory. No exception leaves the decoder.
//
// Threads: the caller's thread reads, cuts and parses; one worker thread of the decoder's own
// stores the parsed pieces in order, started with the first piece cut before the end (small
// outputs never start it). The decoder itself is used by one thread at a time.

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include "engine/core/entry_list.h"
#include "engine/core/memory_budget.h"
#include "platform/expected.h"

namespace kavor {

class EntryDecoder {
 public:
  struct Options {
    size_t pieceSize = size_t{512} << 10;  // cut once this much of the output is ready
    bool storeInWorker = true;             // false: everything on the caller's thread
    // Bytes the decoder may hold at once: its buffer, the pieces being parsed and the entries.
    // One entry may take a fifteenth of it (the parse needs many times its bytes), 4 GiB at most.
    size_t memoryBudget = fetchMemoryBudget();
  };

  EntryDecoder();
  explicit EntryDecoder(Options options);
  ~EntryDecoder();
  EntryDecoder(const EntryDecoder&) = delete;
  EntryDecoder& operator=(const EntryDecoder&) = delete;

  // Room for at least `atLeast` new bytes; write into it, then commit what was written. Once the
  // output is known not to decode, the room is a small one whose bytes are thrown away.
  std::span<char> prepare(size_t atLeast = size_t{1} << 16);
  // Takes `count` bytes written into the last prepared room. Once the output is known not to
  // decode, further bytes are ignored, what was held is freed, and finish() reports why.
  void commit(size_t count);
  // Copies and commits.
  void feed(std::string_view bytes);

  // Ends the output. The entries, or why the output does not decode: empty output, not an
  // array, cut short, malformed JSON, invalid UTF-8, or too large (ErrorKind::tooLarge, with a
  // message that begins with kOutputTooLarge).
  Expected<EntryList> finish();

  // True once the output is known not to decode: the rest of it need not be read.
  bool failed() const;

  size_t bytesSeen() const { return bytesSeen_; }
  // Safe to call from any thread, for progress.
  size_t entriesDecoded() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
  size_t bytesSeen_ = 0;
};

// The whole output at once.
Expected<EntryList> decodeEntries(std::string_view bytes);

}  // namespace kavor
