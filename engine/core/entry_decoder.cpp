#include "engine/core/entry_decoder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "engine/core/entry_piece_worker.h"
#include "engine/core/json_array_scanner.h"

namespace kavor {

namespace {
constexpr size_t kBufferSize = size_t{2} << 20;
constexpr size_t npos = JsonArrayScanner::npos;

// The last "\n}," of buf[from, end): in the tool's pretty-printed output that closes an element
// of the array. A newline cannot stand inside a JSON string, but a nested object might end the
// same way in other output, so a cut found here is only a guess until its piece parses.
size_t lastPrettySeparator(const char* buf, size_t from, size_t end) {
  for (size_t i = end; i >= from + 3; --i) {
    if (buf[i - 1] == ',' && buf[i - 2] == '}' && buf[i - 3] == '\n') return i - 1;
  }
  return npos;
}

}  // namespace

struct EntryDecoder::Impl {
  explicit Impl(Options o) : options(o) {}

  Options options;
  std::unique_ptr<char[]> buffer;
  size_t capacity = 0;       // usable bytes; EntryChunkParser::kPadding more are allocated
  size_t end = 0;            // bytes held in the buffer
  size_t pieceStart = npos;  // first byte of the next piece, just after a "[" or a ","
  // Cut at "\n}," while that works; else track strings and brackets byte by byte.
  bool prettyCuts = true;
  JsonArrayScanner scanner;
  std::optional<Error> error;
  EntryPieceWorker worker;

