#include "engine/core/json_array_scanner.h"

#include <cstring>

namespace kavor {

namespace {

inline bool isJsonSpace(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

}  // namespace

JsonArrayScanner::JsonArrayScanner()
    : kernel_(haveAvx2Kernel() ? scanBlocksAvx2 : scanBlocksBaseline) {}

void JsonArrayScanner::fail(std::string why) {
  state_ = State::failed;
  failure_ = std::move(why);
}

void JsonArrayScanner::failAt(std::string why, size_t at) {
  fail(std::move(why) + " at byte " + std::to_string(shifted_ + at + 1));
}

void JsonArrayScanner::scanPrologue(const char* buf, size_t end) {
  while (scanned_ < end && isJsonSpace(buf[scanned_]))
    ++scanned_;
  if (scanned_ == end) return;
  if (buf[scanned_] != '[') return failAt("the output is not a JSON array", scanned_);
  open_ = scanned_++;
  blocks_.depth = 1;
  state_ = State::inArray;
}

void JsonArrayScanner::scanEpilogue(const char* buf, size_t end) {
  for (; scanned_ < end; ++scanned_) {
    if (!isJsonSpace(buf[scanned_]))
      return failAt("text follows the end of the JSON array", scanned_);
  }
}

void JsonArrayScanner::scan(const char* buf, size_t end, bool final) {
  if (state_ == State::beforeArray) scanPrologue(buf, end);
  while (state_ == State::inArray && scanned_ < end) {
    const size_t left = end - scanned_;
    if (left >= 64) {
      scanned_ += kernel_(buf + scanned_, left, scanned_, blocks_);
    } else if (final) {
      // The last piece: padded with spaces, which change no state.
      char tail[64];
      std::memset(tail, ' ', sizeof tail);
      std::memcpy(tail, buf + scanned_, left);
      kernel_(tail, sizeof tail, scanned_, blocks_);
      scanned_ = end;
    } else {
      return;
    }
    if (blocks_.close != npos) {
      if (blocks_.badClose) return failAt("the JSON array is closed by \"}\"", blocks_.close);
      state_ = State::afterArray;
      scanned_ = blocks_.close + 1;
    }
  }
  if (state_ == State::afterArray) scanEpilogue(buf, end);
  if (final && state_ == State::beforeArray) fail("the output is empty");
  if (final && state_ == State::inArray)
    fail("the JSON array is not closed: the output was cut short after byte " +
         std::to_string(shifted_ + end));
}

size_t JsonArrayScanner::lastSeparator(const char* buf, size_t end) const {
  if (blocks_.lastElementEnd == npos) return npos;
  size_t i = blocks_.lastElementEnd + 1;
  while (i < end && isJsonSpace(buf[i]))
    ++i;
  return i < end && buf[i] == ',' ? i : npos;
}

void JsonArrayScanner::resumeAt(size_t position) {
  blocks_ = JsonScanState{};
  blocks_.depth = 1;
  scanned_ = position;
  state_ = State::inArray;
}

void JsonArrayScanner::shift(size_t count) {
  shifted_ += count;
  scanned_ = scanned_ >= count ? scanned_ - count : 0;
  auto move = [count](size_t& pos) {
    if (pos != npos) pos = pos >= count ? pos - count : npos;
  };
  move(open_);
  move(blocks_.close);
  move(blocks_.lastElementEnd);
}

}  // namespace kavor
