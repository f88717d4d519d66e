// Blocklists that nobody wrote in good faith, or that did not arrive whole.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::Guid;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist";

/// A blocklist that verifies and hits the test's machine, with every kind of text in it.
const std::string kWhole =
    "{\"blocklist\":[{\"name\":\"^.*S$\",\"type\":\"OS\",\"versions\":[\"1-2\"],\"info_message\":"
    "\"\\u00e9\\ud83d"
    "\\ude00\xC3\xA9\"}],\"blocklist_version\":1,\"default_info\":{\"Audio\":{\"info_message\":\"a\",\"info_"
    "url\":"
    "\"a\"},\"File\":{\"info_message\":\"f\",\"info_url\":\"f\"},\"Network\":{\"info_message\":\"n\",\"info_"
    "url\":\"n\""
    "},\"OS\":{\"info_message\":\"o\",\"info_url\":\"o\"},\"Property\":{\"info_message\":\"p\",\"info_url\":"
    "\"p\"},"
    "\"Video\":{\"info_message\":\"v\",\"info_url\":\"v\"}},\"second_warning\":\"w\"}";

class HostileDocumentsTest : public testing::Test {
 protected:
  std::size_t CountIssues(const SCRBlocklist& blocklist) {
    const OSComponentRegistry machine({testsupport::Component(OSComponentType::kOS, "Example OS", "1.5")});
    Guid ignored;
    return blocklist.MatchToOSComponents(machine, ignored).size();
  }

  /// Nothing is read, and one entry of the log says why.
  void ExpectRefused(const std::string& text, const std::string& reason) {
    mHost.mExceptionContexts.clear();
    mHost.mExceptionTexts.clear();
    const SCRBlocklist blocklist(text);
    EXPECT_FALSE(blocklist.Verify()) << text.substr(0, 40);
    EXPECT_EQ(blocklist.GetSecondWarning(), "");
    EXPECT_EQ(CountIssues(blocklist), 0U);
    EXPECT_EQ(mHost.mExceptionContexts, std::vector<std::string>{kContext});
    ASSERT_EQ(mHost.mExceptionTexts.size(), 1U);
    EXPECT_NE(mHost.mExceptionTexts[0].find(reason), std::string::npos) << mHost.mExceptionTexts[0];
  }

  testsupport::TestHost mHost;
};

TEST_F(HostileDocumentsTest, ABlocklistCutOffAtAnyByteIsRefused) {
  const SCRBlocklist whole(kWhole);
  ASSERT_TRUE(whole.Verify());
  ASSERT_EQ(CountIssues(whole), 1U);
  for (std::size_t length = 0; length < kWhole.size(); ++length) {
    ExpectRefused(kWhole.substr(0, length), "the blocklist is not JSON");
  }
}

TEST_F(HostileDocumentsTest, WhatIsNoJSONOrTooMuchIsRefusedWithTheReason) {
  const std::string beginning = "{\"blocklist_version\":1,\"second_warning\":";
  const struct {
    std::string mText;
    std::string mReason;
  } rows[] = {
      {std::string(1'000'000, '['),
       "the blocklist is not JSON, line 1, column 1: An array or object is not closed."},
      {std::string(1'000'000, '[') + std::string(1'000'000, ']'),
       "the blocklist is not JSON, line 1, column 257: The value is nested too deeply."},
      {beginning + "\"\\ud800\"}", "A string holds an escape that stands for no character."},
      {beginning + "\"\\ude00\\ud83d\"}", "A string holds an escape that stands for no character."},
      {beginning + "\"\xED\xA0\x80\"}", "The text is not UTF-8."},
      {beginning + std::string("\"a\0b\"}", 6), "A string holds a control character."},
      {"{\"blocklist_version\":" + std::string(10'000'000, '1') + "}",
       "This is not a number, or it is too large."},
      {beginning + '"' + std::string(67'108'864, 'x') + "\"}",
       "the blocklist is not JSON: The text is too long."},
      {"", "the blocklist is not JSON: The text is empty."},
      {"[]", ""},
      {"null", ""},
  };
  for (const auto& row : rows) ExpectRefused(row.mText, row.mReason);
}

TEST_F(HostileDocumentsTest, OfAKeyThatStandsTwiceTheLaterOneCounts) {
  const std::string end = kWhole.substr(1);
  EXPECT_EQ(CountIssues(SCRBlocklist("{\"blocklist\":5,\"blocklist_version\":0," + end)), 1U);
  EXPECT_TRUE(SCRBlocklist("{\"default_info\":5," + end).Verify());
  EXPECT_FALSE(SCRBlocklist(kWhole.substr(0, kWhole.size() - 1) + ",\"default_info\":{}}").Verify());
}

TEST_F(HostileDocumentsTest, AZeroInsideATextIsAPartOfIt) {
  std::string text = kWhole;
  text.replace(text.find("\"w\""), 3, "\"w\\u0000x\"");
  EXPECT_EQ(SCRBlocklist(text).GetSecondWarning(), std::string("w\0x", 3));
}

}  // namespace
