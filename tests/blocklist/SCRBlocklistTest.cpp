// The blocklist as a document: reading, verifying, hashing.
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blocklist/SCRBlocklistTestAccess.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::Guid;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRBlocklistTestAccess;
using qelsystemcompatibilityreport::SCRIssue;
using testsupport::Component;

using Texts = std::vector<std::string>;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist";
constexpr const char* kRuleContext = "qelsystemcompatibilityreport::SCRRule::FromJSON";

Guid Hash(const SCRBlocklist& blocklist) {
  Guid result;
  qelcore::GetHashResult(blocklist.Hash(), result);
  return result;
}

/// Defaults for all six kinds: "OS message", "OS link" and so on.
std::string AllDefaults() {
  std::string json = R"("default_info":{)";
  for (const std::string kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    json += (kind == "OS" ? "\"" : ",\"") + kind + R"(":{"info_message":")" + kind +
            R"( message","info_url":")" + kind + R"( link"})";
  }
  return json + "}";
}

const char* const kTwoRules = R"("blocklist":[{"type":"OS","name":"Windows","info_message":"one"},
                                              {"type":"OS","name":"Windows","info_message":"two"}])";

class SCRBlocklistTest : public testing::Test {
 protected:
  ~SCRBlocklistTest() override { OSComponent::EnableSupportProperties(false); }

  /// The messages of the issues on a machine with one "Windows" of version 10.
  static Texts Messages(const SCRBlocklist& blocklist) {
    const OSComponentRegistry machine({Component(OSComponentType::kOS, "Windows", "10")});
    Guid matchID;
    Texts messages;
    for (const SCRIssue& issue : blocklist.MatchToOSComponents(machine, matchID)) {
      messages.push_back(issue.GetInfoMessage());
    }
    return messages;
  }

  testsupport::TestHost mHost;
};

