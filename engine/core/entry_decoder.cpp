#include "engine/core/entry_decoder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

#include "engine/core/entry_piece_worker.h"
#include "engine/core/json_array_scanner.h"

namespace kavor {

namespace {
constexpr size_t kBufferSize = size_t{2} << 20;
constexpr size_t kSmallestBuffer = size_t{4} << 10;
// simdjson addresses a document with 32-bit offsets.
constexpr size_t kLargestPiece = std::numeric_limits<uint32_t>::max();
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

// The largest piece whose bytes and parse fit in the budget together.
size_t largestPieceFor(size_t budget) {
  const size_t room =
      budget > EntryChunkParser::kMemoryFixed ? budget - EntryChunkParser::kMemoryFixed : 0;
  return std::min(kLargestPiece, room / (1 + EntryChunkParser::kMemoryPerByte));
}

}  // namespace

struct EntryDecoder::Impl {
  explicit Impl(Options o)
      : options(o),
        entryLimit(largestPieceFor(o.memoryBudget)),
        firstBuffer(std::clamp(o.memoryBudget / 16, kSmallestBuffer, kBufferSize)),
        cutSize(std::max<size_t>(1, std::min(o.pieceSize, firstBuffer / 4))),
        worker(EntryChunkParser::memoryFor(2 * firstBuffer)) {}

  const Options options;
  const size_t entryLimit;   // a piece past this is refused as soon as it arrives
  const size_t firstBuffer;  // the buffer's size until one piece needs more
  const size_t cutSize;      // cut once this much of the output is ready
  std::unique_ptr<char[]> buffer;
  size_t capacity = 0;       // usable bytes; EntryChunkParser::kPadding more are allocated
  size_t end = 0;            // bytes held in the buffer
  size_t pieceStart = npos;  // first byte of the next piece, just after a "[" or a ","
  // Cut at "\n}," while that works; else track strings and brackets byte by byte.
  bool prettyCuts = true;
  size_t elementsParsed = 0;  // in the pieces parsed so far, for messages
  JsonArrayScanner scanner;
  std::optional<Error> error;
  bool released = false;
  EntryPieceWorker worker;
  // Where the bytes go once the output is known not to decode: nothing is allocated for them.
  char scrap[16 << 10];

  size_t held() const {
    return (buffer ? capacity + EntryChunkParser::kPadding : 0) + worker.heldBytes();
  }
  // What is held, and `more` bytes besides, within the budget.
  bool fits(size_t more) const {
    const size_t h = held();
    return h <= options.memoryBudget && more <= options.memoryBudget - h;
  }
  Error overBudget() const;
  // Runs a step; the system refusing memory on the way ends the decoding like any other error,
  // after which whatever is held is let go.
  template <class Step>
  void guarded(Step step);
  void release() noexcept;

  void makeRoom(size_t atLeast);
  void dropBefore(size_t offset);
  void advance(bool final);
  void checkBudget();
  bool cutAtPrettySeparator();
  void cutWithScanner(bool final);
  bool parsePiece(size_t open, size_t close, bool endsAtComma, bool guessed);
  std::string pieceLocation(size_t open, size_t close) const;
};

Error EntryDecoder::Impl::overBudget() const {
  return outputTooLargeError("it needs more than the " + byteCountText(options.memoryBudget) +
                             " of memory set aside for it");
}

template <class Step>
void EntryDecoder::Impl::guarded(Step step) {
  bool refused = false;
  try {
    if (!error) step();
  } catch (const std::bad_alloc&) {
    refused = true;
  }
  if (refused || error) release();
  // Only now, with the memory given back, is there room for the message.
  if (refused) error = memoryRefusedError();
}

void EntryDecoder::Impl::release() noexcept {
  if (released) return;
  released = true;
  end = 0;
  pieceStart = npos;
  buffer.reset();
  capacity = 0;
  worker.abandon();
}

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
  // Only a piece larger than the buffer (one huge entry) makes it grow, never far past what one
  // entry may take, and the old buffer is still held while the bytes move.
  const size_t needed = end + atLeast;
  if (!fits(needed + EntryChunkParser::kPadding)) {
    error = overBudget();
    return;
  }
  const size_t room = options.memoryBudget - held() - EntryChunkParser::kPadding;
  const size_t ceiling = std::max(needed, std::min(room, entryLimit + atLeast));
  const size_t grown = std::clamp(std::max(firstBuffer, capacity * 2), needed, ceiling);
  auto next = std::make_unique_for_overwrite<char[]>(grown + EntryChunkParser::kPadding);
  if (end) std::memcpy(next.get(), buffer.get(), end);
  buffer = std::move(next);
  capacity = grown;
}

// Where a piece that does not parse lies in the output, for a person to look: its bytes,
// counted from 1, and the last element before it.
std::string EntryDecoder::Impl::pieceLocation(size_t open, size_t close) const {
  const uint64_t from = scanner.shifted() + open + 2;
  const uint64_t to = scanner.shifted() + close + 1;
  std::string text = " in bytes " + std::to_string(from) + " to " + std::to_string(to);
  if (elementsParsed) text += ", after entry " + std::to_string(elementsParsed);
  return text;
}

