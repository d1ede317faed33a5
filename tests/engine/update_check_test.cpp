#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/shell/update_feed.h"
#include "engine/shell/update_schedule.h"
#include "engine/shell/update_texts.h"
#include "platform/file_bytes.h"

namespace kavor {
namespace {

constexpr double kNow = 816861600.0;
const std::string kSite(kDownloadAddressPrefix);

// Runs the schedule at kNow; whether it started a check.
bool scheduleChecks(SettingsStore& settings) {
  int started = 0;
  const FixedClock clock(kNow);
  EXPECT_TRUE(runUpdateSchedule(settings, clock, [&] { ++started; }));
  EXPECT_LE(started, 1);
  return started == 1;
}

PlistValue entry(std::string_view app, std::string_view version, std::string_view url) {
  return PlistDict{{"AppName", app}, {"Version", version}, {"URL", url}};
}

std::string feedOf(std::initializer_list<PlistValue> entries) {
  return writeXmlPlist(arrayValue(entries));
}

TEST(UpdateSchedule, FirstLaunchChecksUnlessSwitchedOffAndWritesTheKeysBack) {
  MemorySettingsStore settings;
  EXPECT_TRUE(scheduleChecks(settings));
  EXPECT_EQ(settings.value(kDateLastUpdateCheckKey), PlistValue(kNow));
  EXPECT_EQ(settings.value(kNoUpdateCheckKey), PlistValue(false));
  EXPECT_EQ(settings.value(kUpdateCheckIntervalKey), PlistValue(43200.0));
  // The next launch, at the same moment, does not check again.
  EXPECT_FALSE(scheduleChecks(settings));

  MemorySettingsStore off;
  ASSERT_TRUE(off.setBool(kNoUpdateCheckKey, true));
  EXPECT_FALSE(scheduleChecks(off));
  EXPECT_EQ(off.value(kNoUpdateCheckKey), PlistValue(true));
  EXPECT_FALSE(off.contains(kDateLastUpdateCheckKey));
}

TEST(UpdateSchedule, TheIntervalIsStrictAndBelowOneSecondMeansTwelveHours) {
  struct Case {
    double stored;
    double secondsAgo;
    bool checks;
    double written;
  };
  const Case cases[] = {
      {0.5, 43200.0, false, 43200.0}, {0.5, 43200.5, true, 43200.0},
      {0.0, 43201.0, true, 43200.0},  {3600.0, 3600.0, false, 3600.0},
      {3600.0, 3601.0, true, 3600.0}, {1.0, 1.5, true, 1.0},
  };
  for (const Case& c : cases) {
    MemorySettingsStore settings;
    ASSERT_TRUE(settings.setDouble(kUpdateCheckIntervalKey, c.stored));
    ASSERT_TRUE(settings.setDouble(kDateLastUpdateCheckKey, kNow - c.secondsAgo));
    EXPECT_EQ(scheduleChecks(settings), c.checks) << c.stored << " " << c.secondsAgo;
    EXPECT_EQ(settings.doubleValue(kUpdateCheckIntervalKey), c.written);
    EXPECT_EQ(settings.doubleValue(kDateLastUpdateCheckKey), c.checks ? kNow : kNow - c.secondsAgo);
  }
}

TEST(UpdateAnswer, NeedsASuccessAndATextMediaType) {
  EXPECT_TRUE(updateAnswerUsable(200, "text/xml", 10));
  EXPECT_TRUE(updateAnswerUsable(299, "text/plain", 10));
  EXPECT_TRUE(updateAnswerUsable(203, "text/xml; charset=utf-8", 10));
  EXPECT_TRUE(updateAnswerUsable(200, " text/plain ;charset=us-ascii", 10));
  EXPECT_FALSE(updateAnswerUsable(199, "text/xml", 10));
  EXPECT_FALSE(updateAnswerUsable(300, "text/xml", 10));
  EXPECT_FALSE(updateAnswerUsable(200, "text/html", 10));
  EXPECT_FALSE(updateAnswerUsable(200, "application/xml", 10));
  EXPECT_FALSE(updateAnswerUsable(200, "text/xml-external-parsed-entity", 10));
  EXPECT_FALSE(updateAnswerUsable(200, "", 10));
  EXPECT_FALSE(updateAnswerUsable(200, "text/xml", 0));  // no data: as if nothing came
}

TEST(UpdateFeed, OffersEveryKavorEntryWhoseVersionDiffers) {
  const std::string feed = feedOf({
      entry("Other", "9.9", kSite + "other.zip"),
      entry("Kavor", "0.2.0", kSite + "Kavor-0.2.0.zip"),
      entry("Kavor", "1.0.0", kSite + "Kavor-1.0.0.zip"),  // the running one
      entry("Kavor", "0.0.9", kSite + "Kavor-0.0.9.zip"),  // older still counts
  });
  const UpdateFeedResult read = readUpdateFeed(feed, "1.0.0");
  EXPECT_FALSE(read.alert);
  EXPECT_TRUE(read.listsKavor);
  const std::vector<UpdateOffer> expected = {{"0.2.0", kSite + "Kavor-0.2.0.zip"},
                                             {"0.0.9", kSite + "Kavor-0.0.9.zip"}};
  EXPECT_EQ(read.offers, expected);

  // The same listing as a binary property list.
  const auto binary = readFileBytes(std::string(KAVOR_TEST_DATA) + "/update/feed.bplist", 4096);
  ASSERT_TRUE(binary);
  const UpdateFeedResult fromBinary = readUpdateFeed(*binary, "1.0.0");
  EXPECT_TRUE(fromBinary.listsKavor);
  EXPECT_EQ(fromBinary.offers, std::vector<UpdateOffer>({expected[0]}));
}

TEST(UpdateFeed, WithoutAUsableKavorEntryNothingChanges) {
  const std::string feed = feedOf({
      entry("Other", "9.9", kSite + "other.zip"),
      entry("kavor", "0.2.0", kSite + "a.zip"),  // the name is compared exactly
      PlistValue("Kavor"),
      PlistDict{{"AppName", "Kavor"}, {"Version", 2}, {"URL", kSite + "b.zip"}},
      PlistDict{{"AppName", "Kavor"}, {"Version", "0.2.0"}},
      arrayValue({"Kavor", "0.2.0", kSite + "c.zip"}),
  });
  const UpdateFeedResult read = readUpdateFeed(feed, "1.0.0");
  EXPECT_FALSE(read.alert);
  EXPECT_FALSE(read.listsKavor);
  EXPECT_TRUE(read.offers.empty());
}

TEST(UpdateFeed, AnAddressOutsideTheDownloadSiteIsNeverOffered) {
  const std::string feed = feedOf({
      entry("Kavor", "0.2.0", "https://elsewhere.example/Kavor.zip"),
      entry("Kavor", "0.2.0", "https://elsewhere.example/?from=" + kSite),
      entry("Kavor", "0.2.0", "http://kavor.app/downloads/Kavor.zip"),
      entry("Kavor", "0.2.0", ""),
  });
  const UpdateFeedResult read = readUpdateFeed(feed, "1.0.0");
  EXPECT_TRUE(read.listsKavor);  // the check took place all the same
  EXPECT_TRUE(read.offers.empty());
}

TEST(UpdateFeed, AnUnreadableOrEmptyFeedGivesItsAlert) {
  const std::string site = kSite + "Kavor.zip";
  const std::string unreadable[] = {
      "", "<html>not found</html>", feedOf({entry("Kavor", "0.2.0", site)}).substr(0, 120),
      writeXmlPlist(entry("Kavor", "0.2.0", site)),  // a dictionary, not an array
      writeXmlPlist(PlistValue("Kavor"))};
  for (const std::string& bytes : unreadable) {
    const UpdateFeedResult read = readUpdateFeed(bytes, "1.0.0");
    EXPECT_EQ(read.alert, kFeedUnreadableAlert) << bytes;
    EXPECT_FALSE(read.listsKavor);
    EXPECT_TRUE(read.offers.empty());
  }
  EXPECT_EQ(readUpdateFeed(feedOf({}), "1.0.0").alert, kFeedEmptyAlert);
}

}  // namespace
}  // namespace kavor
