// The layout of the text report, byte for byte: issues.
#include <gmock/gmock.h>

#include <locale>
#include <regex>
#include <string>
#include <vector>

#include "tests/report/ReportSupport.h"
#include "tests/report/text/TextReportFixture.h"

namespace {

using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRIssue;
using testsupport::Component;
using testsupport::IDOf;
using testsupport::Issue;
using testsupport::Property;
using testsupport::RuleText;

class TextReportIssuesTest : public testsupport::TextReportFixture {};

TEST_F(TextReportIssuesTest, IssuesStandBelowTheirComponent) {
  const auto system = Component(OSComponentType::kOS, "Example OS", "10.0");
  const auto card = Component(OSComponentType::kVideo, "Card", "1.2.3.4");
  const auto speakers = Component(OSComponentType::kAudio, "Speakers", "5");
  const auto memory = Property("memory.mb", "512");
  const std::string fatal = RuleText("Video", "Card", "FATAL", "It crashes.", "https://example.com/fatal");
  const std::string warning = RuleText("OS", "Example OS", "WARN", "It is old.");
  const std::string info = RuleText("Video", "Card", "INFO", "Two lines.\\nOf text.");
  const std::string little =
      RuleText("Property", "memory.mb", "INFO", "Too little.", "https://example.com/m");
  EXPECT_EQ(TextOf({system, card, speakers, memory},
                   {Issue(card, fatal), Issue(system, warning), Issue(card, info), Issue(memory, little)}),
            "System Components:\n"
            "\n"
            "[Operating System] Example OS v.10.0.0.0\n"
            "ISSUES:\n"
            "1.\tIt is old.\n"
            "\tID:  " +
                IDOf(warning) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Video] Card v.1.2.3.4\n"
                "ISSUES:\n"
                "1.\tIt crashes.\n"
                "\tURL: https://example.com/fatal\n"
                "\tID:  " +
                IDOf(fatal) +
                "\n"
                "2.\tTwo lines.\nOf text.\n"
                "\tID:  " +
                IDOf(info) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Audio] Speakers v.5.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Property] memory.mb : 512\n"
                "ISSUES:\n"
                "1.\tToo little.\n"
                "\tURL: https://example.com/m\n"
                "\tID:  " +
                IDOf(little) + "\n");
}

TEST_F(TextReportIssuesTest, AnIssueWithoutMessage) {
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  const std::string rule = RuleText("Video", "Card", "WARN", "");
  EXPECT_THAT(TextOf({card}, {Issue(card, rule)}),
              testing::EndsWith("[Video] Card v.1.0.0.0\nISSUES:\n1.\t\n\tID:  " + IDOf(rule) + "\n"));
}

TEST_F(TextReportIssuesTest, IdentifiersAreThoseOfTheRules) {
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  const std::string text = TextOf({card}, {Issue(card, RuleText("Video", "Card", "WARN", "m"))});
  const std::regex identifier("\n\tID:  HASH:[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\n");
  EXPECT_TRUE(std::regex_search(text, identifier)) << text;
}

TEST_F(TextReportIssuesTest, EqualComponentsBothShowTheIssues) {
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  const auto twin = Component(OSComponentType::kVideo, "Card", "1");
  const auto newer = Component(OSComponentType::kVideo, "Card", "2");
  const std::string rule = RuleText("Video", "Card", "WARN", "m");
  // A match makes one issue for each component that it hits.
  EXPECT_EQ(TextOf({card, newer, twin}, {Issue(card, rule), Issue(twin, rule)}),
            "System Components:\n"
            "\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] Card v.1.0.0.0\n"
            "ISSUES:\n"
            "1.\tm\n"
            "\tID:  " +
                IDOf(rule) +
                "\n"
                "2.\tm\n"
                "\tID:  " +
                IDOf(rule) +
                "\n"
                "[Video] Card v.2.0.0.0\n"
                "[Video] Card v.1.0.0.0\n"
                "ISSUES:\n"
                "1.\tm\n"
                "\tID:  " +
                IDOf(rule) +
                "\n"
                "2.\tm\n"
                "\tID:  " +
                IDOf(rule) + "\n");
}