TEST_F(SCRBlocklistTest, AWholeDocument) {
  const SCRBlocklist blocklist(std::string("{\"blocklist_version\":1,") + kTwoRules + "," + AllDefaults() +
                               R"(,"second_warning":"Save your work.","comment":{"by":["us"]}})");
  EXPECT_EQ(Messages(blocklist), (Texts{"one", "two"}));
  EXPECT_TRUE(blocklist.Verify());
  EXPECT_EQ(blocklist.GetSecondWarning(), "Save your work.");
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

/// Documents with two rules, all defaults and a second warning, and what of them is read.
TEST_F(SCRBlocklistTest, TheVersionIsAGate) {
  const struct {
    const char* mVersion;  // null when the key is absent
    bool mIsRead;
    std::size_t mTimesLogged;
  } rows[] = {
      {"1", true, 0},
      {"2", true, 0},
      {"-1", true, 0},
      {"4294967295", true, 0},
      {"4294967297", true, 0},
      {"18446744073709551615", true, 0},
      {nullptr, false, 0},
      {"0", false, 0},
      {"4294967296", false, 0},  // the low 32 bits are 0
      {"-4294967296", false, 0},
      {"18446744069414584320", false, 0},
      {R"("1")", false, 1},
      {R"("0")", false, 1},
      {"1.0", false, 1},
      {"0.0", false, 1},
      {"1e0", false, 1},
      {"99999999999999999999", false, 1},
      {"true", false, 1},
      {"null", false, 1},
      {"[1]", false, 1},
      {"{}", false, 1},
  };
  for (const auto& row : rows) {
    mHost.mExceptionContexts.clear();
    const std::string version =
        row.mVersion == nullptr ? "" : std::string(R"("blocklist_version":)") + row.mVersion + ",";
    const SCRBlocklist blocklist("{" + version + kTwoRules + "," + AllDefaults() +
                                 R"(,"second_warning":"Save your work."})");
    EXPECT_EQ(mHost.mExceptionContexts, Texts(row.mTimesLogged, kContext)) << version;
    EXPECT_EQ(Messages(blocklist).size(), row.mIsRead ? 2u : 0u) << version;
    EXPECT_EQ(blocklist.Verify(), row.mIsRead) << version;
    EXPECT_EQ(blocklist.GetSecondWarning(), row.mIsRead ? "Save your work." : "") << version;
  }
}

TEST_F(SCRBlocklistTest, WhatIsNoDocument) {
  const SCRBlocklist empty("{}");
  const struct {
    std::string mText;
    std::size_t mTimesLogged;
  } rows[] = {
      {"{}", 0},
      {" {} ", 0},
      {R"({"unknown":1})", 0},
      {"", 1},
      {" ", 1},
      {"[]", 1},
      {"\"text\"", 1},
      {"1", 1},
      {"null", 1},
      {"{", 1},
      {R"({"blocklist_version":1)", 1},
      {R"({"blocklist_version":1}})", 1},
      {R"({'blocklist_version':1})", 1},
      {"<html></html>", 1},
      {"{\"blocklist_version\":1,\"second_warning\":\"\xFF\"}", 1},
      {std::string(100'000, '['), 1},
      {std::string(100, '\0'), 1},
  };
  for (const auto& row : rows) {
    mHost.mExceptionContexts.clear();
    const SCRBlocklist blocklist(row.mText);
    const std::string what = row.mText.substr(0, 40);
    EXPECT_EQ(mHost.mExceptionContexts, Texts(row.mTimesLogged, kContext)) << what;
    EXPECT_EQ(Messages(blocklist), Texts()) << what;
    EXPECT_FALSE(blocklist.Verify()) << what;
    EXPECT_EQ(blocklist.GetSecondWarning(), "") << what;
    EXPECT_EQ(Hash(blocklist), Hash(empty)) << what;
  }
}

/// One rule that cannot be read leaves no rules, and the keys that are read after "blocklist" are not read.
TEST_F(SCRBlocklistTest, AFailureInTheRulesKeepsNoRules) {
  const struct {
    const char* mElements;
    Texts mLogged;
  } rows[] = {
      {R"([{"type":"OS","name":"Windows"},7])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},null])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},[]])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},{}])", {kContext}},
      {R"([{},{"type":"OS","name":"Windows"}])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},{"type":"Printer","name":"x"}])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},{"type":"OS","name":"x","osblc_version":0}])", {kContext}},
      {R"([{"type":"OS","name":"Windows"},{"type":"OS","name":"x","versions":7}])", {kRuleContext, kContext}},
      {R"({"type":"OS","name":"Windows"})", {kContext}},
      {R"("text")", {kContext}},
      {"null", {kContext}},
      {"7", {kContext}},
  };
  for (const auto& row : rows) {
    mHost.mExceptionContexts.clear();
    const SCRBlocklist blocklist(std::string(R"({"blocklist_version":1,"blocklist":)") + row.mElements + "," +
                                 AllDefaults() + R"(,"second_warning":"Save your work."})");
    EXPECT_EQ(mHost.mExceptionContexts, row.mLogged) << row.mElements;
    EXPECT_EQ(Messages(blocklist), Texts()) << row.mElements;
    EXPECT_FALSE(blocklist.Verify()) << row.mElements;
    EXPECT_EQ(blocklist.GetSecondWarning(), "") << row.mElements;
    EXPECT_EQ(Hash(blocklist), Hash(SCRBlocklist("{}"))) << row.mElements;
  }
}

TEST_F(SCRBlocklistTest, ADependencyThatCannotBeReadIsNoFailure) {
  const SCRBlocklist blocklist(R"({"blocklist_version":1,"second_warning":"w","blocklist":[
      {"type":"OS","name":"Windows","info_message":"one"},
      {"type":"OS","name":"Windows","info_message":"two","dependencies":[{"type":"OS"}]}]})");
  EXPECT_EQ(Messages(blocklist), Texts{"one"});
  EXPECT_EQ(blocklist.GetSecondWarning(), "w");
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(SCRBlocklistTest, AFailureInTheDefaultsKeepsTheRules) {
  for (const char* const defaults :
       {"7", "null", "[]", "\"text\"", R"({"Video":7})", R"({"Video":null})", R"({"OS":{"info_message":7}})",
        R"({"OS":{"info_url":null}})", R"({"Property":{"info_url":[]}})"}) {
    mHost.mExceptionContexts.clear();
    const SCRBlocklist blocklist(std::string("{\"blocklist_version\":1,") + kTwoRules +
                                 R"(,"second_warning":"Save your work.","default_info":)" + defaults + "}");
    EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext}) << defaults;
    EXPECT_EQ(Messages(blocklist), (Texts{"one", "two"})) << defaults;
    EXPECT_FALSE(blocklist.Verify()) << defaults;
    EXPECT_EQ(blocklist.GetSecondWarning(), "") << defaults;  // it is read after the defaults
  }
}

TEST_F(SCRBlocklistTest, DefaultsReadBeforeAFailureStay) {
  const std::string rules = R"({"blocklist_version":1,"blocklist":[{"type":"OS","name":"Windows"}],)";
  const struct {
    const char* mDefaults;
    const char* mMessage;
  } rows[] = {
      // Kinds are read in their order, whatever the document's.
      {R"({"Video":7,"OS":{"info_message":"m"}})", "m"},
      {R"({"OS":{"info_url":7,"info_message":"m"}})", "m"},
      {R"({"OS":{"info_url":"u","info_message":7}})", ""},
  };
  for (const auto& row : rows) {
    const SCRBlocklist blocklist(rules + R"("default_info":)" + row.mDefaults + "}");
    EXPECT_EQ(Messages(blocklist), Texts{row.mMessage}) << row.mDefaults;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts(3, kContext));
}

TEST_F(SCRBlocklistTest, AFailureInTheSecondWarningKeepsTheRest) {
  for (const char* const warning : {"7", "null", "[]", "true"}) {
    mHost.mExceptionContexts.clear();
    const SCRBlocklist blocklist(std::string("{\"blocklist_version\":1,") + kTwoRules + "," + AllDefaults() +
                                 R"(,"second_warning":)" + warning + "}");
    EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext}) << warning;
    EXPECT_EQ(Messages(blocklist).size(), 2u) << warning;
    EXPECT_TRUE(blocklist.Verify()) << warning;
    EXPECT_EQ(blocklist.GetSecondWarning(), "") << warning;
  }
}

