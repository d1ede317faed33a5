#include "platform/memory_block.h"

#include <sys/mman.h>

#include <new>
#include <utility>

namespace kavor {

MemoryBlock::MemoryBlock(size_t bytes) : size_(bytes) {
  if (bytes == 0) return;
  void* p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) throw std::bad_alloc();
  data_ = static_cast<char*>(p);
}

MemoryBlock::~MemoryBlock() {
  release();
}

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept {
  if (this != &other) {
    release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
  }
  return *this;
}

void MemoryBlock::release() {
  if (data_) munmap(data_, size_);
  data_ = nullptr;
  size_ = 0;
}

}  // namespace kavor
