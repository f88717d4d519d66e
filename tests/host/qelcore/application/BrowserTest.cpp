// Which addresses reach the browser.
#include "platform/qelcore/Browser.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::IsWebAddress;
using qelcore::OpenURLInDefaultBrowser;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(WebAddress, IsHttpOrHttpsWithAHost) {
  for (const char16_t* const address :
       {u"http://a", u"https://example.com", u"HTTPS://Example.com/a?b=c#d",
        u"https://user@example.com:8080/\u00fc", u"http://[::1]/", u"https://example.com/%20"}) {
    EXPECT_TRUE(IsWebAddress(address)) << testing::PrintToString(std::u16string(address));
  }
  for (const char16_t* const address : {u"",
                                        u"http",
                                        u"http:/a",
                                        u"http://",
                                        u"https:///a",
                                        u"https://?a",
                                        u"https://#a",
                                        u"ftp://example.com",
                                        u"file:///etc/passwd",
                                        u"javascript:alert(1)",
                                        u"example.com",
                                        u" https://example.com",
                                        u"https://example.com ",
                                        u"https://a b",
                                        u"https://a\nb",
                                        u"https://a\u007fb",
                                        u"https://a\u0085b",
                                        u"https://a\u2028b",
                                        u"httpss://a",
                                        u"--help",
                                        u"mailto:a@example.com"}) {
    EXPECT_FALSE(IsWebAddress(address)) << testing::PrintToString(std::u16string(address));
  }
  EXPECT_FALSE(IsWebAddress(std::u16string(u"https://a\0b", 11)));
}

class BrowserTest : public testing::Test {
 protected:
  ~BrowserTest() override { qelcore::host::SetBrowser({}); }

  testsupport::TestHost mHost;
};

TEST_F(BrowserTest, GetsWebAddressesAlone) {
  std::vector<std::string> opened;
  qelcore::host::SetBrowser([&](const std::string& url) {
    opened.push_back(url);
    return url != "https://full.example";
  });
  EXPECT_TRUE(OpenURLInDefaultBrowser(u"https://example.com/\u00fc"));
  EXPECT_FALSE(OpenURLInDefaultBrowser(u"https://full.example"));
  EXPECT_FALSE(OpenURLInDefaultBrowser(u"file:///etc/passwd"));
  EXPECT_THAT(opened, ElementsAre("https://example.com/\xc3\xbc", "https://full.example"));
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre("qelcore::OpenURLInDefaultBrowser"));
}

TEST_F(BrowserTest, AFailureIsLogged) {
  qelcore::host::SetBrowser([](const std::string&) -> bool { throw std::runtime_error("no browser"); });
  EXPECT_FALSE(OpenURLInDefaultBrowser(u"https://example.com"));
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("no browser"));
}

}  // namespace
