#pragma once
// The log tool's JSON output that a command reads: from its FILE operand, or from standard input
// when there is none or it is "-".

#include "cli/arguments.h"
#include "engine/core/entry_list.h"
#include "platform/expected.h"

namespace kavor::cli {

// The message of a failure names the input.
Expected<EntryList> decodeInput(const Arguments& args);

}  // namespace kavor::cli