  void makeRoom(size_t atLeast);
  void dropBefore(size_t offset);
  void advance(bool final);
  bool cutAtPrettySeparator();
  void cutWithScanner(bool final);
  bool parsePiece(size_t open, size_t close, bool endsAtComma, bool guessed);
};

void EntryDecoder::Impl::dropBefore(size_t offset) {
  if (offset == 0) return;
  std::memmove(buffer.get(), buffer.get() + offset, end - offset);
  end -= offset;
  scanner.shift(offset);
  if (pieceStart != npos) pieceStart -= offset;
}

void EntryDecoder::Impl::makeRoom(size_t atLeast) {
  if (capacity - end >= atLeast) return;
  // Keep from the separator before the next piece, which becomes its "[".
  dropBefore(std::min(pieceStart != npos ? pieceStart - 1 : scanner.scanned(), end));
  if (capacity - end >= atLeast) return;
  // Only a piece larger than the buffer (one huge entry) makes it grow.
  const size_t grown = std::max({kBufferSize, capacity * 2, end + atLeast});
  auto next = std::make_unique_for_overwrite<char[]>(grown + EntryChunkParser::kPadding);
  if (end) std::memcpy(next.get(), buffer.get(), end);
  buffer = std::move(next);
  capacity = grown;
}

// Parses the elements between buffer[open] ("[" or ",") and buffer[close] ("," or "]") here and
// hands them to the worker to store. A guessed cut that does not parse is no error: the caller
// then looks for the cut the slow way.
bool EntryDecoder::Impl::parsePiece(size_t open, size_t close, bool endsAtComma, bool guessed) {
  const char openByte = buffer[open];
  const char closeByte = buffer[close];
  const size_t length = close - open + 1;
  if (length > std::numeric_limits<uint32_t>::max()) {
    error = Error{ErrorKind::tooLarge, "an entry of the output is larger than 4 GiB"};
    return false;
  }
  buffer[open] = '[';
  buffer[close] = ']';
  std::unique_ptr<EntryChunkParser> parser = worker.takeParser();
  Expected<size_t> n = parser->parse(buffer.get() + open, length);
  // The parser keeps copies of what it needs. The bytes go back as they were: the scanner may
  // not have reached the separator yet, and must see a comma there, not a bracket.
  buffer[open] = openByte;
  buffer[close] = closeByte;
  if (n && (*n > 0 || !(openByte == ',' || endsAtComma))) {
    worker.submit(std::move(parser), options.storeInWorker);
    return true;
  }
  if (!guessed) {
    error = n ? Error{ErrorKind::parse, "the output is not valid JSON: an element is missing"}
              : n.error();
  }
  return false;
}

bool EntryDecoder::Impl::cutAtPrettySeparator() {
  const size_t sep = lastPrettySeparator(buffer.get(), pieceStart, end);
  if (sep == npos || !parsePiece(pieceStart - 1, sep, true, true)) return false;
  // The separator stays as the "[" of the next piece; what follows it is the start of that piece.
  pieceStart = sep + 1;
  dropBefore(sep);
  return true;
}

void EntryDecoder::Impl::cutWithScanner(bool final) {
  scanner.scan(buffer.get(), end, final);
  if (scanner.state() == JsonArrayScanner::State::failed) {
    error = Error{ErrorKind::parse, scanner.failure()};
    return;
  }
  if (final) {
    parsePiece(pieceStart - 1, scanner.arrayClose(), false, false);
    return;
  }
  const size_t sep = scanner.lastSeparator(buffer.get(), end);
  if (sep == npos || sep < pieceStart || sep - pieceStart < options.pieceSize) return;
  if (!parsePiece(pieceStart - 1, sep, true, false)) return;
  pieceStart = sep + 1;
  dropBefore(sep);
}

void EntryDecoder::Impl::advance(bool final) {
  if (error) return;
  if (pieceStart == npos) {
    scanner.scan(buffer.get(), end, final);
    if (scanner.state() == JsonArrayScanner::State::failed) {
      error = Error{ErrorKind::parse, scanner.failure()};
      return;
    }
    if (scanner.state() == JsonArrayScanner::State::beforeArray) return;
    pieceStart = scanner.arrayOpen() + 1;
  }
  const bool pieceReady = end - pieceStart >= options.pieceSize;
  if (prettyCuts && (final || pieceReady)) {
    if (!final && cutAtPrettySeparator()) return;
    // From here on, or for the end of the array, every byte is looked at.
    prettyCuts = false;
    scanner.resumeAt(pieceStart);
  }
  if (!prettyCuts) cutWithScanner(final);
}

EntryDecoder::EntryDecoder() : EntryDecoder(Options{}) {}
EntryDecoder::EntryDecoder(Options options) : impl_(std::make_unique<Impl>(options)) {}
EntryDecoder::~EntryDecoder() = default;

std::span<char> EntryDecoder::prepare(size_t atLeast) {
  impl_->makeRoom(std::max<size_t>(atLeast, 1));
  return {impl_->buffer.get() + impl_->end, impl_->capacity - impl_->end};
}

void EntryDecoder::commit(size_t count) {
  bytesSeen_ += count;
  if (impl_->error) return;
  impl_->end += count;
  impl_->advance(false);
  // Nothing more will be parsed once the output is known to be bad: forget what is held.
  if (impl_->error) {
    impl_->end = 0;
    impl_->pieceStart = npos;
  }
}

void EntryDecoder::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::span<char> room = prepare(std::min(bytes.size(), kBufferSize));
    const size_t n = std::min(room.size(), bytes.size());
    std::memcpy(room.data(), bytes.data(), n);
    commit(n);
    bytes.remove_prefix(n);
  }
}

Expected<EntryList> EntryDecoder::finish() {
  if (!impl_->buffer) impl_->makeRoom(1);
  impl_->advance(true);
  EntryList list = impl_->worker.finish();
  if (impl_->error) return *impl_->error;
  return list;
}

bool EntryDecoder::failed() const {
  return impl_->error.has_value();
}

size_t EntryDecoder::entriesDecoded() const {
  return impl_->worker.entries();
}

Expected<EntryList> decodeEntries(std::string_view bytes) {
  EntryDecoder decoder;
  decoder.feed(bytes);
  return decoder.finish();
}

}  // namespace kavor
