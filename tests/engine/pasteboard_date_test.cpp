#include "engine/core/pasteboard_date.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace kavor {
namespace {

TEST(PasteboardDateTest, WritesFixedTextWithAPlace) {
  EXPECT_EQ(pasteboardTextFromDate(610024800), "610024800.0");
  EXPECT_EQ(pasteboardTextFromDate(610024800.25), "610024800.25");
  EXPECT_EQ(pasteboardTextFromDate(-0.5), "-0.5");
  // Where the shortest form would use an exponent, the fixed one spells out every digit.
  EXPECT_EQ(pasteboardTextFromDate(1e21), "1000000000000000000000.0");
  EXPECT_EQ(pasteboardTextFromDate(1e-7), "0.0000001");
}

TEST(PasteboardDateTest, ReadsOnlyAWholeDecimalNumber) {
  EXPECT_EQ(dateFromPasteboardText("610024800"), 610024800.0);
  EXPECT_EQ(dateFromPasteboardText("+12.5"), 12.5);
  EXPECT_EQ(dateFromPasteboardText("-6.1E+8"), -610000000.0);
  EXPECT_EQ(dateFromPasteboardText(".5"), 0.5);
  EXPECT_EQ(dateFromPasteboardText(std::string_view("12345", 3)), 123.0);
  for (std::string_view text : {" 610024800", "610024800 x", "", "abc", "0x10", "inf", "-inf",
                                "nan", "+", ".", "+-1", "1e", "1,5", "1e400", "-1e400"})
    EXPECT_EQ(dateFromPasteboardText(text), std::nullopt) << '"' << text << '"';
  // Out of range towards zero is zero, not a failure; a long run of digits overflows.
  EXPECT_EQ(dateFromPasteboardText("1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(dateFromPasteboardText("-0." + std::string(400, '0') + "1").value()));
  EXPECT_EQ(dateFromPasteboardText("0e99999999999999999999999"), 0.0);
  EXPECT_EQ(dateFromPasteboardText(std::string(400, '9')), std::nullopt);
}

void expectRoundTrip(double value) {
  const std::string text = pasteboardTextFromDate(value);
  EXPECT_EQ(text.find_first_of("eE"), std::string::npos) << text;
  EXPECT_NE(text.find('.'), std::string::npos) << text;
  const std::optional<double> back = dateFromPasteboardText(text);
  ASSERT_TRUE(back) << text;
  EXPECT_EQ(std::memcmp(&*back, &value, sizeof value), 0) << text;
}

TEST(PasteboardDateTest, RoundTripsEveryDouble) {
  std::mt19937_64 random(20010101);
  std::uniform_real_distribution<double> around(5.9e8, 6.3e8);
  for (int i = 0; i < 20000; ++i) {
    expectRoundTrip(around(random));
    // Any bit pattern, for the extremes of both notation and precision.
    const uint64_t bits = random();
    double any = 0;
    std::memcpy(&any, &bits, sizeof any);
    if (std::isfinite(any)) expectRoundTrip(any);
  }
  for (double value : {0.0, -0.0, std::numeric_limits<double>::max(),
                       std::numeric_limits<double>::denorm_min(), 1.0 / 3})
    expectRoundTrip(value);
}

}  // namespace
}  // namespace kavor
