#include "authoring/findings/Code.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(CodeTest, TheTableHasEveryCodeAtItsPlace) {
  std::size_t index = 0;
  std::string last;
  std::set<std::string_view> names;
  for (const authoring::CodeDescription& description : authoring::AllCodes()) {
    EXPECT_EQ(static_cast<std::size_t>(description.mCode), index++) << description.mID;
    EXPECT_EQ(&authoring::DescriptionOf(description.mCode), &description);
    EXPECT_LT(last, std::string(description.mID)) << "the numbers ascend";
    last = description.mID;
    EXPECT_TRUE(names.insert(description.mName).second) << description.mName;
    EXPECT_TRUE(description.mSummary.ends_with('.')) << description.mSummary;
  }
  // The last enumerator has the last entry.
  EXPECT_EQ(authoring::DescriptionOf(authoring::Code::kUnexpectedHit).mID, "BL913");
  EXPECT_EQ(authoring::AllCodes().back().mCode, authoring::Code::kUnexpectedHit);
}

}  // namespace
