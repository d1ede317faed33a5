#include "engine/document/document_saving.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

TEST(DocumentSavingTest, TrailerNamesTheTimeAndTheWholeCommand) {
  EXPECT_EQ(saveTrailer("2020-05-01 10:00:03",
                        {"show", "--predicate", "eventMessage CONTAINS[c] \"error\"", "--style",
                         "json", "--info", "--signpost", "--start", "2020-05-01 09:40:00", "--end",
                         "2020-05-01 10:00:00"}),
            "\nAt 2020-05-01 10:00:03 for command log show --predicate eventMessage CONTAINS[c] "
            "\"error\" --style json --info --signpost --start 2020-05-01 09:40:00 --end "
            "2020-05-01 10:00:00");
  // A window that never fetched; empty arguments keep their places.
  EXPECT_EQ(saveTrailer("", {""}), "\nAt  for command log ");
  EXPECT_EQ(saveTrailer("now", {"a", "", "b"}), "\nAt now for command log a  b");
  // Entries read from a file name it, whatever command the window ran before.
  EXPECT_EQ(saveTrailer("now", {"show"}, "/home/me/a log.json"),
            "\nAt now from /home/me/a log.json");
}

}  // namespace
}  // namespace kavor
