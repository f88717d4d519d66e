#include "authoring/diff/ListDiff.h"

#include "authoring/diff/DiffOutputs.h"
#include "tests/authoring/diff/DiffedLists.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::FieldChange;
using authoring::ListDiff;
using authoring::ListWarning;
using authoring::RuleChange;
using testsupport::DiffedLists;
using testsupport::DiffRules;
using testsupport::ListOfRules;

using Texts = std::vector<std::string>;

Texts Warnings(const ListDiff& diff) {
  Texts names;
  for (const ListWarning& warning : diff.Warnings()) names.emplace_back(NameOf(warning.mKind));
  return names;
}

struct FieldRow {
  const char* mOld;  ///< what stands in the rule behind its name and type
  const char* mNew;
  std::vector<FieldChange> mChanges;
  bool mIsIdentifierChanged;
  bool mIsSeenAtLaunch;
  Texts mWarnings;
};

TEST(ListDiffTest, AChangeIsToldFieldByField) {
  const FieldRow rows[] = {
      {"",
       R"(, "error_level": "WARN")",
       {{"error_level", R"("INFO")", R"("WARN")"}},
       true,
       true,
       {"condition-changes-identifier"}},
      {R"(, "versions": ["1"])",
       R"(, "versions": ["1", "2-3"])",
       {{"versions", R"(["1.0.0.0"])", R"(["1.0.0.0","2.0.0.0-3.0.0.0"])"}},
       true,
       true,
       {"condition-changes-identifier"}},
      {"",
       R"(, "info_message": "Crashes.")",
       {{"info_message", std::nullopt, R"("Crashes.")"}},
       true,
       true,
       {"text-changes-identifier"}},
      {R"(, "info_message": "Crashes.", "info_url": "https://a/")",
       R"(, "info_message": "Stürzt ab.", "info_url": "https://b/")",
       {{"info_message", R"("Crashes.")", R"("Stürzt ab.")"},
        {"info_url", R"("https://a/")", R"("https://b/")"}},
       true,
       true,
       {"text-changes-identifier"}},
      {R"(, "info_message": "Crashes.", "error_level": "WARN")",
       R"(, "info_message": "Hangs.")",
       {{"error_level", R"("WARN")", R"("INFO")"}, {"info_message", R"("Crashes.")", R"("Hangs.")"}},
       true,
       true,
       {"condition-changes-identifier"}},
      {"",
       R"(, "version_mask": "0.0.+")",
       {{"version_mask", std::nullopt, R"("0.0.+")"}},
       false,
       false,
       {"change-keeps-identifier", "list-change-is-not-seen"}},
      {R"(, "version_mod": "10")",
       R"(, "version_mod": "100")",
       {{"version_mod", R"("10.0.0.0")", R"("100.0.0.0")"}},
       false,
       false,
       {"change-keeps-identifier", "list-change-is-not-seen"}},
      {R"(, "dependencies": [{"name": "D", "type": "OS"}])",
       R"(, "dependencies": [{"name": "D", "type": "OS", "version_mask": "1"}])",
       {{"dependencies",
         R"([{"error_level":"INFO","name":"D","osblc_version":1,"osc_version":1,"type":"OS","versions":[]}])",
         R"([{"error_level":"INFO","name":"D","osblc_version":1,"osc_version":1,"type":"OS",)"
         R"("version_mask":"1.0.0.0","versions":[]}])"}},
       false,
       false,
       {"change-keeps-identifier", "list-change-is-not-seen"}},
      {R"(, "comment": "a", "error_level": "info")",
       R"(, "examples": {}, "vresions": 5)",
       {},
       false,
       false,
       {}},
  };
  for (const FieldRow& row : rows) {
    const std::string start = R"({"name": "A", "type": "Video")";
    const DiffedLists lists = DiffRules(start + row.mOld + "}", start + row.mNew + "}");
    const ListDiff& diff = lists.mDiff;
    EXPECT_EQ(diff.IsEmpty(), row.mChanges.empty()) << row.mNew;
    EXPECT_EQ(diff.Changes().size(), row.mChanges.empty() ? 0U : 1U) << row.mNew;
    EXPECT_EQ(Warnings(diff), row.mWarnings) << row.mNew;
    EXPECT_EQ(diff.IsSeenAtLaunch(), row.mIsSeenAtLaunch) << row.mNew;
    for (const RuleChange& change : diff.Changes()) {
      EXPECT_EQ(change.mFields, row.mChanges) << row.mNew;
      EXPECT_EQ(change.mIsIdentifierChanged, row.mIsIdentifierChanged) << row.mNew;
    }
  }
}

TEST(ListDiffTest, OperandsOfPropertiesKeepTheIdentifier) {
  const DiffedLists lists = DiffRules(R"({"name": "memory.mb", "type": "Property", "ilt": "4000"})",
                                      R"({"name": "memory.mb", "type": "Property", "ilte": "8000"})");
  ASSERT_EQ(lists.mDiff.Changes().size(), 1U);
  EXPECT_EQ(
      lists.mDiff.Changes().front().mFields,
      (std::vector<FieldChange>{{"ilt", R"("4000")", std::nullopt}, {"ilte", std::nullopt, R"("8000")"}}));
  EXPECT_EQ(Warnings(lists.mDiff), (Texts{"change-keeps-identifier", "list-change-is-not-seen"}));
}

/// The reason is what was changed.
TEST(ListDiffTest, WhyAnIdentifierIsKept) {
  const struct {
    const char* mOld;  ///< what stands in the rule behind its name and type
    const char* mNew;
    Texts mWarnings;
  } rows[] = {
      {"",
       R"(, "info_message": "About it.", "info_url": "https://example.com/")",
       {"default-text-written-out"}},
      {R"(, "info_message": "About it.", "info_url": "https://example.com/")",
       "",
       {"default-text-written-out"}},
      {"",
       R"(, "info_message": "About it.", "info_url": "https://example.com/", "version_mask": "1")",
       {"change-keeps-identifier", "default-text-written-out"}},
      {R"(, "versions": [])", R"(, "versions": [""])", {"texts-run-together", "list-change-is-not-seen"}},
      {R"(, "versions": ["1.0", "-5.0"])",
       R"(, "versions": ["1.0-5.0"])",
       {"texts-run-together", "list-change-is-not-seen"}},
      {R"(, "info_message": "a", "info_url": "bc")",
       R"(, "info_message": "ab", "info_url": "c")",
       {"texts-run-together", "list-change-is-not-seen"}},
      {R"(, "versions": [], "version_mask": "1")",
       R"(, "versions": [""], "version_mask": "2")",
       {"change-keeps-identifier", "texts-run-together", "list-change-is-not-seen"}},
      {R"(, "dependencies": [{"name": "D", "type": "OS", "versions": []}])",
       R"(, "dependencies": [{"name": "D", "type": "OS", "versions": [""]}])",
       {"texts-run-together", "list-change-is-not-seen"}},
      {R"(, "dependencies": [{"name": "D", "type": "Property", "eq": "1"}])",
       R"(, "dependencies": [{"name": "D", "type": "Property", "ne": "1"}])",
       {"change-keeps-identifier", "list-change-is-not-seen"}},
  };
  for (const auto& row : rows) {
    const std::string start = R"({"name": "A", "type": "Video")";
    const DiffedLists lists = DiffRules(start + row.mOld + "}", start + row.mNew + "}");
    ASSERT_EQ(lists.mDiff.Changes().size(), 1U) << row.mNew;
    EXPECT_FALSE(lists.mDiff.Changes().front().mIsIdentifierChanged) << row.mNew;
    EXPECT_EQ(Warnings(lists.mDiff), row.mWarnings) << row.mNew;
  }
}

/// The list is another one for the test because of the other rule, so users learn of both.
TEST(ListDiffTest, AnUnseenChangeIsSeenWithAnother) {
  const DiffedLists lists =
      DiffRules(R"({"name": "A", "type": "OS", "version_mask": "1"}, {"name": "B", "type": "OS"})",
                R"({"name": "A", "type": "OS", "version_mask": "2"})");
  EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch());
  EXPECT_EQ(Warnings(lists.mDiff), Texts{"change-keeps-identifier"});
}

/// A list with file rules is matched once in each process.
TEST(ListDiffTest, AListWithFileRulesIsMatchedAnyway) {
  const DiffedLists lists =
      DiffRules(R"({"name": "A", "type": "OS", "version_mask": "1"}, {"name": "/x", "type": "File"})",
                R"({"name": "A", "type": "OS", "version_mask": "2"}, {"name": "/x", "type": "File"})");
  EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch());
  EXPECT_EQ(Warnings(lists.mDiff), Texts{"change-keeps-identifier"});
}

