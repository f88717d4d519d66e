// What a blocklist says never speaks to the terminal: no verb prints a control character but tabs and line
// ends.
#include <algorithm>

#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;
using testsupport::SystemRule;

/// The place of the first character that a terminal acts upon; the length when there is none.
std::size_t FindControl(const std::string& text) {
  for (std::size_t place = 0; place < text.size(); ++place) {
    const auto byte = static_cast<unsigned char>(text[place]);
    const auto next = static_cast<unsigned char>(place + 1 < text.size() ? text[place + 1] : '\0');
    const bool isLineEnd = byte == '\n' || (byte == '\r' && next == '\n');
    const bool isPlain = byte >= 0x20 || isLineEnd || byte == '\t';
    // The second set of controls takes two bytes.
    if (!isPlain || byte == 0x7f || (byte == 0xc2 && next >= 0x80 && next < 0xa0)) return place;
  }
  return text.size();
}

class TerminalTextsTest : public testsupport::ScrTest {};

TEST_F(TerminalTextsTest, NoVerbPrintsControlCharacters) {
  const std::string hostile = R"(\u001b[2J\u001b]0;title\u0007\u0008\u007f\u009b31m\u0000)";
  const std::string list =
      Write("application/SystemCompatibilityReport/blocklist.en_US.json",
            Blocklist(SystemRule(R"("error_level": "WARN", "info_message": "m)" + hostile +
                                 R"(", "info_url": "https://example.com/)" + hostile + '"')));
  const std::string missing = Path("missing\x1b[31m.json");
  int printed = 0;
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"report"},
        {"--trace", "6", "report"},
        {"check", list},

        {"launch"},
        {"events"},

        {"events", "--statistics"},
        {"trail"},
        {"state", "show"},
        {"settings"},
        {"settings", "a\x1b[31m=b\x1b[31m"},
        {"check", missing},
        {"script", missing},
        {"report", "--output", Path("missing\x1b[31m/report.txt")},
        {"no\x1b[31m-verb"}}) {
    const auto result = Scr(arguments);
    for (const std::string& text : {result.mOutput, result.mErrors}) {
      const std::size_t place = FindControl(text);
      EXPECT_EQ(place, text.size()) << testing::PrintToString(arguments) << ": "
                                    << testing::PrintToString(text.substr(place < 60 ? 0 : place - 60, 100));
    }
    printed += result.mOutput.empty() && result.mErrors.empty() ? 0 : 1;
  }
  EXPECT_GT(printed, 12);
}

TEST_F(TerminalTextsTest, AReportInAFileHasWhatTheBlocklistSays) {
  Write("application/SystemCompatibilityReport/blocklist.en_US.json",
        Blocklist(SystemRule(R"("error_level": "WARN", "info_message": "m\u001b[2J\rover")")));
  EXPECT_EQ(Scr({"report", "--output", Path("report.txt")}).mExitCode, 0);
  EXPECT_NE(mFiles.Read("report.txt").find("1.\tm\x1b[2J\rover\n"), std::string::npos);
  EXPECT_NE(Scr({"report"}).mOutput.find("1.\tm?[2J?over\n"), std::string::npos);
}

TEST_F(TerminalTextsTest, JSONHasNoControlCharacters) {
  const std::string list =
      Write("application/SystemCompatibilityReport/blocklist.en_US.json",
            Blocklist(SystemRule(R"("error_level": "WARN", "info_message": "m\u001b[2J\u0007")")));
  EXPECT_EQ(Scr({"report"}).mExitCode, 0);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"check", list, "--json"}, {"events", "--json"}, {"components", "--json"}}) {
    const std::string text = Scr(arguments).mOutput;
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(FindControl(text), text.size()) << text;
  }
}

}  // namespace
