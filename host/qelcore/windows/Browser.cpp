#include <string>
#include <string_view>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/ComApartment.h"
#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"
#include "platform/qelcore/Browser.h"
#include "platform/qelcore/Text.h"
// Needs the system's header before it.
#include <shellapi.h>

namespace qelcore::host {

namespace {

/// The address without the characters that none may hold. One that is left as it is could end the quotation
/// marks round it in the command line of a browser, and begin a parameter of its own.
std::string WithoutForeignCharacters(std::string_view url) {
  constexpr std::string_view kForeign = "\"<>\\^`{|}";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const char character : url) {
    if (kForeign.find(character) == std::string_view::npos) {
      result += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      result += '%';
      result += kDigits[byte >> 4];
      result += kDigits[byte & 0x0F];
    }
  }
  return result;
}

}  // namespace

bool OpenInSystemBrowser(const std::string& url) {
  // The shell opens anything, programs too.
  if (!IsWebAddress(string::UTF8to16(url))) {
    ThrowFileError(ERROR_INVALID_PARAMETER, url);
  }
  const std::wstring address = ToWide(WithoutForeignCharacters(url));
  const ComApartment apartment;
  SHELLEXECUTEINFOW request{};
  request.cbSize = sizeof request;
  // The calling thread may end at once, and a failure is for the caller to tell.
  request.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
  request.lpFile = address.c_str();
  request.nShow = SW_SHOWNORMAL;
  if (::ShellExecuteExW(&request) == 0) {
    ThrowFileError(::GetLastError(), "the web browser");
  }
  return true;
}

}  // namespace qelcore::host
