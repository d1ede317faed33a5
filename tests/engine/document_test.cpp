#include "engine/document/document.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

TEST(Document, NewDocumentValues) {
  FixedClock clock(610024800.25);
  Document doc(clock);
  EXPECT_TRUE(doc.theJSONDictionaries->empty());
  EXPECT_EQ(doc.startDate, 610024800.25);
  EXPECT_EQ(doc.endDate, 610024800.25);
  EXPECT_TRUE(doc.logTimes.empty() && doc.logSubsys.empty() && doc.logSSystTypes.empty());
  EXPECT_TRUE(doc.popSSystTypes.empty() && doc.logSSystIndexes.empty());
  EXPECT_TRUE(doc.logBarValue.empty() && doc.logBarLabel.empty() && doc.logBarDate.empty());
  EXPECT_EQ(doc.logSSystCount, 0);
  EXPECT_EQ(doc.theNoBins, 50);
  EXPECT_TRUE(doc.displayName.empty());

  // The chart preparation writes the document from its queue.
  ASSERT_NE(doc.processingQueue, nullptr);
  doc.processingQueue->addOperation([&doc] { doc.logTimes.push_back(1.0); });
  doc.processingQueue->waitUntilAllOperationsAreFinished();
  EXPECT_EQ(doc.logTimes.size(), 1u);
}

}  // namespace
}  // namespace kavor
