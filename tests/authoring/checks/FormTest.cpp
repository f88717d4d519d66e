// The form of documents and rules: what the reader refuses, lint tells of, and nothing else.
#include <algorithm>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/authoring/Lists.h"
#include "tests/support/TestHost.h"

namespace {

using testsupport::Codes;
using testsupport::CodesAndPlaces;
using testsupport::LintText;
using testsupport::ListOfRules;

TEST(FormTest, FindsWhatIsWrongWithTheDocument) {
  const struct {
    const char* mText;
    std::vector<std::string> mFindings;
  } rows[] = {
      {"", {"BL101 0:0"}},
      {"{\"blocklist_version\": 1,\n \"blocklist\": [}", {"BL101 2:16"}},
      {"[]", {"BL102 1:1"}},
      {" 5", {"BL102 1:2"}},
      {R"({"blocklist": 1})", {"BL103 1:1", "BL105 1:1", "BL104 1:15"}},
      {R"({"blocklist_version": 0, "blocklist": [1]})", {"BL105 1:1", "BL103 1:23", "BL201 1:40"}},
      {R"({"blocklist_version": 1.0, "blocklist": []})", {"BL105 1:1", "BL104 1:23", "BL108 1:41"}},
      {R"({"blocklist_version": 4294967296, "blocklist": []})", {"BL105 1:1", "BL103 1:23", "BL108 1:48"}},
      {R"({"blocklist_version": 1, "default_info": [], "blocklist": [], "second_warning": 1})",
       {"BL104 1:42", "BL108 1:59", "BL104 1:81"}},
  };
  for (const auto& row : rows) EXPECT_EQ(CodesAndPlaces(LintText(row.mText)), row.mFindings) << row.mText;
}

TEST(FormTest, FindsMissingDefaults) {
  std::string text = ListOfRules("");
  const std::string full = text;
  EXPECT_EQ(Codes(LintText(text)), std::vector<std::string>{"BL108"});
  for (const char* const part :
       {R"("Audio": {"info_message": "About it.", "info_url": "https://example.com/"}, )",
        R"("info_message": "About it.", )", R"(, "info_url": "https://example.com/")"}) {
    text = full;
    text.erase(text.find(part), std::string(part).size());
    EXPECT_EQ(Codes(LintText(text)), (std::vector<std::string>{"BL105", "BL108"})) << text;
  }
  text = full;
  text.replace(text.find("\"Video\""), 7, "\"Vidoe\"");
  const auto findings = LintText(text);
  EXPECT_EQ(Codes(findings), (std::vector<std::string>{"BL105", "BL107", "BL108"}));
  EXPECT_EQ(findings[1].mMend.rfind("Did you mean \"Video\"?", 0), 0U) << findings[1].mMend;
}

TEST(FormTest, FindsUnknownAndDuplicateKeys) {
  const auto findings = testsupport::LintRules(
      "{\"name\": \"A\", \"type\": \"OS\",\n \"eror_level\": \"WARN\",\n \"name\": \"B\", \"examples\": {}, "
      "\"zzzz\": 1}");
  ASSERT_EQ(CodesAndPlaces(findings), (std::vector<std::string>{"BL106 2:2", "BL107 3:2", "BL107 4:31"}));
  EXPECT_EQ(findings[0].mRuleName, "B");
  EXPECT_EQ(findings[1].mMend, "Did you mean \"error_level\"? Remarks belong under \"comment\".");
  EXPECT_EQ(findings[2].mMend.rfind("Known are \"name\", \"type\", ", 0), 0U) << findings[2].mMend;
}

TEST(FormTest, KnowsWhatTheLowerEndIsCalled) {
  const auto findings = testsupport::LintRules(R"({"name": "A", "type": "OS", "min_version": "1"})");
  ASSERT_EQ(Codes(findings), std::vector<std::string>{"BL107"});
  EXPECT_EQ(
      findings[0].mMend,
      "Did you mean \"version\", the lower end beside \"max_version\"? Remarks belong under \"comment\".");
}

TEST(FormTest, TellsOfABackslashThatIsWrittenOnce) {
  const struct {
    const char* mName;
    const char* mPlace;
    const char* mEnd;  ///< of what to do
  } rows[] = {
      {R"(^\d+$)", "BL101 2:12", R"("\\d" instead of "\d".)"},
      {R"(C:\\a\xyz)", "BL101 2:16", R"("\\x" instead of "\x".)"},
      {R"(C:\users)", "BL101 2:13", R"("\\u" instead of "\u".)"},
      {R"(ä\ä)", "BL101 2:12", R"("\\" instead of "\".)"},
  };
  for (const auto& row : rows) {
    const auto findings =
        testsupport::LintRules(std::string(R"({"name": ")") + row.mName + R"(", "type": "Video"})");
    ASSERT_EQ(CodesAndPlaces(findings), std::vector<std::string>{row.mPlace}) << row.mName;
    EXPECT_TRUE(findings[0].mMend.ends_with(row.mEnd)) << findings[0].mMend;
  }
}

struct Row {
  const char* mRule;
  std::vector<std::string> mCodes;
};

const Row kRules[] = {
    {R"({"name": "A", "type": "OS"})", {}},
    {R"({"name": "A", "type": "OS", "osc_version": 1, "osblc_version": 1, "error_level": "FATAL"})", {}},
    {R"({"name": "A", "type": "OS", "osc_version": 0, "comment": {"any": []}})", {}},
    {R"({"name": "A", "type": "OS", "dependencies": [{"name": "B", "type": "OS", "error_level": "WARN",
         "info_message": "M", "info_url": "https://example.com/"}]})",
     {"BL206", "BL206", "BL206"}},
    {"5", {"BL201"}},
    {"null", {"BL201"}},
    {"{}", {"BL201", "BL201"}},
    {R"({"name": "A"})", {"BL201"}},
    {R"({"name": 5, "type": "OS"})", {"BL203"}},
    {R"({"name": "A", "type": "os"})", {"BL202"}},
    {R"({"name": "A", "type": 1})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "version": 1.5})", {"BL203"}},
    {R"({"name": "A", "type": "Property", "version": 1})", {"BL206", "BL203"}},
    {R"({"name": "A", "type": "OS", "value": 5})", {"BL107", "BL203"}},
    {R"({"name": "A", "type": "OS", "osc_version": 1.0})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "osblc_version": 0})", {"BL204"}},
    {R"({"name": "A", "type": "OS", "osblc_version": "1"})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "osblc_version": -4294967296})", {"BL204"}},
    {R"({"name": "A", "type": "OS", "versions": "1.0"})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "versions": ["1.0", 2]})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "max_version": 2})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "versions": [], "max_version": 2})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "versions": ["1.0"], "max_version": 2})", {"BL206"}},
    {R"({"name": "A", "type": "OS", "versions": ["1.0"], "version": "2.0"})", {"BL206"}},
    {R"({"name": "A", "type": "OS", "version_mask": 0})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "version_mod": null})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "eq": 5})", {"BL206"}},
    {R"({"name": "A", "type": "Property", "eq": 5})", {"BL203"}},
    {R"({"name": "A", "type": "Property", "igte": 5})", {"BL203"}},
    {R"({"name": "A", "type": "Property", "eq": "1", "versions": 5, "max_version": 5})", {"BL206", "BL206"}},
    {R"({"name": "A", "type": "OS", "info_message": 5})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "info_url": []})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "error_level": 2})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "error_level": "Error"})", {"BL205"}},
    {R"({"name": "A", "type": "OS", "error_level": ""})", {"BL205"}},
    {R"({"name": "A", "type": "OS", "dependencies": {}})", {"BL203"}},
    {R"({"name": "A", "type": "OS", "name": 5, "name": "B"})", {"BL106", "BL106"}},
    {R"({"name": "A", "type": "OS", "name": 5})", {"BL106", "BL203"}},
};

