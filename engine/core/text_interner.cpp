#include "engine/core/text_interner.h"

#include <cstring>

namespace kavor {

namespace {

uint64_t hashText(std::string_view text) {
  const char* p = text.data();
  size_t n = text.size();
  uint64_t h = 0x9E3779B97F4A7C15ull ^ (n * 0xFF51AFD7ED558CCDull);
  while (n >= 8) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    h = (h ^ w) * 0xBF58476D1CE4E5B9ull;
    h ^= h >> 29;
    p += 8;
    n -= 8;
  }
  if (n) {
    uint64_t w = 0;
    std::memcpy(&w, p, n);
    h = (h ^ w) * 0x94D049BB133111EBull;
  }
  h ^= h >> 32;
  h *= 0xD6E8FEB86659FD93ull;
  return h ^ (h >> 32);
}

}  // namespace

void TextInterner::grow() {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(old.empty() ? 1024 : old.size() * 2, Slot{0, 0});
  const size_t mask = slots_.size() - 1;
  for (const Slot& s : old) {
    if (!s.ref) continue;
    size_t i = s.hash & mask;
    while (slots_[i].ref)
      i = (i + 1) & mask;
    slots_[i] = s;
  }
}

uint64_t TextInterner::intern(std::string_view text) {
  if (2 * (count_ + 1) > slots_.size()) grow();
  const uint64_t h = hashText(text);
  const size_t mask = slots_.size() - 1;
  for (size_t i = h & mask;; i = (i + 1) & mask) {
    Slot& s = slots_[i];
    if (!s.ref) {
      s.hash = h;
      s.ref = arena_->addText(text);
      ++count_;
      return s.ref;
    }
    if (s.hash == h && arena_->text(s.ref) == text) return s.ref;
  }
}

}  // namespace kavor
