// Names, versions and the force switches.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::Component;
using testsupport::Components;
using testsupport::ComponentsOfKind;
using testsupport::HitNames;
using testsupport::Names;
using testsupport::Property;
using testsupport::ReadRule;

constexpr const char* kContext = "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents";

using Texts = std::vector<std::string>;

class SCRRuleMatchingTest : public testing::Test {
 protected:
  testsupport::TestHost mHost;
};

TEST_F(SCRRuleMatchingTest, NamesOfAdapters) {
  const Components machine =
      ComponentsOfKind(OSComponentType::kNetwork, {{"WAN Miniport (PPPOE)", "10.0"},
                                                   {"WAN Miniport (PPTP)", "10.0"},
                                                   {"Intel(R) Ethernet Connection I219-V", "12.18"},
                                                   {"WAN miniport (L2TP)", "10.0"},
                                                   {"WANMiniport", "10.0"}});
  const struct {
    const char* mName;
    Texts mHits;
  } rows[] = {
      {"Miniport", {}},
      {"^.*\\\\bMiniport\\\\b.*$", {"WAN Miniport (PPPOE)", "WAN Miniport (PPTP)"}},
      {"^.*\\\\bminiport\\\\b.*$", {"WAN miniport (L2TP)"}},
      {"^.*\\\\b[M|m]iniport\\\\b.*$",
       {"WAN Miniport (PPPOE)", "WAN Miniport (PPTP)", "WAN miniport (L2TP)"}},
      // The very name, though as an expression it means something else.
      {"Intel(R) Ethernet Connection I219-V", {"Intel(R) Ethernet Connection I219-V"}},
      {"intel(R) Ethernet Connection I219-V", {}},
      {"Intel\\\\(R\\\\) Ethernet.*", {"Intel(R) Ethernet Connection I219-V"}},
      // The whole name, not a part of it.
      {"WAN", {}},
      {".*PPTP.", {"WAN Miniport (PPTP)"}},
      {"WANMiniport|WAN", {"WANMiniport"}},
      {".*",
       {"WAN Miniport (PPPOE)", "WAN Miniport (PPTP)", "Intel(R) Ethernet Connection I219-V",
        "WAN miniport (L2TP)", "WANMiniport"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(HitNames(std::string(R"({"type":"Network","name":")") + row.mName + "\"}", machine), row.mHits)
        << row.mName;
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(SCRRuleMatchingTest, ARuleOfAnotherKindHitsNothing) {
  const Components machine{
      Component(OSComponentType::kOS, "x", "1"), Component(OSComponentType::kVideo, "x", "2"),
      Component(OSComponentType::kAudio, "x", "3"), Component(OSComponentType::kNetwork, "x", "4")};
  const OSComponentRegistry registry(machine);
  const struct {
    const char* mKind;
    std::size_t mPlace;
  } rows[] = {{"OS", 0}, {"Video", 1}, {"Audio", 2}, {"Network", 3}};
  for (const auto& row : rows) {
    const SCRRule rule = ReadRule(std::string(R"({"name":"x","type":")") + row.mKind + "\"}");
    const Components hits = rule.FindMatchingOSComponents(registry);
    ASSERT_EQ(hits.size(), 1u) << row.mKind;
    EXPECT_EQ(hits.front().get(), machine[row.mPlace].get()) << row.mKind;  // shared, not copied
  }
  EXPECT_EQ(SCRRule().FindMatchingOSComponents(registry).size(), 0u);
  EXPECT_EQ(ReadRule(R"({"name":".*","type":"OS"})").FindMatchingOSComponents(OSComponentRegistry({})).size(),
            0u);
}

TEST_F(SCRRuleMatchingTest, EmptyNamesAreNeverHit) {
  const Components machine = ComponentsOfKind(OSComponentType::kVideo, {{"", "1"}, {"x", "1"}});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":""})", machine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Video","name":".*"})", machine), Texts{"x"});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":".{0}"})", machine), Texts());
}

TEST_F(SCRRuleMatchingTest, HitsKeepTheRegistrysOrderAndComeOnce) {
  const auto twice = Component(OSComponentType::kVideo, "b", "1");
  const Components machine{
      Component(OSComponentType::kVideo, "c", "1"), Component(OSComponentType::kAudio, "a", "1"), twice,
      Component(OSComponentType::kVideo, "a", "1"), Component(OSComponentType::kVideo, "b", "1")};
  const Components hits = ReadRule(R"({"type":"Video","name":"[abc]","versions":["1","0-2","","1"]})")
                              .FindMatchingOSComponents(OSComponentRegistry(machine));
  EXPECT_EQ(Names(hits), (Texts{"c", "b", "a", "b"}));
  EXPECT_EQ(std::count(hits.begin(), hits.end(), twice), 1);
}