TEST_F(SCRBlocklistTest, VerifyAsksForAllTwelveDefaults) {
  const std::string whole = "{\"blocklist_version\":1," + AllDefaults() + "}";
  EXPECT_TRUE(SCRBlocklist(whole).Verify());  // neither rules nor the second warning are asked for
  for (const std::string kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    for (const std::string key : {" message", " link"}) {
      std::string emptied = whole;
      emptied.erase(emptied.find("\"" + kind + key + "\"") + 1, (kind + key).size());
      EXPECT_FALSE(SCRBlocklist(emptied).Verify()) << kind << key;
    }
    std::string renamed = whole;
    renamed.replace(renamed.find("\"" + kind + "\":{"), kind.size() + 2, "\"Other\"");
    EXPECT_FALSE(SCRBlocklist(renamed).Verify()) << kind;
  }
  EXPECT_FALSE(SCRBlocklist(R"({"blocklist_version":1})").Verify());
  EXPECT_FALSE(SCRBlocklist(R"({"blocklist_version":1,"default_info":{}})").Verify());
  EXPECT_FALSE(SCRBlocklist(R"({"blocklist_version":1,"default_info":{
      "OS":{"info_message":"m","info_url":"u"},"Video":{"info_message":"m","info_url":"u"},
      "Audio":{"info_message":"m","info_url":"u"},"Network":{"info_message":"m","info_url":"u"}}})")
                   .Verify());
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(SCRBlocklistTest, CopiesAreIndependent) {
  const std::string text = std::string("{\"blocklist_version\":1,") + kTwoRules + "," + AllDefaults() +
                           R"(,"second_warning":"Save your work."})";
  SCRBlocklist original(text);
  const SCRBlocklist copy(original);
  SCRBlocklist assigned("");
  assigned = original;
  original = SCRBlocklist("{}");
  for (const SCRBlocklist* const blocklist : {&copy, static_cast<const SCRBlocklist*>(&assigned)}) {
    EXPECT_EQ(Messages(*blocklist), (Texts{"one", "two"}));
    EXPECT_TRUE(blocklist->Verify());
    EXPECT_EQ(blocklist->GetSecondWarning(), "Save your work.");
    EXPECT_EQ(Hash(*blocklist), Hash(SCRBlocklist(text)));
  }
  EXPECT_EQ(Messages(original), Texts());
  EXPECT_FALSE(original.Verify());
}

TEST_F(SCRBlocklistTest, OfTwoMembersOfOneKeyTheLaterWins) {
  const SCRBlocklist blocklist(
      R"({"blocklist_version":0,"second_warning":"a","second_warning":"b","blocklist_version":1})");
  EXPECT_EQ(blocklist.GetSecondWarning(), "b");
}

TEST_F(SCRBlocklistTest, ManyRulesKeepTheirOrder) {
  std::string json = R"({"blocklist_version":1,"blocklist":[)";
  Texts expected;
  for (int number = 0; number < 3000; ++number) {
    const std::string message = std::to_string(100'000 + number);
    json += (number == 0 ? "" : ",") + std::string(R"({"type":"OS","name":"Windows","info_message":")") +
            message + "\"}";
    expected.push_back(message);
  }
  EXPECT_EQ(Messages(SCRBlocklist(json + "]}")), expected);
}

TEST_F(SCRBlocklistTest, AKindWithoutDefaultsHasEmptyTexts) {
  const SCRBlocklist blocklist(R"({"blocklist_version":1,)" + AllDefaults() + "}");
  const char* const kinds[] = {"OS", "Video", "Audio", "Network", "File", "Property"};
  for (int kind = 0; kind < 6; ++kind) {
    EXPECT_EQ(SCRBlocklistTestAccess::Defaults(blocklist, kind).info_message,
              kinds[kind] + std::string(" message"));
    EXPECT_EQ(SCRBlocklistTestAccess::Defaults(blocklist, kind).info_url, kinds[kind] + std::string(" link"));
  }
  for (const int kind : {-1, 6, -2, 1000}) {
    EXPECT_EQ(SCRBlocklistTestAccess::Defaults(blocklist, kind).info_message, "") << kind;
    EXPECT_EQ(SCRBlocklistTestAccess::Defaults(blocklist, kind).info_url, "") << kind;
  }
}

}  // namespace
