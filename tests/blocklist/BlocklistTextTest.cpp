// A blocklist comes to its rules on the way through its text, or, when it is not sound, by a dictionary: both
// must give the same rules and texts, and whatever is wrong must be logged as if there were no other way.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/blocklist/SCRBlocklistTestAccess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestHost.h"

#ifndef _WIN32
#include "tests/rules/RandomRules.h"
#include "tests/support/RandomCases.h"
#endif

namespace {

using qelsystemcompatibilityreport::SCRBlocklist;
using Access = qelsystemcompatibilityreport::SCRBlocklistTestAccess;

class BlocklistTextTest : public testing::Test {
 protected:
  struct Result {
    std::size_t mRuleCount = 0;
    bool mIsReadFromText = false;
  };

  /// Reads both ways.
  Result ExpectTheSame(const std::string& text) {
    ForgetLog();
    const SCRBlocklist byDictionary = Access::FromDictionary(text);
    const std::vector<std::string> contexts = mHost.mExceptionContexts;
    const std::vector<std::string> texts = mHost.mExceptionTexts;
    ForgetLog();
    const SCRBlocklist byText(text);
    EXPECT_TRUE(Access::AreEqual(byText, byDictionary)) << text.substr(0, 2000);
    EXPECT_EQ(mHost.mExceptionContexts, contexts) << text.substr(0, 2000);
    EXPECT_EQ(mHost.mExceptionTexts, texts) << text.substr(0, 2000);
    return {Access::CountRules(byText), Access::IsReadFromText(byText)};
  }

  testsupport::TestHost mHost;

