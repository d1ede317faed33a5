#include "cli/decoded_input.h"

#include "cli/input_file.h"
#include "engine/core/entry_decoder.h"

namespace kavor::cli {

Expected<EntryList> decodeInput(const Arguments& args) {
  auto input = InputFile::open(args.operands.empty() ? "-" : args.operands.front());
  if (!input) return input.error();
  // Within the fetch memory budget (the decoder's own default), as a fetch is.
  EntryDecoder decoder;
  // Once the output is known not to decode, the rest is not read: it may never end.
  while (!decoder.failed()) {
    const auto n = input->read(decoder.prepare());
    if (!n) return n.error();
    if (*n == 0) break;
    decoder.commit(*n);
  }
  auto list = decoder.finish();
  if (!list) return Error{list.error().kind, input->name() + ": " + list.error().message(), 0};
  return list;
}

}  // namespace kavor::cli
