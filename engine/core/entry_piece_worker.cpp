#include "engine/core/entry_piece_worker.h"

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

void EntryPieceWorker::store(EntryChunkParser& parsed) {
  parsed.store(builder_);
  entries_.store(builder_.size(), std::memory_order_relaxed);
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
    free_.push_back(std::move(parsed));
    changed_.notify_all();
  }
}

std::unique_ptr<EntryChunkParser> EntryPieceWorker::takeParser() {
  {
    std::lock_guard lock(mutex_);
    if (!free_.empty()) {
      std::unique_ptr<EntryChunkParser> p = std::move(free_.back());
      free_.pop_back();
      return p;
    }
  }
  return std::make_unique<EntryChunkParser>();
}

void EntryPieceWorker::submit(std::unique_ptr<EntryChunkParser> parsed, bool inWorker) {
  if (!inWorker && !thread_.joinable()) {
    store(*parsed);
    std::lock_guard lock(mutex_);
    free_.push_back(std::move(parsed));
    return;
  }
  std::unique_lock lock(mutex_);
  if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  changed_.wait(lock, [this] { return queue_.size() < kMaxQueued; });
  queue_.push_back(std::move(parsed));
  lock.unlock();
  changed_.notify_all();
}

EntryList EntryPieceWorker::finish() {
  stop();  // the worker stores what is queued before it ends
  return builder_.finish();
}

}  // namespace kavor