TEST_F(SCRRuleMatchingTest, MasksOnSixVersions) {
  const Components machine = ComponentsOfKind(OSComponentType::kVideo, {{"Test Vendor", "10.24.30.4800"},
                                                                        {"Test Vendor", "9.24.30.4800"},
                                                                        {"Test Vendor", "9.18.30.4800"},
                                                                        {"Test Vendor", "9.18.27.3600"},
                                                                        {"Test Vendor", "9.18.27.4800"},
                                                                        {"Test Vendor", "9.18.37.4400"}});
  const struct {
    const char* mVersion;
    const char* mMaximum;
    const char* mMask;
    std::size_t mHits;
  } rows[] = {
      {"0.0.0.4000", "0.0.0.4800", "0.0.0.+", 5},
      {"0.0.30.4000", "0.0.36.4800", "0.0.+", 3},
      {"0.20.30.4000", "0.24.36.4800", "0.+", 2},
      {"10.20.30.4000", "12.24.36.4800", "+", 1},
  };
  for (const auto& row : rows) {
    const std::string json = std::string(R"({"type":"Video","name":"Test Vendor","version":")") +
                             row.mVersion + R"(","max_version":")" + row.mMaximum + R"(","version_mask":")" +
                             row.mMask + "\"}";
    EXPECT_EQ(HitNames(json, machine).size(), row.mHits) << json;
  }
}

/// Version fields of a rule against one version.
TEST_F(SCRRuleMatchingTest, Versions) {
  const struct {
    const char* mFields;
    const char* mVersion;
    bool mHits;
  } rows[] = {
      // No range holds everything, the empty version included.
      {R"("versions":[])", "1.2.3.4", true},
      {R"("versions":[])", "", true},
      {R"("versions":[""])", "", true},
      {R"("versions":["1"])", "1", true},
      {R"("versions":["1"])", "1.0.0.1", false},
      // "Up to".
      {R"("versions":["-5"])", "", true},
      {R"("versions":["-5"])", "5", true},
      {R"("versions":["-5"])", "5.0.0.1", false},
      // The first range that holds decides; all are tried.
      {R"("versions":["1","3-4","7"])", "7", true},
      {R"("versions":["1","3-4","7"])", "3.5", true},
      {R"("versions":["1","3-4","7"])", "5", false},
      {R"("versions":["4-3","7"])", "3.5", false},
      // Masked first, reduced afterwards.
      {R"("versions":["0.0.4.0-0.0.4.+"],"version_mask":"0.0.+","version_mod":"0.0.10.+")", "24.21.14.1195",
       true},
      {R"("versions":["0.0.4.0-0.0.4.+"],"version_mask":"0.0.+","version_mod":"0.0.10.+")", "24.21.15.1195",
       false},
      {R"("versions":["5"],"version_mask":"6.+","version_mod":"10.+")", "15", false},  // (15 & 6) % 10 is 6
      {R"("versions":["6"],"version_mask":"6.+","version_mod":"10.+")", "15", true},
      {R"("versions":["4"],"version_mask":"6.+","version_mod":"10.+")", "15", false},  // (15 % 10) & 6 is 4
      // A mask is a bit pattern, not only all or nothing.
      {R"("versions":["8"],"version_mask":"12.0.0.0")", "10.9.9.9", true},
      // A modulus part of 0 gives 0.
      {R"("versions":["0.0.4.1195"],"version_mod":"0.0.10.+")", "24.21.14.1195", true},
      {R"("versions":["0.21"],"version_mod":"0.0.0.0")", "24.21.14.1195", false},
      {R"("versions":["0.0.0.0"],"version_mod":"0.0.0.0")", "24.21.14.1195", true},
      {R"("versions":["3"],"version_mod":"10.10.10.10")", "13.20.30.40", true},
      // The largest part by "+" leaves 0.
      {R"("versions":["0"],"version_mod":"+")", "+", true},
      // The empty version, masked or reduced, is four zeros.
      {R"("versions":["0.0.0.0"],"version_mask":"+")", "", true},
      {R"("versions":["1"],"version_mask":"+")", "", false},
  };
  for (const auto& row : rows) {
    const std::string json = std::string(R"({"type":"Video","name":"x",)") + row.mFields + "}";
    const Components machine = ComponentsOfKind(OSComponentType::kVideo, {{"x", row.mVersion}});
    EXPECT_EQ(HitNames(json, machine).size(), row.mHits ? 1u : 0u) << json << " on " << row.mVersion;
  }
}

TEST_F(SCRRuleMatchingTest, AQuadroDriver) {
  const Components machine =
      ComponentsOfKind(OSComponentType::kVideo, {{"NVIDIA Quadro P4200", "24.21.14.1195"}});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"NVIDIA Quadro P4200","version":"0.0.4.0",
                         "max_version":"0.0.4.+","version_mask":"0.0.+","version_mod":"0.0.10.+"})",
                     machine)
                .size(),
            1u);
}

