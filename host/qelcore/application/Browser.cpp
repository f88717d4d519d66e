#include "platform/qelcore/Browser.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/System.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

using Browser = std::function<bool(const std::string&)>;

struct BrowserHolder {
  std::mutex mMutex;
  std::shared_ptr<const Browser> mBrowser;  ///< null for the system's
};

BrowserHolder& TheBrowser() {
  static BrowserHolder holder;
  return holder;
}

bool StartsWithIgnoringCase(std::u16string_view text, std::u16string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [](char16_t expected, char16_t character) {
           return character == expected ||
                  (character >= u'A' && character <= u'Z' && character - u'A' + u'a' == expected);
         });
}

bool IsWhiteSpaceOrControl(char16_t character) {
  return character <= u' ' || (character >= 0x7F && character <= 0xA0) || character == 0x2028 ||
         character == 0x2029;
}

}  // namespace

bool IsWebAddress(const std::u16string& url) {
  for (const std::u16string_view scheme : {u"http://", u"https://"}) {
    if (!StartsWithIgnoringCase(url, scheme) || url.size() == scheme.size()) continue;
    const char16_t first = url[scheme.size()];
    return first != u'/' && first != u'?' && first != u'#' &&
           std::none_of(url.begin(), url.end(), IsWhiteSpaceOrControl);
  }
  return false;
}

bool OpenURLInDefaultBrowser(const std::u16string& url) {
  try {
    if (!IsWebAddress(url)) throw std::invalid_argument("not an address that a browser may open");
    std::shared_ptr<const Browser> browser;
    {
      BrowserHolder& holder = TheBrowser();
      const std::lock_guard lock(holder.mMutex);
      browser = holder.mBrowser;
    }
    const std::string text = string::UTF16to8(url);
    return browser ? (*browser)(text) : host::OpenInSystemBrowser(text);
  } catch (...) {
    LogException(std::current_exception(), "qelcore::OpenURLInDefaultBrowser");
    return false;
  }
}

void host::SetBrowser(Browser browser) {
  auto shared = browser ? std::make_shared<const Browser>(std::move(browser)) : nullptr;
  BrowserHolder& holder = TheBrowser();
  const std::lock_guard lock(holder.mMutex);
  holder.mBrowser = std::move(shared);
}

}  // namespace qelcore
