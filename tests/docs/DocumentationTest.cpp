// Every example in the documentation works.
#include <gtest/gtest.h>

#include <set>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"
#include "tests/docs/DocumentationPages.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using testsupport::Block;
using testsupport::Blocks;

TEST(DocumentationTest, JSONExamplesAreWhatTheySay) {
  const testsupport::TestHost host;
  std::set<std::string> seen;
  for (const Block& block : Blocks()) {
    if (block.mLanguage != "json") continue;
    json::ParseError error;
    const std::any value = json::Parse(block.mText, &error);
    ASSERT_TRUE(value.has_value()) << block.mPage << ": " << error.mMessage << "\n" << block.mText;
    const json::Dictionary& object = json::AsDictionary(value);
    if (json::Has(object, "blocklist_version")) {
      seen.insert("blocklist");
      EXPECT_TRUE(qelsystemcompatibilityreport::SCRBlocklist(block.mText).Verify()) << block.mPage;
    } else if (json::Has(object, "last_match_job")) {
      seen.insert("state");
      EXPECT_NO_THROW(static_cast<void>(qelsystemcompatibilityreport::PriorStateFromJSON(value)))
          << block.mPage;
    } else if (json::Has(object, "components")) {
      seen.insert("snapshot");
      for (const std::any& element : *json::FindArray(object, "components")) {
        qelcore::utility::OSComponent component;
        EXPECT_TRUE(component.FromJSON(element)) << block.mPage << ": " << json::Serialise(element);
      }
    } else if (json::Has(object, "type")) {
      seen.insert("rule");
      qelsystemcompatibilityreport::SCRRule rule;
      EXPECT_TRUE(rule.FromJSON(value)) << block.mPage << ": " << block.mText;
    }
  }
  EXPECT_TRUE(host.mExceptionTexts.empty()) << host.mExceptionTexts.front();
  for (const char* const kind : {"blocklist", "state", "snapshot"}) EXPECT_EQ(seen.count(kind), 1U) << kind;
}

}  // namespace
