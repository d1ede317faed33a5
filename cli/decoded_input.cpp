#include "cli/decoded_input.h"

#include "engine/query/log_file.h"
#include "platform/file_reader.h"

namespace kavor::cli {

Expected<EntryList> decodeInput(const Arguments& args) {
  const std::string_view operand = args.operands.empty() ? "-" : args.operands.front();
  auto input = operand == "-" ? Expected<FileReader>(FileReader::standardInput())
                              : FileReader::open(std::string(operand));
  if (!input) return input.error();
  // Within the fetch memory budget (the decoder's own default), as a fetch is.
  return decodeLogFile(*input);
}

}  // namespace kavor::cli
