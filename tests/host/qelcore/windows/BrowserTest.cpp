// Opening a page in the browser that the user chose: here a program of the tests.
#include "platform/qelcore/Browser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::host::Handle;
using qelcore::host::OpenInSystemBrowser;
using testing::EndsWith;
using testsupport::EnvironmentVariable;

/// Names of this process alone, since tests run side by side.
const std::string kOwnName = "qelscr-browser-test-" + std::to_string(::GetCurrentProcessId());
const std::wstring kClassesKey = L"Software\\" + qelcore::host::ToWide(kOwnName);
const std::string kEventName = "Local\\" + kOwnName;
constexpr DWORD kPatience = 60'000;

/// The browser for "http", of this process alone, for as long as the object lives: what programs are for is
/// looked up in a key of the test's own.
class ChosenBrowser {
 public:
  explicit ChosenBrowser(const std::wstring& command) {
    EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, kClassesKey.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                                KEY_ALL_ACCESS, nullptr, &mClasses, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(::RegOverridePredefKey(HKEY_CLASSES_ROOT, mClasses), ERROR_SUCCESS);
    HKEY key = nullptr;
    EXPECT_EQ(::RegCreateKeyExW(HKEY_CLASSES_ROOT, L"http\\shell\\open\\command", 0, nullptr,
                                REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(::RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()),
                               static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    ::RegCloseKey(key);
  }
  ~ChosenBrowser() {
    ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    ::RegCloseKey(mClasses);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kClassesKey.c_str());
  }
  ChosenBrowser(const ChosenBrowser&) = delete;
  ChosenBrowser& operator=(const ChosenBrowser&) = delete;

 private:
  HKEY mClasses = nullptr;
};

class WindowsBrowser : public testing::Test {
 protected:
  /// The command line that the browser got.
  [[nodiscard]] std::string CommandLine() const {
    if (::WaitForSingleObject(mEvent.Get(), kPatience) != WAIT_OBJECT_0) return "no browser was started";
    const std::string bytes = mDirectory.Read("command line");
    std::wstring line(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(line.data(), bytes.data(), line.size() * sizeof(wchar_t));
    return qelcore::host::ToNarrow(line);
  }

  testsupport::TemporaryDirectory mDirectory;
  EnvironmentVariable mFile{"QELSCR_BROWSER_FILE", (mDirectory.Path() / "command line").string()};
  EnvironmentVariable mEventName{"QELSCR_BROWSER_EVENT", kEventName};
  Handle mEvent{::CreateEventW(nullptr, TRUE, FALSE, qelcore::host::ToWide(kEventName).c_str())};
  ChosenBrowser mBrowser{L"\"" + std::filesystem::path(QELSCR_BROWSER).make_preferred().wstring() +
                         L"\" --page \"%1\""};
};

TEST_F(WindowsBrowser, GetsTheAddress) {
  EXPECT_TRUE(OpenInSystemBrowser("http://example.org/a?b=c&d=%20#e"));
  EXPECT_THAT(CommandLine(), EndsWith(" --page \"http://example.org/a?b=c&d=%20#e\""));
}

TEST_F(WindowsBrowser, AnAddressCannotAddParameters) {
  EXPECT_TRUE(OpenInSystemBrowser("http://example.org/\"--evil\"\\\\|^`<>{}"));
  EXPECT_THAT(CommandLine(),
              EndsWith(" --page \"http://example.org/%22--evil%22%5C%5C%7C%5E%60%3C%3E%7B%7D\""));
}

TEST_F(WindowsBrowser, OnlyWebAddressesReachTheShell) {
  for (const char* const url :
       {"file:///C:/windows/system32/cmd.exe", "C:\\windows\\system32\\cmd.exe", "cmd.exe", "mailto:a@b.org",
        "javascript:alert(1)", "http:", "https://", "\\\\server\\share\\program.exe", ""}) {
    EXPECT_THROW(static_cast<void>(OpenInSystemBrowser(url)), std::system_error) << url;
  }
  EXPECT_FALSE(std::filesystem::exists(mDirectory.Path() / "command line"));
}

}  // namespace
