#include <gtest/gtest.h>

#include "engine/core/entry_list.h"

TEST(EntryListPlaceholder, StartsEmpty) { EXPECT_TRUE(kavor::EntryList().empty()); }
