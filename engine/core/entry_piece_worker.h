#pragma once
// The last stage of decoding: stores the parsed pieces, in order, into the entry list. Runs on a
// worker thread of its own once asked to, otherwise on the caller's thread. It counts what the
// pieces hold, so that the decoder can keep to its memory budget.

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
  // A parser that grew past keepParserBytes (for one huge entry) is freed once its piece is
  // stored, rather than kept for the next piece.
  explicit EntryPieceWorker(size_t keepParserBytes) : keepParserBytes_(keepParserBytes) {}
  ~EntryPieceWorker();
  EntryPieceWorker(const EntryPieceWorker&) = delete;
  EntryPieceWorker& operator=(const EntryPieceWorker&) = delete;

  // A parser whose last piece has been stored, or a new one; without `mayCreate`, when the
  // budget has no room for another, waits for one in use to come back.
  std::unique_ptr<EntryChunkParser> takeParser(bool mayCreate);
  // The caller's parse made a parser hold this many more bytes.
  void parserGrew(size_t bytes) { parserBytes_.fetch_add(bytes, std::memory_order_relaxed); }
  // Stores the parser's piece on the worker thread, started on first use, or on this thread.
  void submit(std::unique_ptr<EntryChunkParser> parsed, bool inWorker);
  // A parser whose piece is not to be stored.
  void giveBack(std::unique_ptr<EntryChunkParser> unused);

  // Safe to call from any thread.
  size_t entries() const { return entries_.load(std::memory_order_relaxed); }
  // What the parsers and the stored entries hold, and what the queued pieces will add.
  size_t heldBytes() const;
  size_t parserBytes() const { return parserBytes_.load(std::memory_order_relaxed); }
  // True once the system refused memory while storing; later pieces are dropped.
  bool failed() const { return failed_.load(std::memory_order_relaxed); }

  // Waits until every submitted piece is stored, then hands over the entries.
  EntryList finish();
  // Drops the queued pieces and the stored entries, freeing their memory; nothing may follow.
  void abandon() noexcept;

 private:
  // Parsing runs ahead of storing by a few pieces at most, so memory stays bounded.
  static constexpr size_t kMaxQueued = 4;
  // One being parsed, the queued ones and one being stored.
  static constexpr size_t kMaxParsers = kMaxQueued + 2;

  void store(EntryChunkParser& parsed);  // on whichever thread owns the builder at the time
  void recycle(std::unique_ptr<EntryChunkParser> parsed);  // with the mutex held
  void startThread();
  void run();  // the worker thread's loop
  void stop();

  const size_t keepParserBytes_;
  EntryListBuilder builder_;
  std::atomic<size_t> entries_{0};
  std::atomic<size_t> parserBytes_{0};
  std::atomic<size_t> listBytes_{0};
  std::atomic<size_t> pendingBytes_{0};
  std::atomic<bool> failed_{false};
  std::atomic<bool> discarding_{false};

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<EntryChunkParser>> queue_;
  std::vector<std::unique_ptr<EntryChunkParser>> free_;
  size_t parsers_ = 0;  // in use, queued or free
  bool closing_ = false;
  std::thread thread_;
};

}  // namespace kavor
