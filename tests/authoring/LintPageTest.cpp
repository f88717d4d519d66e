// Every example of docs/lint.md: the bad one has exactly the finding that is shown, the mended one none.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "authoring/output/Outputs.h"
#include "tests/authoring/Lists.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using authoring::CodeDescription;
using authoring::Finding;
using authoring::InputText;
using authoring::Severity;

constexpr const char* kPage = QELSCR_SOURCE_DIR "/docs/lint.md";

/// What the page says of one code.
struct Section {
  std::string mTitle;
  std::string mProse;
  std::vector<InputText> mBad;
  std::vector<InputText> mGood;
  std::string mOutput;
  bool mIsOutputOfLast = false;  ///< only the last finding is shown, and it is about the list
};

/// The rule so many times, with a number of its own for "#".
std::string Repeat(const std::string& rule, int times) {
  std::string rules;
  for (int number = 0; number < times; ++number) {
    std::string numbered = rule;
    const std::size_t place = numbered.find('#');
    if (place != std::string::npos) numbered.replace(place, 1, std::to_string(number));
    rules += (number == 0 ? "" : ",\n") + numbered;
  }
  return rules;
}

/// A block "json bad rule", "json bad list", "json bad rule list.de_DE.json" or "json bad rule 5001 times".
void AddExample(Section& section, const std::string& information, const std::string& text) {
  std::istringstream words(information);
  std::string json;
  std::string quality;
  std::string form;
  std::string file = "list.json";
  words >> json >> quality >> form >> file;
  if (file.empty()) file = "list.json";
  const bool isRepeated = information.ends_with(" times");
  const int times = isRepeated ? std::stoi(file) : 1;
  if (isRepeated) file = "list.json";
  ASSERT_TRUE(quality == "bad" || quality == "good") << information;
  ASSERT_TRUE(form == "rule" || form == "list") << information;
  const std::string list = form == "rule" ? testsupport::ListOfRules(Repeat(text, times)) : text;
  (quality == "bad" ? section.mBad : section.mGood).push_back({file, list});
}

std::map<std::string, Section> ReadSections() {
  std::map<std::string, Section> sections;
  std::istringstream lines(testsupport::ReadWholeFile(kPage));
  Section* section = nullptr;
  std::string information;
  std::string text;
  bool isInside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("### ")) {
      section = &sections[line.substr(4, 5)];
      section->mTitle = line.substr(4);
    } else if (line.starts_with("```")) {
      isInside = !isInside;
      if (isInside) {
        information = line.substr(3);
        text.clear();
      } else if (section != nullptr && information.starts_with("text")) {
        section->mOutput = text;
        section->mIsOutputOfLast = information == "text last";
      } else if (section != nullptr) {
        AddExample(*section, information, text.substr(0, text.size() - 1));
      }
    } else if (isInside) {
      text += line + '\n';
    } else if (section != nullptr) {
      section->mProse += line + '\n';
    }
  }
  return sections;
}

/// What the program prints, with lines counted from the first of the example.
std::string Output(const authoring::Findings& findings, std::size_t linesBefore) {
  std::string output;
  for (Finding finding : findings) {
    finding.mPlace.mLine -= linesBefore;
    for (const std::string& line : DescribeAsText(finding)) output += line + '\n';
  }
  return output;
}

/// The output as far as it is this program's: the engine's words for what is malformed differ between
/// compilers.
std::string WithoutEngineWords(const std::string& code, const std::string& output) {
  if (code != "BL401" && code != "BL408") return output;
  const std::string firstLine = output.substr(0, output.find('\n'));
  return output.substr(0, firstLine.rfind(": ")) + output.substr(firstLine.size());
}

TEST(LintPageTest, DescribesEveryCode) {
  const auto sections = ReadSections();
  EXPECT_EQ(sections.size(), authoring::AllCodes().size());
  for (const CodeDescription& description : authoring::AllCodes()) {
    const auto found = sections.find(std::string(description.mID));
    ASSERT_NE(found, sections.end()) << description.mID;
    const Section& section = found->second;
    EXPECT_EQ(section.mTitle, std::string(description.mID) + ' ' + std::string(description.mName));
    const char* const severity = description.mSeverity == Severity::kError     ? "\n**Error.** "
                                 : description.mSeverity == Severity::kWarning ? "\n**Warning.** "
                                                                               : "\n**Note.** ";
    EXPECT_TRUE(section.mProse.starts_with(severity)) << description.mID;
    EXPECT_FALSE(section.mBad.empty()) << description.mID;
    EXPECT_FALSE(section.mGood.empty()) << description.mID;
  }
}

TEST(LintPageTest, EveryExampleIsWhatItSays) {
  for (const auto& [code, section] : ReadSections()) {
    if (section.mBad.empty()) continue;
    const bool isRule =
        section.mBad.front().mText.starts_with("{\"blocklist_version\": 1, \"default_info\": {");
    authoring::Findings findings = authoring::Lint(section.mBad);
    ASSERT_FALSE(findings.empty()) << code;
    if (section.mIsOutputOfLast) findings.erase(findings.begin(), findings.end() - 1);
    EXPECT_EQ(testsupport::Codes(findings), std::vector<std::string>{code});
    EXPECT_EQ(WithoutEngineWords(code, Output(findings, isRule && !section.mIsOutputOfLast ? 1 : 0)),
              WithoutEngineWords(code, section.mOutput));
    EXPECT_EQ(testsupport::CodesAndPlaces(authoring::Lint(section.mGood)), std::vector<std::string>())
        << code;
  }
}

}  // namespace
