#include "tests/authoring/Lists.h"

namespace {

using testsupport::Codes;
using testsupport::LintRules;

TEST(DependenciesTest, FindsContradictions) {
  const struct {
    const char* mRule;
    const char* mDependencies;
    bool mIsImpossible;
  } rows[] = {
      {R"("name": "A B", "type": "Video")",
       R"({"name": "Windows", "type": "OS"}, {"name": "Linux", "type": "OS"})", true},
      {R"("name": "Windows", "type": "OS")", R"({"name": "Linux", "type": "OS"})", true},
      {R"("name": "Linux", "type": "OS")", R"({"name": "Ubuntu", "type": "OS"})", false},
      {R"("name": "A B", "type": "Video")",
       R"({"name": "Windows", "type": "OS", "dependencies": [{"name": "Linux", "type": "OS"}]})", true},
      {R"("name": "Windows", "type": "OS", "versions": ["-6.1.+"])",
       R"({"name": "Windows", "type": "OS", "versions": ["10.0-10.+"]})", true},
      {R"("name": "Windows", "type": "OS", "versions": ["-6.1.+", "10.0.1"])",
       R"({"name": "Windows", "type": "OS", "versions": ["10.0-10.+"]})", false},
      {R"("name": "Windows", "type": "OS", "versions": ["-6.1.+"])",
       R"({"name": "Windows", "type": "OS", "versions": ["0.0.1.0"], "version_mask": "0.0.+"})", false},
      {R"("name": "A B", "type": "Video")",
       R"({"name": "a", "type": "Property", "eq": "x11"}, {"name": "a", "type": "Property", "eq": "wayland"})",
       true},
      {R"("name": "A B", "type": "Video")",
       R"({"name": "a", "type": "Property", "eq": "x11"}, {"name": "b", "type": "Property", "eq": "wayland"})",
       false},
      {R"("name": "a", "type": "Property", "igt": "5")", R"({"name": "a", "type": "Property", "ilt": "5"})",
       true},
      {R"("name": "a", "type": "Property", "igt": "5")", R"({"name": "a", "type": "Property", "ne": ""})",
       false},
      // What is Windows, and what is not
      {R"("name": "Windows", "type": "OS")", R"({"name": "^Linux$", "type": "OS"})", true},
      {R"("name": "^Win.*$", "type": "OS")", R"({"name": "Linux", "type": "OS"})", true},
      {R"("name": "Windows", "type": "OS")", R"({"name": "Ubuntu", "type": "OS"})", true},
      {R"("name": "Ubuntu", "type": "OS")", R"({"name": "Windows", "type": "OS"})", true},
      {R"("name": "Windows", "type": "OS")", R"({"name": "^(?!Windows$).*$", "type": "OS"})", true},
      {R"("name": "Windows", "type": "OS")", R"({"name": "^.*$", "type": "OS"})", false},
      {R"("name": "^(Windows|Linux)$", "type": "OS")", R"({"name": "Linux", "type": "OS"})", false},
      {R"("name": "^Win.*$", "type": "OS")", R"({"name": "Windows", "type": "OS"})", false},
      {R"("name": "^Fedora.*$", "type": "OS")", R"({"name": "Linux", "type": "OS"})", false},
      // A value that is given, and an expression
      {R"("name": "a", "type": "Property", "eq": "3")",
       R"({"name": "a", "type": "Property", "regex": "^5$"})", true},
      {R"("name": "a", "type": "Property", "eq": "3")",
       R"({"name": "a", "type": "Property", "regex": "^[0-9]$"})", false},
      {R"("name": "a", "type": "Property", "ne": "3")",
       R"({"name": "a", "type": "Property", "regex": "^3$"})", false},
      // There may be several devices of one name.
      {R"("name": "A B", "type": "Video", "versions": ["1.0"])",
       R"({"name": "A B", "type": "Video", "versions": ["2.0"]})", false},
  };
  for (const auto& row : rows) {
    const auto findings =
        LintRules('{' + std::string(row.mRule) + ", \"dependencies\": [" + row.mDependencies + "]}");
    EXPECT_EQ(Codes(findings),
              row.mIsImpossible ? std::vector<std::string>{"BL802"} : std::vector<std::string>())
        << row.mRule << ' ' << row.mDependencies;
  }
}

}  // namespace
