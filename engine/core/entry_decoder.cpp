#include "engine/core/entry_decoder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "engine/core/entry_chunk_parser.h"
#include "engine/core/entry_list_builder.h"
#include "engine/core/json_array_scanner.h"

namespace kavor {

namespace {
constexpr size_t kPadding = EntryChunkParser::kPadding;
constexpr size_t kPieceSize = size_t{512} << 10;  // parse once this much is ready
constexpr size_t kFirstBuffer = size_t{2} << 20;
constexpr size_t npos = JsonArrayScanner::npos;
}  // namespace

struct EntryDecoder::Impl {
  std::unique_ptr<char[]> buf;
  size_t cap = 0;  // usable bytes; kPadding more are allocated
  size_t end = 0;  // bytes held
  size_t pieceStart = npos;  // first byte of the next piece, just after a "[" or a ","
  JsonArrayScanner scanner;
  EntryChunkParser parser;
  EntryListBuilder builder;
  std::optional<Error> error;

  void makeRoom(size_t atLeast);
  void advance(bool final);
  void parsePiece(size_t open, size_t close, bool endsAtComma);
};

void EntryDecoder::Impl::makeRoom(size_t atLeast) {
  // Drop what is parsed; keep the separator before the next piece, which becomes its "[".
  size_t keepFrom = pieceStart != npos ? pieceStart - 1 : scanner.scanned();
  keepFrom = std::min(keepFrom, end);
  if (keepFrom > 0 && cap - end < atLeast) {
    std::memmove(buf.get(), buf.get() + keepFrom, end - keepFrom);
    end -= keepFrom;
    scanner.shift(keepFrom);
    if (pieceStart != npos) pieceStart -= keepFrom;
  }
  if (cap - end >= atLeast) return;
  // A piece larger than the buffer (one huge entry): grow.
  const size_t newCap = std::max({kFirstBuffer, cap * 2, end + atLeast});
  auto grown = std::make_unique<char[]>(newCap + kPadding);
  if (end) std::memcpy(grown.get(), buf.get(), end);
  buf = std::move(grown);
  cap = newCap;
}

void EntryDecoder::Impl::parsePiece(size_t open, size_t close, bool endsAtComma) {
  const bool afterComma = buf[open] == ',';
  const size_t length = close - open + 1;
  if (length > std::numeric_limits<uint32_t>::max()) {
    error = Error{ErrorKind::tooLarge, "an entry of the output is larger than 4 GiB"};
    return;
  }
  buf[open] = '[';
  buf[close] = ']';
  Expected<size_t> n = parser.parse(buf.get() + open, length, builder);
  if (!n) {
    error = n.error();
  } else if (*n == 0 && (afterComma || endsAtComma)) {
    error = Error{ErrorKind::parse, "the output is not valid JSON: an element is missing"};
  }
}

void EntryDecoder::Impl::advance(bool final) {
  if (error) return;
  scanner.scan(buf.get(), end, final);
  if (scanner.state() == JsonArrayScanner::State::failed) {
    error = Error{ErrorKind::parse, scanner.failure()};
    return;
  }
  if (scanner.state() == JsonArrayScanner::State::beforeArray) return;
  if (pieceStart == npos) pieceStart = scanner.arrayOpen() + 1;
  const size_t sep = scanner.lastSeparator();
  if (sep != npos && sep >= pieceStart && (final || sep - pieceStart >= kPieceSize)) {
    parsePiece(pieceStart - 1, sep, true);
    pieceStart = sep + 1;
  }
  if (final && !error) parsePiece(pieceStart - 1, scanner.arrayClose(), false);
}

EntryDecoder::EntryDecoder() : impl_(std::make_unique<Impl>()) {}
EntryDecoder::~EntryDecoder() = default;

std::span<char> EntryDecoder::prepare(size_t atLeast) {
  impl_->makeRoom(std::max<size_t>(atLeast, 1));
  return {impl_->buf.get() + impl_->end, impl_->cap - impl_->end};
}

void EntryDecoder::commit(size_t count) {
  impl_->end += count;
  bytesSeen_ += count;
  impl_->advance(false);
  // Nothing more will be parsed once the output is known to be bad: forget what is held.
  if (impl_->error) {
    impl_->end = 0;
    impl_->pieceStart = npos;
  }
}

void EntryDecoder::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::span<char> room = prepare(std::min(bytes.size(), kFirstBuffer));
    const size_t n = std::min(room.size(), bytes.size());
    std::memcpy(room.data(), bytes.data(), n);
    commit(n);
    bytes.remove_prefix(n);
  }
}

Expected<EntryList> EntryDecoder::finish() {
  impl_->advance(true);
  if (impl_->error) return *impl_->error;
  return impl_->builder.finish();
}

size_t EntryDecoder::entriesDecoded() const { return impl_->builder.size(); }

Expected<EntryList> decodeEntries(std::string_view bytes) {
  EntryDecoder decoder;
  decoder.feed(bytes);
  return decoder.finish();
}

}  // namespace kavor
