#pragma once
// The last stage of decoding: stores the parsed pieces, in order, into the entry list. Runs on a
// worker thread of its own once asked to, otherwise on the caller's thread.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/core/entry_chunk_parser.h"
#include "engine/core/entry_list_builder.h"

namespace kavor {

class EntryPieceWorker {
 public:
  EntryPieceWorker() = default;
  ~EntryPieceWorker();
  EntryPieceWorker(const EntryPieceWorker&) = delete;
  EntryPieceWorker& operator=(const EntryPieceWorker&) = delete;

  // A parser whose last piece has been stored, or a new one.
  std::unique_ptr<EntryChunkParser> takeParser();
  // Stores the parser's piece on the worker thread, started on first use, or on this thread.
  void submit(std::unique_ptr<EntryChunkParser> parsed, bool inWorker);
  size_t entries() const { return entries_.load(std::memory_order_relaxed); }
  // Waits until every submitted piece is stored, then hands over the entries.
  EntryList finish();

 private:
  // Parsing runs ahead of storing by a few pieces at most, so memory stays bounded.
  static constexpr size_t kMaxQueued = 4;
  void store(EntryChunkParser& parsed);  // on whichever thread owns the builder at the time
  void run();                            // the worker thread's loop
  void stop();

  EntryListBuilder builder_;
  std::atomic<size_t> entries_{0};

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<EntryChunkParser>> queue_;
  std::vector<std::unique_ptr<EntryChunkParser>> free_;
  bool closing_ = false;
  std::thread thread_;
};

}  // namespace kavor