TEST(ListDiffTest, ADefaultTextChangesTheIdentifiersOfRulesThatTakeIt) {
  const std::string rules =
      R"({"name": "A", "type": "Video"}, {"name": "B", "type": "Video", "info_url": "u"},
      {"name": "C", "type": "Video", "info_message": "m"}, {"name": "D", "type": "OS"})";
  const std::string text = ListOfRules(rules);
  std::string changed = text;
  const std::size_t video = changed.find("About it.", changed.find("\"Video\""));
  changed.replace(video, 9, "About graphics.");
  const DiffedLists lists(text, changed);
  EXPECT_FALSE(lists.mDiff.IsEmpty());
  EXPECT_EQ(lists.mDiff.TextChanges(),
            (std::vector<FieldChange>{
                {"default_info.Video.info_message", R"("About it.")", R"("About graphics.")"}}));
  ASSERT_EQ(Warnings(lists.mDiff), Texts{"default-text-changes-identifier"});
  EXPECT_EQ(lists.mDiff.Warnings().front().mRules, (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(lists.mDiff.CountUnchanged(), 2U);
}

TEST(ListDiffTest, TheOrderAloneIsSeenAndNoDifference) {
  const DiffedLists lists = DiffRules(R"({"name": "A", "type": "OS"}, {"name": "B", "type": "OS"})",
                                      R"({"name": "B", "type": "OS"}, {"name": "A", "type": "OS"})");
  EXPECT_TRUE(lists.mDiff.IsEmpty());
  EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch());
  EXPECT_EQ(Warnings(lists.mDiff), Texts{"only-order-changed"});
  ASSERT_EQ(lists.mDiff.Changes().size(), 1U);
  EXPECT_TRUE(lists.mDiff.Changes().front().mPair.mIsMoved);
  EXPECT_TRUE(lists.mDiff.Changes().front().mFields.empty());
}

