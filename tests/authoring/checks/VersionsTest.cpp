#include "tests/authoring/Lists.h"

namespace {

using testsupport::CodesRow;

std::string Rule(const std::string& members) {
  return R"({"name": "A B", "type": "Video", )" + members + "}";
}

TEST(VersionsTest, FindsRangesThatDoNotHoldWhatTheySay) {
  const struct {
    const char* mMembers;
    std::vector<std::string> mCodes;
  } rows[] = {
      {R"("versions": ["10.0.17763.1"])", {}},
      {R"("versions": ["5.0 - 5.0.+", "-4.+", "7.0-+"])", {}},
      {R"("versions": ["+"])", {}},
      {R"("versions": [])", {}},
      {R"("versions": ["latest"])", {"BL301"}},
      {R"("versions": ["5.x-6.0"])", {"BL301"}},
      {R"("versions": ["5.0-6.x"])", {"BL301"}},
      {R"("versions": ["1.0-2.0-3.0"])", {"BL301"}},
      {R"("versions": ["1.2.3.4.5"])", {"BL301"}},
      {R"("versions": ["4294967296"])", {"BL301"}},
      {R"("versions": ["5.0\t"])", {"BL301"}},
      {R"("versions": ["5.+.1"])", {"BL310"}},
      {R"("versions": ["1.0-5.+x"])", {"BL310"}},
      {R"("versions": ["1.0"], "version_mask": "+.0")", {"BL310"}},
      {R"("version": "+.0")", {"BL310"}},
      {R"("versions": ["5.0-"])", {"BL302"}},
      {R"("versions": ["-"])", {"BL302"}},
      {R"("versions": ["9.0-8.0"])", {"BL303"}},
      {R"("versions": ["8.0.0.1-8.0"])", {"BL303"}},
      {R"("versions": ["8.0-8.0"])", {}},
      {R"("versions": [""])", {"BL304"}},
      {R"("versions": ["  "])", {"BL304"}},
      {R"("version": "5.0")", {}},
      {R"("version": "latest")", {"BL301"}},
      {R"("version": "")", {}},
      {R"("version": "5.0", "max_version": "6.0")", {}},
      {R"("version": "6.0", "max_version": "5.0")", {"BL303"}},
      {R"("version": "5.0", "max_version": "new")", {"BL301"}},
      {R"("max_version": "5.0")", {}},
      {R"("versions": ["1.0"], "version_mask": "x")", {"BL301"}},
      {R"("versions": ["1.0"], "version_mod": "10.")", {"BL301"}},
      {R"("version_mask": "0.0.+")", {"BL309"}},
      {R"("version_mod": "0.0.10.+")", {"BL309"}},
      {R"("versions": ["0.0.1.0"], "version_mask": "0.0.1.+")", {"BL308"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(testsupport::Codes(testsupport::LintRules(Rule(row.mMembers))), row.mCodes) << row.mMembers;
  }
}

TEST(VersionsTest, FindsRangesOutOfTheReachOfMaskAndModulus) {
  const struct {
    const char* mMask;
    const char* mModulus;
    const char* mRange;
    std::vector<std::string> mCodes;
  } rows[] = {
      {"0.0.+", "", "0.0.5.3600-0.0.5.3699", {}},
      {"0.0.+", "0.0.10.+", "0.0.5.3600-0.0.5.3699", {}},
      {"0.0.+", "0.0.10.+", "0.0.9.0-0.0.9.+", {}},
      {"0.0.+", "0.0.10.+", "0.0.9.0-+", {}},
      // All that is left lies below, or above.
      {"0.0.+", "", "31.0.15.3600-31.0.15.3699", {"BL305"}},
      {"0.0.+", "", "31.0.15.3623", {"BL305"}},
      {"0.0.+", "0.0.10.+", "0.0.10.0-0.0.15.+", {"BL305"}},
      {"4294967295.0.0.0", "", "5.0.0.1-5.+", {"BL305"}},
      {"", "10", "0.0.0.1-0.0.0.5", {"BL305"}},
      // The first number may be larger, so that the others do not matter.
      {"4294967295.0.0.0", "", "5.0.0.1-6.0", {"BL306"}},
      {"4294967295.0.0.0", "", "5.1-6.0", {"BL306"}},
      // An end that limits nothing, or not where it seems to.
      {"0.0.+", "", "0.0.15.0-31.0.15.4000", {"BL306"}},
      {"0.0.+", "0.0.10.+", "0.0.5.0-0.0.15.0", {"BL306"}},
      // Bits.
      {"0.0.0.6", "", "0.0.0.3", {"BL308", "BL305"}},
      {"0.0.0.6", "", "0.0.0.3-0.0.0.4", {"BL308"}},
      {"0.0.0.6", "", "0.0.0.5", {"BL308", "BL305"}},
      // The largest number itself is reduced to 0 by itself.
      {"", "+", "+", {"BL305"}},
      {"+", "", "+", {}},
  };
  for (const auto& row : rows) {
    const std::string members = std::string(R"("versions": [")") + row.mRange + R"("], "version_mask": ")" +
                                row.mMask + R"(", "version_mod": ")" + row.mModulus + '"';
    std::vector<std::string> codes = testsupport::Codes(testsupport::LintRules(Rule(members)));
    std::vector<std::string> expected = row.mCodes;
    std::sort(codes.begin(), codes.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(codes, expected) << members;
  }
}

TEST(VersionsTest, FindsRangesThatLieWithinAnother) {
  const struct {
    const char* mRanges;
    std::vector<std::string> mPlaces;
  } rows[] = {
      {R"("1.0-2.0", "3.0-4.0")", {}},
      {R"("1.0-2.0", "2.0-3.0")", {}},
      {R"("1.0-3.0", "2.0")", {"BL307 2:59"}},
      {R"("2.0", "1.0-3.0")", {"BL307 2:48"}},
      {R"("2.0", "2.0")", {"BL307 2:55"}},
      {R"("1.0-9.0", "2.0-3.0", "4.0-5.0")", {"BL307 2:59", "BL307 2:70"}},
      // Two hold a third one together, of which each holds a part.
      {R"("1.0-3.0", "2.0-5.0", "4.0-6.0")", {}},
      {R"("1.0-3.0", "2.0-5.0", "3.0-6.0")", {"BL307 2:59"}},
      {R"("1.0-2.+", "3.0-4.+", "2.5-3.5")", {"BL307 2:70"}},
      {R"("1.0-2.0", "2.0-3.0", "2.0.0.1-4.0", "3.0-5.0")", {"BL307 2:59"}},
  };
  for (const auto& row : rows) {
    const std::string rule =
        R"({"name": "A B", "type": "Video", "versions": [ )" + std::string(row.mRanges) + "]}";
    EXPECT_EQ(testsupport::CodesAndPlaces(testsupport::LintRules(rule)), row.mPlaces) << row.mRanges;
  }
}

TEST(VersionsTest, KnowsHowWindowsIsNumbered) {
  const testsupport::CodesRow rows[] = {
      {R"({"name": "Windows", "type": "OS", "versions": ["10"]})", {"BL311"}},
      {R"({"name": "Windows", "type": "OS", "versions": ["6.1-6.1"]})", {"BL311"}},
      {R"({"name": "^Windows$", "type": "OS", "versions": ["10.0", "6.1-6.1.+"]})", {"BL311"}},
      {R"({"name": "Windows", "type": "OS", "version": "6.1"})", {"BL311"}},
      {R"({"name": "Windows", "type": "OS", "versions": ["11"]})", {"BL311"}},
      {R"({"name": "Windows", "type": "OS", "versions": ["11-+"]})", {"BL311"}},
      {R"({"name": "Windows", "type": "OS", "versions": ["10.0-"]})", {"BL302"}},
      {R"({"name": "Windows", "type": "OS", "versions": ["10.0.19045"]})", {}},
      {R"({"name": "Windows", "type": "OS", "versions": ["10.0-10.0.+"]})", {}},
      {R"({"name": "Windows", "type": "OS", "versions": ["-6.1"]})", {}},
      {R"({"name": "Windows", "type": "OS", "versions": ["10.0.22000-10.+", "11-+"]})", {}},
      {R"({"name": "Windows", "type": "OS", "versions": ["0.0.0.0"]})", {}},
      {R"({"name": "Windows", "type": "OS", "versions": ["0.0.19045"], "version_mask": "0.0.+"})", {}},
      // Other systems have such versions.
      {R"({"name": "Ubuntu", "type": "OS", "versions": ["22.04"]})", {}},
      {R"({"name": "Debian GNU/Linux", "type": "OS", "versions": ["12"]})", {}},
      {R"({"name": "^.*$", "type": "OS", "versions": ["12"]})", {}},
      {R"({"name": "Windows", "type": "Video", "versions": ["10"]})", {"BL406"}},
  };
  testsupport::ExpectCodes(rows);
}

TEST(VersionsTest, LooksIntoDependencies) {
  const auto findings = testsupport::LintRules(Rule(
      R"("dependencies": [{"name": "Linux", "type": "OS", "dependencies": [{"name": "B", "type": "OS", "versions": ["5.0-"]}]}])"));
  ASSERT_EQ(testsupport::Codes(findings), std::vector<std::string>{"BL302"});
  EXPECT_EQ(findings[0].mRule, 0U);
  EXPECT_EQ(findings[0].mRuleName, "A B");
}

TEST(VersionsTest, TellsHowToMend) {
  const struct {
    const char* mRange;
    const char* mWhat;
    const char* mMend;
  } rows[] = {
      {"5.0-", "the range \"5.0-\" has no end, so the range holds exactly 5.0.0.0",
       "Write \"5.0-+\" to mean from there on, or \"5.0\"."},
      {"9.0-8.0", "the range \"9.0.0.0-8.0.0.0\" holds nothing: its lower end is above its upper end",
       "Swap the ends: \"8.0.0.0-9.0.0.0\"."},
      {"latest",
       "\"latest\" in the range \"latest\" is not a version and counts as missing, so the range holds every "
       "version",
       "Write up to four numbers with points between them. \"5.0-5.+\" is all of 5, \"-6.1.+\" is up to 6.1, "
       "\"7.0-+\" "
       "is from 7.0 on."},
  };
  for (const auto& row : rows) {
    const auto findings = testsupport::LintRules(Rule(std::string(R"("versions": [")") + row.mRange + "\"]"));
    ASSERT_EQ(findings.size(), 1U) << row.mRange;
    EXPECT_EQ(findings[0].mWhat, row.mWhat);
    EXPECT_EQ(findings[0].mMend, row.mMend);
  }
}

}  // namespace
