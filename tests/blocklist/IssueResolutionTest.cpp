#include "qelsystemcompatibilityreport/IssueResolution.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::ResolutionLogger;
using qelsystemcompatibilityreport::ResolveIssuesOfErrorLevel;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

using Texts = std::vector<std::string>;

constexpr auto kInfo = SCRRuleErrorLevel::INFO;
constexpr auto kWarn = SCRRuleErrorLevel::WARN;
constexpr auto kError = SCRRuleErrorLevel::ERROR;
constexpr auto kFatal = SCRRuleErrorLevel::FATAL;

/// The rule of this name, which stands for its identifier.
SCRRule Rule(SCRRuleErrorLevel level, const std::string& name) {
  const OSComponentVersion none;
  return {OSComponentType::kVideo, name, none, none, none, none, "", "", {}, level};
}

std::string ID(SCRRuleErrorLevel level, const std::string& name) {
  return Rule(level, name).GetID();
}

SCRIssue Issue(SCRRuleErrorLevel level, const std::string& rule, const std::string& component = "Card") {
  return {*testsupport::Component(OSComponentType::kVideo, component, "1"), Rule(level, rule)};
}

class IssueResolutionTest : public testing::Test {
 protected:
  /// Resolves and says what the logger heard: "new A on Card", "existing ...", "resolved A at WARN".
  bool Resolve(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues, Texts& remembered) {
    mHeard.clear();
    return ResolveIssuesOfErrorLevel(level, issues, remembered, mLogger);
  }

  /// Identifiers of rules of this level, by the rules' names. An unknown text stands for itself.
  static Texts IDs(SCRRuleErrorLevel level, const Texts& names) {
    Texts identifiers;
    for (const std::string& name : names) identifiers.push_back(ID(level, name));
    return identifiers;
  }

  std::string NameOf(const std::string& identifier) const {
    for (const SCRRuleErrorLevel level : {kInfo, kWarn, kError, kFatal}) {
      for (const char* const name : {"A", "B", "C", "D"}) {
        if (ID(level, name) == identifier) return name;
      }
    }
    return identifier;
  }

  std::string Heard(const char* what, const SCRIssue& issue) const {
    return std::string(what) + " " + NameOf(issue.GetID()) + " on " + issue.GetName();
  }

  testsupport::TestHost mHost;
  Texts mHeard;
  ResolutionLogger mLogger{
      [this](const SCRIssue& issue) { mHeard.push_back(Heard("new", issue)); },
      [this](const SCRIssue& issue) { mHeard.push_back(Heard("existing", issue)); },
      [this](SCRRuleErrorLevel level, const std::string& id) {
        mHeard.push_back("resolved " + NameOf(id) + " at " + SCRRule::ErrorLevelToString(level));
      }};
};

