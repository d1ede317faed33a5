// The log tool's output, fed whole and fed in small bites cut into small pieces, must decode to
// the same entries or fail both ways, also within a small memory budget unless it is refused as
// too large; and nothing may crash or leak.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "engine/core/entry_decoder.h"

namespace {

std::string describe(const kavor::Expected<kavor::EntryList>& list) {
  if (!list) return "error";
  std::string out;
  for (size_t i = 0; i < list->size(); ++i) {
    out += list->isRecord(i) ? "{" : "-";
    for (int k = 0; k < kavor::kEntryKeyCount; ++k) {
      const kavor::FieldValue v = list->value(i, static_cast<kavor::EntryKey>(k));
      if (!v.present()) continue;
      out += std::to_string(k) + ":" + std::to_string(static_cast<int>(v.kind())) + "=" +
             v.plainText() + ";";
    }
    out += "}\n";
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  // The first byte chooses how the rest is fed.
  const size_t piece = 1 + data[0] % 61;
  const size_t bite = 1 + data[0] / 4;
  const bool worker = (data[0] & 1) != 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);

  const std::string whole = describe(kavor::decodeEntries(text));
  kavor::EntryDecoder decoder(kavor::EntryDecoder::Options{piece, worker});
  for (size_t at = 0; at < text.size(); at += bite)
    decoder.feed(text.substr(at, bite));
  const std::string split = describe(decoder.finish());
  if (whole != split) std::abort();

  // A budget that lets one entry take about data[0] bytes, so that these small inputs pass it
  // often: it may refuse the output, never change it, and a refusal says so.
  const size_t budget = (size_t{16} << 10) + size_t{data[0]} * 16;
  kavor::EntryDecoder limited(kavor::EntryDecoder::Options{piece, worker, budget});
  for (size_t at = 0; at < text.size(); at += bite)
    limited.feed(text.substr(at, bite));
  const auto bounded = limited.finish();
  if (bounded.ok() ? describe(bounded) != whole
                   : bounded.error().kind != kavor::ErrorKind::tooLarge && whole != "error")
    std::abort();
  return 0;
}
