// What stands in a blocklist is text, wherever it comes to: in the report, in windows and in events it is
// what it was, and nobody takes it for markup, for a format or for a command.
#include <gmock/gmock.h>

#include <any>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
namespace json = qelcore::json;
using qelcore::string::UTF8to16;
using qelcore::utility::OSComponentType;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTexts[] = {
    "%s%s%n%n %d {0} {} {:>99} @0 @1 %1 $1 \\1",
    "<b>bold</b> <a href='file:///etc/passwd'>here</a> <!-- --> &lt;script&gt; &amp; &#65;",
    "Save & close, &File, _Edit, ~Tilde, Tom && Jerry",
    "$(touch executed) `touch executed` ; touch executed | touch executed & $HOME %TEMP% ${PATH} \"' --help",
    "\x1b[2J\x1b[31mred\x1b]0;title\x07\x1b]8;;file:///etc/passwd\x1b\\link\x7f\xc2\x9b",
    "\xe2\x80\xaetxt.exe \xe2\x80\x8b\xef\xbb\xbf \xf0\x9f\x98\x80 \xcc\x81\xcc\x81",
    "$$$/qel/scr/kOkText=OK",
    "C:\\Windows\\System32 ..\\..\\x ../../etc/passwd",
    "[url](file:///etc/passwd) **bold** # heading | cell",
};

constexpr const char* kLinks[] = {"file:///etc/passwd",
                                  "javascript:alert(1)",
                                  "data:text/html,<b>x</b>",
                                  "ftp://example.com/x",
                                  "mailto:a@example.com",
                                  "ms-settings:network",
                                  "\\\\server\\share\\x.exe",
                                  "C:\\Windows\\System32\\calc.exe",
                                  "/bin/sh",
                                  "--help",
                                  " https://example.com",
                                  "https://example.com\n--help",
                                  "vbscript:x",
                                  "httpx://example.com",
                                  "//example.com/x"};

class BlocklistTextsTest : public testing::Test {
 protected:
  BlocklistTextsTest() {
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0")});
    qelcore::host::SetBrowser([this](const std::string& url) {
      mOpened.push_back(url);
      return true;
    });
  }
  ~BlocklistTextsTest() override { qelcore::host::SetBrowser({}); }

  void Install(const std::string& message, const std::string& link, const std::string& secondWarning) {
    json::Dictionary rule;
    json::Set(rule, "type", std::string("OS"));
    json::Set(rule, "name", std::string("Example OS"));
    json::Set(rule, "error_level", std::string("WARN"));
    json::Set(rule, "info_message", message);
    json::Set(rule, "info_url", link);
    json::Dictionary list;
    json::Set(list, "blocklist_version", std::int64_t{1});
    json::Set(list, "blocklist", json::Array{std::any(rule)});
    json::Set(list, "second_warning", secondWarning);
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", json::Serialise(list));
  }

  std::string Report() {
    const std::filesystem::path path = mHost.Files().Path() / "report.txt";
    RunReportToFile(u"Example", UTF8to16(testsupport::PathText(path)));
    return mHost.Files().Read("report.txt");
  }

  /// The values of an item, event by event.
  [[nodiscard]] std::vector<std::string> Recorded(const std::string& key) const {
    std::vector<std::string> values;
    for (const auto& event : mHost.mEvents) {
      for (const auto& item : event.GetItems()) {
        if (item.mKey == key && item.mGroup == "event") values.push_back(item.mValue);
      }
    }
    return values;
  }

  testsupport::TestHost mHost;
  testsupport::RecordingUserInterface mToolkit;
  std::vector<std::string> mOpened;
};

TEST_F(BlocklistTextsTest, MessagesStayWhatTheyAre) {
  for (const char* const text : kTexts) {
    SCOPED_TRACE(text);
    mHost.mEvents.clear();
    mToolkit.mErrorMessages.clear();
    DeleteReportSavedState();
    Install(text, "https://example.com/", text);
    std::vector<std::u16string> shown;
    mToolkit.mWhileDialogIsUp = [&](testsupport::RecordedDialog& dialog) { shown = dialog.VisibleTexts(); };
    RunReportForStartup(u"Example", testsupport::SomeWindow());
    EXPECT_THAT(shown, Contains(UTF8to16(text)));
    ASSERT_EQ(mToolkit.mErrorMessages.size(), 1U);
    EXPECT_EQ(mToolkit.mErrorMessages[0].mMessage, UTF8to16(text));
    EXPECT_THAT(Recorded("error_desc"), ElementsAre(text));
    EXPECT_THAT(Report(), HasSubstr("1.\t" + std::string(text) + "\n\tURL: https://example.com/\n"));
  }
  EXPECT_FALSE(std::filesystem::exists("executed"));
  EXPECT_THAT(mHost.mExceptionTexts, IsEmpty());
}

TEST_F(BlocklistTextsTest, LinksThatAreNotOfTheWebAreTextAndNothingElse) {
  for (const char* const link : kLinks) {
    SCOPED_TRACE(link);
    mHost.mEvents.clear();
    DeleteReportSavedState();
    Install("message", link, "");
    mToolkit.mWhileDialogIsUp = [](testsupport::RecordedDialog& dialog) { dialog.Press(u"Fix..."); };
    RunReportForHelp(u"Example", testsupport::SomeWindow());
    EXPECT_THAT(Recorded("url"), ElementsAre(link));
    EXPECT_THAT(Report(), HasSubstr("\tURL: " + std::string(link) + "\n"));
  }
  EXPECT_THAT(mOpened, IsEmpty());
}

TEST_F(BlocklistTextsTest, ALinkOfTheWebIsOpenedAsItIs) {
  const std::string link = "https://example.com/$(touch${IFS}executed)`touch`;&|'<b>%s%n?a=b&c=d#--help";
  Install("message", link, "");
  mToolkit.mWhileDialogIsUp = [](testsupport::RecordedDialog& dialog) { dialog.Press(u"Fix..."); };
  RunReportForHelp(u"Example", testsupport::SomeWindow());
  EXPECT_THAT(mOpened, ElementsAre(link));
}

}  // namespace
