#include "engine/core/entry_piece_worker.h"

#include <new>
#include <system_error>

namespace kavor {

EntryPieceWorker::~EntryPieceWorker() {
  stop();
}

void EntryPieceWorker::stop() {
  {
    std::lock_guard lock(mutex_);
    closing_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

size_t EntryPieceWorker::heldBytes() const {
  return parserBytes_.load(std::memory_order_relaxed) + listBytes_.load(std::memory_order_relaxed) +
         pendingBytes_.load(std::memory_order_relaxed);
}

void EntryPieceWorker::store(EntryChunkParser& parsed) {
  if (!failed() && !discarding_.load(std::memory_order_relaxed)) {
    // On the worker thread nobody could catch it: the process would end.
    try {
      parsed.store(builder_);
      entries_.store(builder_.size(), std::memory_order_relaxed);
      listBytes_.store(builder_.memoryBytes(), std::memory_order_relaxed);
    } catch (const std::bad_alloc&) {
      failed_.store(true, std::memory_order_relaxed);
    }
  }
  pendingBytes_.fetch_sub(parsed.storedBytesEstimate(), std::memory_order_relaxed);
}

void EntryPieceWorker::recycle(std::unique_ptr<EntryChunkParser> parsed) {
  if (parsed->memoryBytes() > keepParserBytes_ || free_.size() == free_.capacity()) {
    parserBytes_.fetch_sub(parsed->memoryBytes(), std::memory_order_relaxed);
    --parsers_;
    return;
  }
  free_.push_back(std::move(parsed));
}

void EntryPieceWorker::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !queue_.empty() || closing_; });
    if (queue_.empty()) return;  // closing, and everything is stored
    std::unique_ptr<EntryChunkParser> parsed = std::move(queue_.front());
    queue_.pop_front();
    lock.unlock();
    store(*parsed);
    lock.lock();
    recycle(std::move(parsed));
    changed_.notify_all();
  }
}

std::unique_ptr<EntryChunkParser> EntryPieceWorker::takeParser(bool mayCreate) {
  {
    std::unique_lock lock(mutex_);
    // Reserved here, where a refusal is caught, so that recycling never allocates.
    if (free_.capacity() == 0) free_.reserve(kMaxParsers);
    changed_.wait(lock, [&] { return !free_.empty() || mayCreate || parsers_ == 0; });
    if (!free_.empty()) {
      std::unique_ptr<EntryChunkParser> p = std::move(free_.back());
      free_.pop_back();
      return p;
    }
  }
  auto created = std::make_unique<EntryChunkParser>();
  std::lock_guard lock(mutex_);
  ++parsers_;
  return created;
}

void EntryPieceWorker::startThread() {
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // No thread to be had: the pieces are stored on the caller's thread instead.
  }
}

void EntryPieceWorker::submit(std::unique_ptr<EntryChunkParser> parsed, bool inWorker) {
  pendingBytes_.fetch_add(parsed->storedBytesEstimate(), std::memory_order_relaxed);
  if (inWorker && !thread_.joinable()) startThread();
  if (!thread_.joinable()) {
    store(*parsed);
    std::lock_guard lock(mutex_);
    recycle(std::move(parsed));
    return;
  }
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return queue_.size() < kMaxQueued; });
  queue_.push_back(std::move(parsed));
  lock.unlock();
  changed_.notify_all();
}

void EntryPieceWorker::giveBack(std::unique_ptr<EntryChunkParser> unused) {
  std::lock_guard lock(mutex_);
  recycle(std::move(unused));
}

EntryList EntryPieceWorker::finish() {
  stop();  // the worker stores what is queued before it ends
  return builder_.finish();
}

void EntryPieceWorker::abandon() noexcept {
  discarding_.store(true, std::memory_order_relaxed);
  stop();
  builder_.discard();
  free_.clear();
  parsers_ = 0;
  entries_.store(0, std::memory_order_relaxed);
  parserBytes_.store(0, std::memory_order_relaxed);
  listBytes_.store(0, std::memory_order_relaxed);
  pendingBytes_.store(0, std::memory_order_relaxed);
}

}  // namespace kavor