TEST(ListDiffTest, TheSecondWarningIsRead) {
  const std::string text = ListOfRules("");
  const DiffedLists lists(text, "{\"second_warning\": \"Save your work.\", " + text.substr(1));
  EXPECT_EQ(lists.mDiff.TextChanges(),
            (std::vector<FieldChange>{{"second_warning", R"("")", R"("Save your work.")"}}));
  EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch());
}

TEST(ListDiffTest, TheVersionOfTheListIsOfNoConsequence) {
  std::string changed = ListOfRules("");
  changed.replace(changed.find("\"blocklist_version\": 1"), 22, "\"blocklist_version\": 2");
  const DiffedLists lists(ListOfRules(""), changed);
  EXPECT_TRUE(lists.mDiff.IsEmpty());
  EXPECT_FALSE(lists.mDiff.IsSeenAtLaunch());
  EXPECT_EQ(Warnings(lists.mDiff), Texts());
  EXPECT_NE(DescribeAsText(lists.mDiff, {"a", "b"}).find("blocklist_version: 1 -> 2"), std::string::npos);
}

TEST(ListDiffTest, AListThatNoDownloadBringsIsWarnedOf) {
  const DiffedLists lists(ListOfRules(""), R"({"blocklist_version": 1, "blocklist": []})");
  EXPECT_EQ(Warnings(lists.mDiff), Texts{"download-is-refused"});
}

TEST(ListDiffTest, TheSameInOtherWordsIsNoDifference) {
  const DiffedLists lists = DiffRules(
      R"({"name": "A", "type": "OS", "versions": ["1-2"], "version_mask": "0.+", "error_level": "none"})",
      R"({"type": "OS", "version_mask": "0.+.+", "versions": [" 1.0 - 2.0 "], "name": "A"})");
  EXPECT_TRUE(lists.mDiff.IsEmpty());
  EXPECT_EQ(lists.mDiff.CountUnchanged(), 1U);
}

/// "version" and "max_version" are another way to write a range, but a rule's identifier knows "version".
TEST(ListDiffTest, AnotherNotationChangesTheIdentifier) {
  const char* const rows[][2] = {
      {R"("version": "1", "max_version": "2")", R"("versions": ["1-2"])"},
      {R"("versions": ["1-2"], "version": "5")", R"("versions": ["1-2"])"},
  };
  for (const auto& [oldVersions, newVersions] : rows) {
    const std::string start = R"({"name": "A", "type": "OS", )";
    const DiffedLists lists = DiffRules(start + oldVersions + "}", start + newVersions + "}");
    EXPECT_FALSE(lists.mDiff.IsEmpty()) << oldVersions;
    EXPECT_TRUE(lists.mDiff.IsSeenAtLaunch()) << oldVersions;
    EXPECT_EQ(Warnings(lists.mDiff), Texts{"notation-changes-identifier"}) << oldVersions;
  }
}

}  // namespace
