#include "platform/memory_block.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>
#include <utility>

namespace kavor {

namespace {
constexpr size_t kHugePage = size_t{2} << 20;
}

MemoryBlock::MemoryBlock(size_t bytes) : size_(bytes) {
  if (bytes == 0) return;
  // Over-map by one huge page so that the block can start on a huge-page boundary.
  const bool huge = bytes >= kHugePage;
  mappingSize_ = huge ? bytes + kHugePage : bytes;
  void* p = mmap(nullptr, mappingSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) throw std::bad_alloc();
  mapping_ = p;
  auto addr = reinterpret_cast<uintptr_t>(p);
  if (huge) addr = (addr + kHugePage - 1) & ~(kHugePage - 1);
  data_ = reinterpret_cast<char*>(addr);
#ifdef MADV_HUGEPAGE
  if (huge) madvise(data_, bytes, MADV_HUGEPAGE);
#endif
}

MemoryBlock::~MemoryBlock() { release(); }

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      mapping_(std::exchange(other.mapping_, nullptr)),
      mappingSize_(std::exchange(other.mappingSize_, 0)) {}

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept {
  if (this != &other) {
    release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
    mapping_ = std::exchange(other.mapping_, nullptr);
    mappingSize_ = std::exchange(other.mappingSize_, 0);
  }
  return *this;
}

void MemoryBlock::release() {
  if (mapping_) munmap(mapping_, mappingSize_);
  mapping_ = nullptr;
  data_ = nullptr;
  size_ = mappingSize_ = 0;
}

}  // namespace kavor