TEST(FormTest, FindsWhatIsWrongWithRules) {
  for (const Row& row : kRules) EXPECT_EQ(Codes(testsupport::LintRules(row.mRule)), row.mCodes) << row.mRule;
}

/// The codes that say that no rule is kept are right, and there are no others that should say so.
TEST(FormTest, AgreesWithTheReader) {
  for (const Row& row : kRules) {
    const testsupport::TestHost host;
    const bool isRefused = std::any_of(row.mCodes.begin(), row.mCodes.end(), [](const std::string& code) {
      return code == "BL201" || code == "BL202" || code == "BL203" || code == "BL204";
    });
    // Without rules the defaults are not read either.
    EXPECT_EQ(qelsystemcompatibilityreport::SCRBlocklist(ListOfRules(row.mRule)).Verify(), !isRefused)
        << row.mRule;
  }
}

TEST(FormTest, TellsWhatADependencyThatCannotBeReadMeans) {
  const auto findings =
      testsupport::LintRules(R"({"name": "A", "type": "OS", "dependencies": [{"name": "B", "type": "Os"}]})");
  ASSERT_EQ(Codes(findings), std::vector<std::string>{"BL202"});
  EXPECT_EQ(findings[0].mMend,
            "Such a dependency never holds, so the rule hits nothing. Did you mean \"OS\"?");
}

}  // namespace
