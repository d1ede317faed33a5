#pragma once
// The main window's query form as options: what query prints and get runs.

#include <optional>
#include <span>

#include "cli/arguments.h"
#include "engine/core/date_format.h"
#include "engine/query/log_query.h"

namespace kavor::cli {

// --period, --unit, --base, the predicate options, --archive, --file, --source, --no-info,
// --no-signposts, --debug and --os-version.
std::span<const OptionSpec> queryOptions();

// The form the options describe, with the period read as the field reads it (a note on standard
// error when the field would show something else). When the options are not usable the problem
// has been reported and exitStatus holds the status to exit with.
std::optional<QueryInput> queryInputFrom(const Arguments& args, const DateFormatter& formatter,
                                         int& exitStatus);

}  // namespace kavor::cli