 private:
  void ForgetLog() {
    mHost.mExceptionContexts.clear();
    mHost.mExceptionTexts.clear();
  }
};

const char* const kDefaults =
    R"("default_info": {"OS": {"info_message": "m", "info_url": "u"}, "Video": {"info_message": "v"}})";
const char* const kRule =
    R"({"type": "Video", "name": "Card", "versions": ["1.0 - 2.+"], "error_level": "WARN"})";

TEST_F(BlocklistTextTest, KeysInEveryOrder) {
  const std::string list = std::string("\"blocklist\": [") + kRule + "]";
  const std::string version = "\"blocklist_version\": 1";
  const std::string warning = "\"second_warning\": \"w\"";
  std::vector<std::string> members{list, version, kDefaults, warning};
  std::sort(members.begin(), members.end());
  do {
    const std::string text =
        "{" + members[0] + ", " + members[1] + ", " + members[2] + ", " + members[3] + "}";
    const Result result = ExpectTheSame(text);
    EXPECT_EQ(result.mRuleCount, 1u);
    EXPECT_TRUE(result.mIsReadFromText) << text;
  } while (std::next_permutation(members.begin(), members.end()));
}

TEST_F(BlocklistTextTest, WhatIsWrongAnywhere) {
  const std::string rule = kRule;
  const std::string begin = "{\"blocklist_version\": 1, ";
  for (const std::string& text : {
           std::string(),
           std::string("{}"),
           std::string("[]"),
           "{\"blocklist_version\": 0, \"blocklist\": [" + rule + ", 5]}",
           "{\"blocklist_version\": \"1\", \"blocklist\": [" + rule + "]}",
           "{\"blocklist\": [" + rule + "], \"blocklist_version\": 4294967296}",
           "{\"blocklist\": [" + rule + "], \"blocklist_version\": 0, \"blocklist_version\": 2}",
           begin + "\"blocklist\": {}, \"second_warning\": \"w\"}",
           begin + "\"blocklist\": null}",
           begin + "\"blocklist\": [" + rule + ", 5, {}], \"second_warning\": \"w\"}",
           begin + "\"blocklist\": [" + rule + ", {\"type\": \"Card\", \"name\": \"x\"}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"osblc_version\": 0}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"osblc_version\": 1.0}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"versions\": [1]}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"versions\": \"1\"}]}",
           begin + "\"blocklist\": [{\"type\": \"Property\", \"name\": \"x\", \"ieq\": 5, \"eq\": []}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"dependencies\": [{}, 5, " + rule +
               "]}]}",
           begin + "\"blocklist\": [{\"type\": \"OS\", \"name\": \"x\", \"dependencies\": [" + rule +
               ", {\"type\": \"OS\", \"name\": \"y\", \"info_url\": 1}]}, " + rule + "]}",
           begin + "\"blocklist\": [" + rule + "], \"default_info\": []}",
           begin + "\"blocklist\": [" + rule + "], \"default_info\": {\"Video\": 5}}",
           begin + "\"blocklist\": [" + rule +
               "], \"default_info\": {\"OS\": {\"info_message\": \"m\"}, \"Audio\": {\"info_url\": 1}}}",
           begin + "\"blocklist\": [" + rule + "], \"second_warning\": 1}",
           begin + "\"blocklist\": [5], \"blocklist\": [" + rule + "]}",
           begin + "\"blocklist\": [" + rule + "], \"blocklist\": [" + rule + ", " + rule + "]}",
           begin + "\"blocklist\": [" + rule + "], \"blocklist\": 5}",
           begin + "\"default_info\": 5, " + kDefaults + "}",
           begin + kDefaults + ", \"default_info\": {\"Audio\": {\"info_message\": \"a\"}}}",
           begin + "\"blocklist\": [" + rule + "]} x",
           begin + "\"blocklist\": [" + rule + "], \"other\": \"\\ud800\"}",
       }) {
    ExpectTheSame(text);
  }
}

TEST_F(BlocklistTextTest, WhatIsWrongBehindManyRules) {
  // Long enough to be read in several pieces.
  constexpr int kRuleCount = 1'000;
  const std::string wrongDependency =
      R"({"type": "OS", "name": "x", "dependencies": [{"type": "OS", "name": "y", "info_url": 1}]})";
  for (const std::string separator : {",", ",\n    "}) {
    const std::string space = separator.substr(1);
    std::string rules = space + kRule;
    for (int index = 1; index < kRuleCount; ++index) rules += separator + kRule;
    for (const std::string& end : std::vector<std::string>{
             "]}",
             ", 5]}",
             ", " + wrongDependency + "]}",
             separator + wrongDependency + ", {\"type\": 1, \"name\": \"x\"}]}",
             separator + "{\"type\": \"OS\"}]}",
             separator + "{\"type\": \"OS\", \"name\": \"\xFF\"}]}",
             separator + wrongDependency + separator + "{\"type\": \"OS\" \"name\": \"x\"}]}",
             separator + wrongDependency + "]",
             separator + wrongDependency + "], \"default_info\": {\"Video\": 5}}",
             "], \"default_info\": {\"Video\": 5}}",
             "], \"second_warning\": 1}",
             "], \"blocklist\": []}",
             "], \"changes\": [" + space + "{}" + separator + "{}], " + kDefaults + "}",
             separator + "{\"type\": \"OS\", \"name\": \"z\", \"dependencies\": [" + space + kRule +
                 separator + kRule + "]}], " + kDefaults + "}",
         }) {
      const std::string text = "{\"blocklist_version\": 1, \"blocklist\": [" + rules + end;
      SCOPED_TRACE(end);
      ExpectTheSame(text);
      ExpectTheSame("{\"blocklist\": [" + rules + end);
    }
  }
}

TEST_F(BlocklistTextTest, ManyRulesNeedNoDictionary) {
  constexpr std::size_t kRuleCount = 1'000;
  for (const std::string separator : {",", ",\n", ",\r\n  ", ",\r"}) {
    std::string text = "{\"blocklist_version\": 1, \"blocklist\": [" + separator.substr(1) + kRule;
    for (std::size_t index = 1; index < kRuleCount; ++index) text += separator + kRule;
    text += "], " + std::string(kDefaults) + "}";
    for (const std::string byteOrderMark : {"", "\xEF\xBB\xBF"}) {
      const Result result = ExpectTheSame(byteOrderMark + text);
      EXPECT_EQ(result.mRuleCount, kRuleCount) << separator;
      EXPECT_TRUE(result.mIsReadFromText) << separator;
    }
  }
}

TEST_F(BlocklistTextTest, ARuleOfManyMegabytes) {
  std::string text =
      "{\"blocklist_version\": 1, \"blocklist\": [" + std::string(kRule) + ",{\"type\": \"OS\", \"name\": \"";
  text.append(34'000'000, 'x').append("\"}]}");
  EXPECT_EQ(ExpectTheSame(text).mRuleCount, 2u);
}

TEST_F(BlocklistTextTest, EveryRecordedList) {
  const std::filesystem::path source(QELSCR_SOURCE_DIR);
  std::size_t rules = 0;
  for (const std::filesystem::path& folder : {source / "data" / "SystemCompatibilityReport",
                                              source.parent_path() / "shared" / "data" / "blocklists"}) {
    if (!std::filesystem::is_directory(folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      SCOPED_TRACE(entry.path().string());
      const Result result = ExpectTheSame(testsupport::ReadWholeFile(entry.path()));
      EXPECT_TRUE(result.mIsReadFromText);
      rules += result.mRuleCount;
    }
  }
  EXPECT_GT(rules, 0u);
}

#ifndef _WIN32
TEST_F(BlocklistTextTest, RandomRules) {
  std::size_t rules = 0;
  testsupport::CheckOnRandomCases("both ways to the rules agree", [&] {
    std::string text = "{\"blocklist_version\": 1, \"blocklist\": [";
    const int count = *rc::gen::inRange(0, 4);
    for (int index = 0; index < count; ++index) {
      text += (index == 0 ? "" : ",") + *testsupport::AnyRule();
    }
    text += std::string("], ") + kDefaults + "}";
    const Result result = ExpectTheSame(text);
    RC_ASSERT(!HasFailure());
    if (result.mIsReadFromText) rules += result.mRuleCount;
    // And with a character changed.
    const std::string characters = "{}[]:,\" 01ax";
    text[*rc::gen::inRange<std::size_t>(0, text.size())] = *rc::gen::elementOf(characters);
    ExpectTheSame(text);
    RC_ASSERT(!HasFailure());
  });
  EXPECT_GT(rules, 100u);
}
#endif

}  // namespace
