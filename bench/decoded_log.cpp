#include "bench/decoded_log.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "bench/synthetic_log.h"
#include "engine/core/entry_decoder.h"

namespace kavor::bench {

const std::string& syntheticOutput(size_t entries) {
  static std::map<size_t, std::string> cache;
  auto it = cache.find(entries);
  if (it == cache.end()) it = cache.emplace(entries, syntheticLog(entries)).first;
  return it->second;
}

const EntryList& decodedSyntheticLog(size_t entries) {
  static std::map<size_t, EntryList> cache;
  auto it = cache.find(entries);
  if (it == cache.end()) {
    Expected<EntryList> list = decodeEntries(syntheticOutput(entries));
    if (!list) {
      std::fprintf(stderr, "synthetic log does not decode: %s\n", list.error().message().c_str());
      std::exit(1);
    }
    it = cache.emplace(entries, std::move(*list)).first;
  }
  return it->second;
}

}  // namespace kavor::bench