TEST_F(IssueResolutionTest, OneStep) {
  const struct {
    const char* mWhat;
    std::vector<SCRIssue> mIssues;
    Texts mRemembered;  // names of rules of the level WARN
    bool mFoundNew;
    Texts mRememberedAfter;
    Texts mHeard;
  } rows[] = {
      {"nothing at all", {}, {}, false, {}, {}},
      {"no issues, three remembered",
       {},
       {"A", "B", "C"},
       false,
       {},
       {"resolved A at WARN", "resolved B at WARN", "resolved C at WARN"}},
      {"issues of other levels only",
       {Issue(kError, "A"), Issue(kInfo, "B")},
       {"A", "B"},
       false,
       {},
       {"resolved A at WARN", "resolved B at WARN"}},
      {"issues of other levels only, none remembered", {Issue(kFatal, "A")}, {}, false, {}, {}},
      {"a first issue", {Issue(kWarn, "A")}, {}, true, {"A"}, {"new A on Card"}},
      {"an issue that goes on", {Issue(kWarn, "A")}, {"A"}, false, {"A"}, {"existing A on Card"}},
      {"one rule on two components, at first",
       {Issue(kWarn, "A", "Card 1"), Issue(kWarn, "A", "Card 2")},
       {},
       true,
       {"A"},
       {"new A on Card 1"}},
      {"one rule on two components, later",
       {Issue(kWarn, "A", "Card 1"), Issue(kWarn, "A", "Card 2")},
       {"A"},
       false,
       {"A"},
       {"existing A on Card 1"}},
      {"a new one beside one that goes on",
       {Issue(kWarn, "B"), Issue(kWarn, "A")},
       {"A"},
       true,
       {"A", "B"},
       {"existing A on Card", "new B on Card"}},
      {"all three at once",
       {Issue(kFatal, "D"), Issue(kWarn, "C"), Issue(kWarn, "A"), Issue(kWarn, "D"), Issue(kInfo, "B")},
       {"B", "A"},
       true,
       {"A", "C", "D"},
       {"resolved B at WARN", "existing A on Card", "new C on Card", "new D on Card"}},
      {"remembered ones keep their order",
       {Issue(kWarn, "A"), Issue(kWarn, "B"), Issue(kWarn, "C")},
       {"C", "D", "A", "B"},
       false,
       {"C", "A", "B"},
       {"existing C on Card", "resolved D at WARN", "existing A on Card", "existing B on Card"}},
      {"new ones come in the order of the issues, each once",
       {Issue(kWarn, "C", "1"), Issue(kWarn, "A", "2"), Issue(kWarn, "C", "3"), Issue(kWarn, "A", "4"),
        Issue(kWarn, "B", "5")},
       {},
       true,
       {"C", "A", "B"},
       {"new C on 1", "new A on 2", "new B on 5"}},
      {"remembered twice, still present: the second finds no issue left",
       {Issue(kWarn, "A", "Card 1"), Issue(kWarn, "A", "Card 2")},
       {"A", "A"},
       false,
       {"A"},
       {"existing A on Card 1", "resolved A at WARN"}},
      {"remembered three times, among others",
       {Issue(kWarn, "A"), Issue(kWarn, "B")},
       {"A", "B", "A", "A"},
       false,
       {"A", "B"},
       {"existing A on Card", "existing B on Card", "resolved A at WARN", "resolved A at WARN"}},
      {"remembered twice, gone",
       {Issue(kWarn, "B")},
       {"A", "A"},
       true,
       {"B"},
       {"resolved A at WARN", "resolved A at WARN", "new B on Card"}},
  };
  for (const auto& row : rows) {
    Texts remembered = IDs(kWarn, row.mRemembered);
    EXPECT_EQ(Resolve(kWarn, row.mIssues, remembered), row.mFoundNew) << row.mWhat;
    EXPECT_EQ(remembered, IDs(kWarn, row.mRememberedAfter)) << row.mWhat;
    EXPECT_EQ(mHeard, row.mHeard) << row.mWhat;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(IssueResolutionTest, EveryLevelLooksAtItsOwn) {
  const std::vector<SCRIssue> issues{Issue(kFatal, "A"), Issue(kError, "B"), Issue(kWarn, "C"),
                                     Issue(kInfo, "D")};
  const struct {
    SCRRuleErrorLevel mLevel;
    const char* mName;
    const char* mResolved;
  } rows[] = {{kInfo, "D", "resolved gone at INFO"},
              {kWarn, "C", "resolved gone at WARN"},
              {kError, "B", "resolved gone at ERROR"},
              {kFatal, "A", "resolved gone at FATAL"}};
  for (const auto& row : rows) {
    Texts remembered{"gone"};
    EXPECT_TRUE(Resolve(row.mLevel, issues, remembered)) << row.mName;
    EXPECT_EQ(remembered, Texts{ID(row.mLevel, row.mName)});
    EXPECT_EQ(mHeard, (Texts{row.mResolved, std::string("new ") + row.mName + " on Card"}));
  }
}

TEST_F(IssueResolutionTest, TheSameIssuesTwiceAreNewOnce) {
  const std::vector<SCRIssue> issues{Issue(kWarn, "A"), Issue(kWarn, "B"), Issue(kWarn, "A", "Other card")};
  Texts remembered;
  EXPECT_TRUE(Resolve(kWarn, issues, remembered));
  EXPECT_EQ(mHeard, (Texts{"new A on Card", "new B on Card"}));
  for (int time = 0; time < 3; ++time) {
    EXPECT_FALSE(Resolve(kWarn, issues, remembered));
    EXPECT_EQ(mHeard, (Texts{"existing A on Card", "existing B on Card"}));
    EXPECT_EQ(remembered, IDs(kWarn, {"A", "B"}));
  }
  EXPECT_FALSE(Resolve(kWarn, {}, remembered));
  EXPECT_EQ(mHeard, (Texts{"resolved A at WARN", "resolved B at WARN"}));
  EXPECT_EQ(remembered, Texts());
  EXPECT_TRUE(Resolve(kWarn, issues, remembered));
}

TEST_F(IssueResolutionTest, IdentifiersAreComparedByteForByte) {
  Texts remembered{ID(kWarn, "A") + " ", "", "hash:" + ID(kWarn, "A").substr(5)};
  const Texts before = remembered;
  EXPECT_TRUE(Resolve(kWarn, {Issue(kWarn, "A")}, remembered));
  EXPECT_EQ(mHeard, (Texts{"resolved " + before[0] + " at WARN", "resolved  at WARN",
                           "resolved " + before[2] + " at WARN", "new A on Card"}));
  EXPECT_EQ(remembered, IDs(kWarn, {"A"}));
}

TEST_F(IssueResolutionTest, CallbacksMayBeMissing) {
  const std::vector<SCRIssue> issues{Issue(kWarn, "A"), Issue(kWarn, "B")};
  const Texts before{ID(kWarn, "C"), ID(kWarn, "A")};

  Texts remembered = before;
  EXPECT_TRUE(ResolveIssuesOfErrorLevel(kWarn, issues, remembered, ResolutionLogger()));
  EXPECT_EQ(remembered, IDs(kWarn, {"A", "B"}));

  int calls = 0;
  const auto count = [&](const SCRIssue&) { ++calls; };
  const auto countResolved = [&](SCRRuleErrorLevel, const std::string&) { ++calls; };
  for (const ResolutionLogger& logger :
       {ResolutionLogger(count, nullptr, nullptr), ResolutionLogger(nullptr, count, nullptr),
        ResolutionLogger(nullptr, nullptr, countResolved)}) {
    calls = 0;
    remembered = before;
    EXPECT_TRUE(ResolveIssuesOfErrorLevel(kWarn, issues, remembered, logger));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(remembered, IDs(kWarn, {"A", "B"}));
  }
}

TEST_F(IssueResolutionTest, ALoggerCallsItsCallbacks) {
  const ResolutionLogger copy(mLogger);
  ResolutionLogger assigned;
  assigned = copy;
  assigned.LogNewIssue(Issue(kWarn, "A"));
  assigned.LogExistingIssue(Issue(kWarn, "B"));
  assigned.LogResolvedIssue(kFatal, "an identifier");
  EXPECT_EQ(mHeard, (Texts{"new A on Card", "existing B on Card", "resolved an identifier at FATAL"}));

  const ResolutionLogger none;
  none.LogNewIssue(Issue(kWarn, "A"));
  none.LogExistingIssue(Issue(kWarn, "B"));
  none.LogResolvedIssue(kFatal, "an identifier");
}

TEST_F(IssueResolutionTest, ACallbackThatThrowsIsLogged) {
  const ResolutionLogger throwing([](const SCRIssue&) { throw std::runtime_error("the host failed"); },
                                  nullptr, nullptr);
  const Texts before{ID(kWarn, "B")};
  Texts remembered = before;
  EXPECT_FALSE(ResolveIssuesOfErrorLevel(kWarn, {Issue(kWarn, "A")}, remembered, throwing));
  EXPECT_EQ(remembered, before);
  EXPECT_EQ(mHost.mExceptionContexts, Texts{"qelsystemcompatibilityreport::ResolveIssuesOfErrorLevel"});
  EXPECT_EQ(mHost.mExceptionTexts, Texts{"the host failed"});
}

}  // namespace