TEST_F(SCRRuleMatchingTest, AMalformedNameIsLoggedOncePerCandidateOfAnotherName) {
  const Components machine = ComponentsOfKind(
      OSComponentType::kVideo, {{"a", "1"}, {"Card (", "1"}, {"b", "1"}, {"Card (", "1"}, {"c", "1"}});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"Card ("})", machine), (Texts{"Card (", "Card ("}));
  EXPECT_EQ(mHost.mExceptionContexts, Texts(3, kContext));

  // Nothing is remembered between calls.
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"Card ("})", machine), (Texts{"Card (", "Card ("}));
  EXPECT_EQ(mHost.mExceptionContexts, Texts(6, kContext));
}

TEST_F(SCRRuleMatchingTest, MalformedNamesOfManyForms) {
  const Components machine = ComponentsOfKind(OSComponentType::kVideo, {{"a", "1"}, {"", "1"}});
  for (const char* const name :
       {"(", ")", "[", "*", "+a", "a{", "a{2,1}", "[b-a]", "(?<n>a)", "\\\\", "a**("}) {
    mHost.mExceptionContexts.clear();
    EXPECT_EQ(HitNames(std::string(R"({"type":"Video","name":")") + name + "\"}", machine), Texts()) << name;
    EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext}) << name;
  }
}

TEST_F(SCRRuleMatchingTest, TheVersionIsTestedBeforeTheName) {
  const Components machine = ComponentsOfKind(OSComponentType::kVideo, {{"a", "1"}, {"b", "2"}, {"c", "2"}});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"(","versions":["2"]})", machine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts(2, kContext));
}

class ForceSwitchesTest : public SCRRuleMatchingTest {
 protected:
  ~ForceSwitchesTest() override {
    SCRRule::ForceMatchByTypeForTesting(false);
    SCRRule::ForceMatchByNameForTesting(false);
    OSComponent::EnableSupportProperties(false);
  }

  Components mMachine{
      Component(OSComponentType::kVideo, "a", "1"), Component(OSComponentType::kVideo, "", ""),
      Component(OSComponentType::kAudio, "a", "1"), Property("memory.mb", "8"), Property("other", "8")};
};

TEST_F(ForceSwitchesTest, ByTypeEveryComponentOfTheKindIsAHit) {
  SCRRule::ForceMatchByTypeForTesting(true);
  for (
      const char* const rule :
      {R"({"type":"Video","name":"a"})", R"({"type":"Video","name":""})", R"({"type":"Video","name":"("})",
       R"({"type":"Video","name":"other","versions":["7"]})",
       R"({"type":"Video","name":"a","dependencies":[{"type":"OS","name":"none"},{"type":"Audio","name":"("}]})",
       R"({"type":"Video","name":"a","dependencies":[7]})"}) {
    EXPECT_EQ(HitNames(rule, mMachine), (Texts{"a", ""})) << rule;
  }
  EXPECT_EQ(HitNames(R"({"type":"Audio","name":"x"})", mMachine), Texts{"a"});
  EXPECT_EQ(HitNames(R"({"type":"Network","name":"x"})", mMachine), Texts());
  // Properties too, although they are not supported here.
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"x","eq":"7","regex":"("})", mMachine),
            (Texts{"memory.mb", "other"}));
  EXPECT_EQ(SCRRule().FindMatchingOSComponents(OSComponentRegistry(mMachine)).size(), 0u);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());

  SCRRule::ForceMatchByTypeForTesting(false);
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"other"})", mMachine), Texts());
}

TEST_F(ForceSwitchesTest, ByNameOnlyTheVersionTestIsSkipped) {
  const std::string other = R"({"type":"Video","name":"a","versions":["7"]})";
  EXPECT_EQ(HitNames(other, mMachine), Texts());
  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_EQ(HitNames(other, mMachine), Texts{"a"});
  EXPECT_EQ(
      HitNames(R"({"type":"Video","name":"[a-c]","versions":["7"],"version_mask":"0.0.0.0"})", mMachine),
      Texts{"a"});
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"b","versions":["1"]})", mMachine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Video","name":""})", mMachine), Texts());
  // Dependencies count, and are loosened as well.
  EXPECT_EQ(HitNames(R"({"type":"Video","name":"a","dependencies":[{"type":"OS","name":"x"}]})", mMachine),
            Texts());
  EXPECT_EQ(
      HitNames(R"({"type":"Video","name":"a","dependencies":[{"type":"Audio","name":"a","version":"9"}]})",
               mMachine),
      Texts{"a"});
  // A name is now tried, and logged, where the version would have rejected the candidate.
  EXPECT_EQ(HitNames(R"({"type":"Audio","name":"(","versions":["7"]})", mMachine), Texts());
  EXPECT_EQ(mHost.mExceptionContexts, Texts{kContext});

  SCRRule::ForceMatchByNameForTesting(false);
  EXPECT_EQ(HitNames(other, mMachine), Texts());
}

TEST_F(ForceSwitchesTest, ByNameChangesNothingForProperties) {
  OSComponent::EnableSupportProperties(true);
  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"memory.mb","eq":"9"})", mMachine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"memory.*","eq":"8"})", mMachine), Texts());
  EXPECT_EQ(HitNames(R"({"type":"Property","name":"memory.mb","eq":"8"})", mMachine), Texts{"memory.mb"});
}

}  // namespace
