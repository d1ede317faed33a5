#pragma once
// Large zero-filled blocks of memory straight from the operating system. Pages are only paid for
// when first touched; blocks of 2 MiB and more ask for huge pages, which makes filling hundreds
// of megabytes far cheaper than with 4 KiB pages.

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
  void* mapping_ = nullptr;
  size_t mappingSize_ = 0;
};

}  // namespace kavor
