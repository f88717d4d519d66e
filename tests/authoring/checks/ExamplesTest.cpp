// Examples beside rules, and that the library does not notice them.
#include "platform/qelcore/Guid.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/authoring/Lists.h"
#include "tests/support/TestHost.h"

namespace {

using authoring::Findings;
using qelsystemcompatibilityreport::SCRBlocklist;
using testsupport::Codes;
using testsupport::LintRules;

std::string Rule(const std::string& members, const std::string& examples) {
  return '{' + members + ", \"examples\": " + examples + '}';
}

constexpr const char* kNvidia =
    R"("name": "^NVIDIA .*$", "type": "Video", "versions": ["0.0.5.3600-0.0.5.3699"], "version_mask": "0.0.+", )"
    R"("version_mod": "0.0.10.+", "dependencies": [{"name": "Windows", "type": "OS"}])";
constexpr const char* kWindows = R"("with": [{"name": "Windows", "type": "OS", "version": "10.0"}])";

std::string Nvidia(const std::string& version, const std::string& with = kWindows) {
  return R"({"name": "NVIDIA Quadro", "type": "Video", "version": ")" + version + "\", " + with + '}';
}

TEST(ExamplesTest, AreRunByTheLibrary) {
  const struct {
    std::string mExamples;
    std::vector<std::string> mCodes;
  } rows[] = {
      {"{}", {}},
      {R"({"hits": [], "misses": []})", {}},
      {R"({"hits": [)" + Nvidia("31.0.15.3623") + R"(], "misses": [)" + Nvidia("31.0.15.3700") + "]}", {}},
      {R"({"hits": [)" + Nvidia("31.0.15.3700") + "]}", {"BL912"}},
      {R"({"misses": [)" + Nvidia("31.0.15.3623") + "]}", {"BL913"}},
      {R"({"hits": [)" + Nvidia("31.0.15.3623", "\"with\": []") + "]}", {"BL912"}},
      {R"({"misses": [)" + Nvidia("31.0.15.3623", "\"with\": []") + "]}", {}},
      {R"({"hits": [)" + Nvidia("31.0.15.3623") + ", " + Nvidia("1") + ", " + Nvidia("2") + "]}",
       {"BL912", "BL912"}},
      // The example is hit, not one beside it.
      {R"({"misses": [{"name": "Windows", "type": "OS", "with": [)" + Nvidia("31.0.15.3623") + "]}]}", {}},
      {"5", {"BL911"}},
      {R"({"hits": 5})", {"BL911"}},
      {R"({"hits": [5]})", {"BL911"}},
      {R"({"hits": [{}]})", {"BL911"}},
      {R"({"hits": [{"name": "A", "type": "Vidoe"}]})", {"BL911"}},
      {R"({"hits": [{"name": "A", "type": "Video", "version": 5}]})", {"BL911"}},
      {R"({"hits": [{"name": "A", "type": "Video", "version": "new"}]})", {"BL911"}},
      {R"({"misses": [{"name": "A", "type": "Video", "with": {}}]})", {"BL911"}},
      {R"({"misses": [{"name": "A", "type": "Video", "with": [1]}]})", {"BL911"}},
      {R"({"hit": []})", {"BL107"}},
      {R"({"misses": [{"name": "A", "type": "Video", "vresion": "1"}]})", {"BL107"}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Codes(LintRules(Rule(kNvidia, row.mExamples))), row.mCodes) << row.mExamples;
}

TEST(ExamplesTest, TellWhyARuleMisses) {
  const struct {
    std::string mExample;
    const char* mWhy;
  } rows[] = {
      {R"({"name": "NVIDIA Quadro", "type": "Audio"})", "it is of another type"},
      {Nvidia("31.0.15.3623", "\"with\": []"),
       R"(dependency 0, [OS] "Windows", finds nothing on the machine; )"
       R"(components that it asks for stand under "with")"},
      {Nvidia("31.0.14.3623"), "after mask and modulus 0.0.4.3623 is below 0.0.5.3600"},
      {R"({"name": "nvidia Quadro", "type": "Video", "version": "31.0.15.3623"})", "the name does not match"},
      {R"({"name": "/a", "type": "File"})", "it is of another type"},
  };
  for (const auto& row : rows) {
    const Findings findings = LintRules(Rule(kNvidia, R"({"hits": [)" + row.mExample + "]}"));
    ASSERT_EQ(findings.size(), 1U) << row.mExample;
    EXPECT_EQ(findings[0].mWhat.substr(findings[0].mWhat.find(": ") + 2), row.mWhy);
  }
}

TEST(ExamplesTest, TellWhyARuleMissesFilesAndProperties) {
  const struct {
    const char* mRule;
    const char* mExample;
    const char* mWhy;
  } rows[] = {
      {R"("name": "/a", "type": "File")", R"({"name": "/b", "type": "File"})", "it has another path"},
      {R"("name": "/a", "type": "File", "versions": ["1"])",
       R"({"name": "/a", "type": "File", "version": "1.1"})", "1.1.0.0 is above 1.0.0.0"},
      {R"("name": "memory.mb", "type": "Property", "ilt": "4000")",
       R"({"name": "memory.mb", "type": "Property", "value": "8192"})",
       "the value 8192 is not less than 4000"},
      {R"("name": "memory.mb", "type": "Property", "ilt": "9000")",
       R"({"name": "memory.MB", "type": "Property", "value": "8192"})", "the name does not match"},
  };
  for (const auto& row : rows) {
    const Findings findings = LintRules(Rule(row.mRule, R"({"hits": [)" + std::string(row.mExample) + "]}"));
    ASSERT_EQ(findings.size(), 1U) << row.mExample;
    EXPECT_EQ(findings[0].mWhat.substr(findings[0].mWhat.find(": ") + 2), row.mWhy);
  }
}

TEST(ExamplesTest, MayBeFilesAndProperties) {
  const struct {
    const char* mRule;
    const char* mExamples;
    std::vector<std::string> mCodes;
  } rows[] = {
      {R"("name": "$HOME/a.so", "type": "File", "versions": ["5.6-5.6.+"])",
       R"({"hits": [{"name": "$HOME/a.so", "type": "File", "version": "5.6.1"}],
           "misses": [{"name": "$HOME/a.so", "type": "File", "version": "5.7"}, {"name": "$HOME/a.so", "type": "File"},
                      {"name": "$HOME/b.so", "type": "File", "version": "5.6.1"}]})",
       {}},
      {R"("name": "/a", "type": "File")",
       R"({"hits": [{"name": "/a", "type": "File"}], "misses": [{"name": "/a", "type": "File"}]})",
       {"BL913"}},
      {R"("name": "/a", "type": "File")", R"({"hits": [{"name": "/b", "type": "File"}]})", {"BL912"}},
      {R"("name": "memory.mb", "type": "Property", "igt": "0", "ilt": "4000")",
       R"({"hits": [{"name": "memory.mb", "type": "Property", "value": "2048"}],
           "misses": [{"name": "memory.mb", "type": "Property", "value": "unknown"},
                      {"name": "swap.mb", "type": "Property", "value": "2048"}]})",
       {}},
      {R"("name": "memory.mb", "type": "Property", "ilt": "4000")",
       R"({"misses": [{"name": "memory.mb", "type": "Property", "value": "unknown"}]})",
       {"BL913"}},
      {R"("name": "Linux", "type": "OS", "dependencies": [{"name": "/a", "type": "File"}])",
       R"({"hits": [{"name": "Linux", "type": "OS", "with": [{"name": "/a", "type": "File"}]}],
           "misses": [{"name": "Linux", "type": "OS"}]})",
       {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Codes(LintRules(Rule(row.mRule, row.mExamples))), row.mCodes) << row.mRule;
  }
}

/// Nothing that is remembered or compared changes when examples are added.
TEST(ExamplesTest, TheLibraryIgnoresThem) {
  const testsupport::TestHost host;
  const std::string plain = testsupport::ListOfRules('{' + std::string(kNvidia) + '}');
  const std::string with = testsupport::ListOfRules(
      Rule(kNvidia, R"({"hits": [)" + Nvidia("31.0.15.3623") + R"(], "misses": [5, null]})"));
  const auto hash = [](const std::string& text) {
    qelcore::Guid guid;
    qelcore::GetHashResult(SCRBlocklist(text).Hash(), guid);
    return guid.AsUTF8String();
  };
  EXPECT_EQ(hash(plain), hash(with));
  EXPECT_NE(hash(plain), hash(testsupport::ListOfRules(R"({"name": "A", "type": "OS"})")));
  const auto rule = [](const std::string& text) { return qelsystemcompatibilityreport::SCRRule(text); };
  const auto first = rule('{' + std::string(kNvidia) + '}');
  const auto second = rule(Rule(kNvidia, "[]"));
  EXPECT_EQ(first, second);
  EXPECT_EQ(first.GetID(), second.GetID());
  EXPECT_TRUE(host.mExceptionTexts.empty());
}

}  // namespace
