#pragma once
// Large zero-filled blocks of memory straight from the operating system, paid for page by page
// only when first touched. (Huge pages were tried: their faults stalled for long and uneven
// times, so plain pages it is.)

#include <cstddef>

namespace kavor {

class MemoryBlock {
 public:
  MemoryBlock() = default;
  // Throws std::bad_alloc when the system refuses the memory, as new does.
  explicit MemoryBlock(size_t bytes);
  ~MemoryBlock();
  MemoryBlock(MemoryBlock&& other) noexcept;
  MemoryBlock& operator=(MemoryBlock&& other) noexcept;
  MemoryBlock(const MemoryBlock&) = delete;
  MemoryBlock& operator=(const MemoryBlock&) = delete;

  char* data() const { return data_; }
  size_t size() const { return size_; }

 private:
  void release();
  char* data_ = nullptr;
  size_t size_ = 0;
};

}  // namespace kavor