TEST_F(TextReportIssuesTest, AnIssueOfAComponentThatIsNotThereIsNotShown) {
  const auto gone = Component(OSComponentType::kVideo, "Card", "1");
  EXPECT_EQ(TextOf({Component(OSComponentType::kOS, "Card", "1")},
                   {Issue(gone, RuleText("Video", "Card", "WARN", "m"))}),
            "System Components:\n\n[Operating System] Card v.1.0.0.0\n");
}

TEST_F(TextReportIssuesTest, IssuesOnFilesStandAtTheEnd) {
  const auto system = Component(OSComponentType::kOS, "Example OS", "1");
  const auto library = Component(OSComponentType::kFile, "/opt/driver.so", "1.2");
  const auto zero = Component(OSComponentType::kFile, "/opt/zero", "0.0.0.0");
  const auto folder = Component(OSComponentType::kFile, "/opt/folder", "");
  const std::string warning =
      RuleText("File", "/opt/driver.so", "WARN", "It is broken.", "https://example.com/f");
  const std::string other = RuleText("File", "/opt/driver.so", "WARN", "It is also slow.");
  const std::string onFolder = RuleText("File", "/opt/folder", "INFO", "Why is it there?");
  const std::string onZero = RuleText("File", "/opt/zero", "INFO", "zero");
  const std::string onSystem = RuleText("OS", "Example OS", "WARN", "It is old.");
  EXPECT_EQ(TextOf({system}, {Issue(library, warning), Issue(library, other), Issue(system, onSystem),
                              Issue(folder, onFolder), Issue(zero, onZero)}),
            "System Components:\n"
            "\n"
            "[Operating System] Example OS v.1.0.0.0\n"
            "ISSUES:\n"
            "1.\tIt is old.\n"
            "\tID:  " +
                IDOf(onSystem) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[File System] /opt/driver.so v.1.2.0.0\n"
                "ISSUES:\n"
                "1.\tIt is broken.\n"
                "\tURL: https://example.com/f\n"
                "\tID:  " +
                IDOf(warning) +
                "\n"
                "[File System] /opt/driver.so v.1.2.0.0\n"
                "ISSUES:\n"
                "1.\tIt is also slow.\n"
                "\tID:  " +
                IDOf(other) +
                "\n"
                "[File System] /opt/folder\n"
                "ISSUES:\n"
                "1.\tWhy is it there?\n"
                "\tID:  " +
                IDOf(onFolder) +
                "\n"
                "[File System] /opt/zero v.0.0.0.0\n"
                "ISSUES:\n"
                "1.\tzero\n"
                "\tID:  " +
                IDOf(onZero) + "\n");
}

TEST_F(TextReportIssuesTest, AFileThatIsAComponentShowsItsIssuesInBothPlaces) {
  const auto file = Component(OSComponentType::kFile, "/opt/f", "1");
  const std::string rule = RuleText("File", "/opt/f", "WARN", "m");
  EXPECT_EQ(TextOf({file}, {Issue(file, rule)}),
            "System Components:\n"
            "\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[File System] /opt/f v.1.0.0.0\n"
            "ISSUES:\n"
            "1.\tm\n"
            "\tID:  " +
                IDOf(rule) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[File System] /opt/f v.1.0.0.0\n"
                "ISSUES:\n"
                "1.\tm\n"
                "\tID:  " +
                IDOf(rule) + "\n");
}

/// Groups digits by twos, so that a number written in the process's locale cannot go unnoticed.
class GroupingPunctuation : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '\''; }
  std::string do_grouping() const override { return "\2"; }
};

TEST_F(TextReportIssuesTest, NumbersDoNotDependOnTheProcessesLocale) {
  const auto card = Component(OSComponentType::kVideo, "Card", "1");
  const std::vector<SCRIssue> issues(120, Issue(card, RuleText("Video", "Card", "WARN", "m")));
  const std::string classic = TextOf({card}, issues);
  EXPECT_THAT(classic, testing::HasSubstr("\n120.\tm\n"));
  const std::locale before = std::locale::global(std::locale(std::locale(), new GroupingPunctuation));
  const std::string grouped = TextOf({card}, issues);
  std::locale::global(before);
  EXPECT_EQ(grouped, classic);
}

}  // namespace
