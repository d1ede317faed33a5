#include "engine/core/user_characters.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

TEST(UserCharacters, CountsWhatTheUserSeesAsOneCharacter) {
  UserCharacters chars;
  EXPECT_EQ(chars.count(std::string_view{}), 0u);
  EXPECT_EQ(chars.count("plain"), 5u);
  EXPECT_EQ(chars.count("a\r\nb"), 3u);          // CR LF is one
  EXPECT_EQ(chars.count("e\u0301\u0323x"), 2u);  // a letter with two marks
  EXPECT_EQ(chars.count("👨‍👩‍👧👍🏽🇫🇷"),
            3u);  // joined family, skin tone, flag
  EXPECT_EQ(chars.count("한국어"), 3u);
  EXPECT_EQ(chars.count("\u1112\u1161\u11ab"), 1u);  // Hangul syllable from its jamo
}

TEST(UserCharacters, PrefixesEndOnCharacterBoundaries) {
  UserCharacters chars;
  const std::string_view text = "ab👨‍👩‍👧c\u0301d";
  EXPECT_EQ(chars.prefixBytes(text, 0), 0u);
  EXPECT_EQ(chars.prefixBytes(text, 3), std::string_view("ab👨‍👩‍👧").size());
  EXPECT_EQ(chars.first(text, 4), "ab👨‍👩‍👧c\u0301");
  EXPECT_EQ(chars.prefixBytes(text, 5), text.size());
  EXPECT_EQ(chars.prefixBytes(text, 6), UserCharacters::npos);
  EXPECT_EQ(chars.first(text, 6), text);
  EXPECT_EQ(chars.prefixBytes(std::string_view{}, 1), UserCharacters::npos);
  EXPECT_EQ(chars.prefixBytes("a\r\nb", 2), 3u);
}

}  // namespace
}  // namespace kavor