// Parses the elements between buffer[open] ("[" or ",") and buffer[close] ("," or "]") here and
// hands them to the worker to store. A guessed cut that does not parse is no error: the caller
// then looks for the cut the slow way.
bool EntryDecoder::Impl::parsePiece(size_t open, size_t close, bool endsAtComma, bool guessed) {
  const char openByte = buffer[open];
  const char closeByte = buffer[close];
  const size_t length = close - open + 1;
  const size_t need = EntryChunkParser::memoryFor(length);
  // Parsing runs ahead of storing with more parsers only while they take a small share of the
  // budget; the rest is for the entries.
  const bool another = fits(need) && worker.parserBytes() + need <= options.memoryBudget / 4;
  std::unique_ptr<EntryChunkParser> parser = worker.takeParser(another);
  const size_t before = parser->memoryBytes();
  if (length > kLargestPiece || !fits(need > before ? need - before : 0)) {
    worker.giveBack(std::move(parser));
    error = overBudget();
    return false;
  }
  buffer[open] = '[';
  buffer[close] = ']';
  Expected<size_t> n = parser->parse(buffer.get() + open, length);
  worker.parserGrew(parser->memoryBytes() - before);
  // The parser keeps copies of what it needs. The bytes go back as they were: the scanner may
  // not have reached the separator yet, and must see a comma there, not a bracket.
  buffer[open] = openByte;
  buffer[close] = closeByte;
  if (n && (*n > 0 || !(openByte == ',' || endsAtComma))) {
    elementsParsed += *n;
    worker.submit(std::move(parser), options.storeInWorker);
    return true;
  }
  worker.giveBack(std::move(parser));
  // A guess may be wrong, but no cut makes the memory the system refused appear.
  if (!guessed || (!n && n.error().kind == ErrorKind::tooLarge)) {
    error = n ? Error{ErrorKind::parse, "the output is not valid JSON: an element is missing"}
              : n.error();
    if (error->kind == ErrorKind::parse) error->context += pieceLocation(open, close);
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
  if (sep == npos || sep < pieceStart || sep - pieceStart < cutSize) return;
  if (!parsePiece(pieceStart - 1, sep, true, false)) return;
  pieceStart = sep + 1;
  dropBefore(sep);
}

void EntryDecoder::Impl::advance(bool final) {
  if (pieceStart == npos) {
    scanner.scan(buffer.get(), end, final);
    if (scanner.state() == JsonArrayScanner::State::failed) {
      error = Error{ErrorKind::parse, scanner.failure()};
      return;
    }
    if (scanner.state() == JsonArrayScanner::State::beforeArray) return;
    pieceStart = scanner.arrayOpen() + 1;
  }
  const bool pieceReady = end - pieceStart >= cutSize;
  if (prettyCuts && (final || pieceReady)) {
    if (!final && cutAtPrettySeparator()) return;
    if (error) return;
    // From here on, or for the end of the array, every byte is looked at.
    prettyCuts = false;
    scanner.resumeAt(pieceStart);
  }
  if (!prettyCuts) cutWithScanner(final);
}

// The entries stored so far grow on the worker's thread, and the piece being read here: either
// may pass what it may take.
void EntryDecoder::Impl::checkBudget() {
  const size_t piece = pieceStart == npos ? end : end - (pieceStart - 1);
  if (worker.failed()) {
    error = memoryRefusedError();
  } else if (piece > entryLimit) {
    error = outputTooLargeError("an entry passes " + byteCountText(entryLimit) +
                                ", the most one entry may take of the " +
                                byteCountText(options.memoryBudget) + " of memory set aside");
  } else if (!fits(0)) {
    error = overBudget();
  }
}

EntryDecoder::EntryDecoder() : EntryDecoder(Options{}) {}
EntryDecoder::EntryDecoder(Options options) : impl_(std::make_unique<Impl>(options)) {}
EntryDecoder::~EntryDecoder() = default;

std::span<char> EntryDecoder::prepare(size_t atLeast) {
  Impl& d = *impl_;
  d.guarded([&] { d.makeRoom(std::max<size_t>(atLeast, 1)); });
  if (d.error) return d.scrap;
  return {d.buffer.get() + d.end, d.capacity - d.end};
}

void EntryDecoder::commit(size_t count) {
  bytesSeen_ += count;
  Impl& d = *impl_;
  d.guarded([&] {
    d.end += count;
    d.advance(false);
    if (!d.error) d.checkBudget();
  });
}

void EntryDecoder::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::span<char> room = prepare(std::min(bytes.size(), impl_->firstBuffer / 4));
    const size_t n = std::min(room.size(), bytes.size());
    std::memcpy(room.data(), bytes.data(), n);
    commit(n);
    bytes.remove_prefix(n);
  }
}

Expected<EntryList> EntryDecoder::finish() {
  Impl& d = *impl_;
  std::optional<EntryList> list;
  d.guarded([&] {
    if (!d.buffer) d.makeRoom(1);
    if (!d.error) d.advance(true);
    if (!d.error) list = d.worker.finish();
    if (!d.error && d.worker.failed()) d.error = memoryRefusedError();
  });
  if (d.error) return *d.error;
  return std::move(*list);
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
