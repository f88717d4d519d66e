#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/KnownFolders.h"
#include "host/qelcore/windows/LanguageName.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"
#include "host/qelcore/windows/WideText.h"
// Need the system's header before them.
#include <lmcons.h>

namespace qelcore::host {

namespace {

// Results of `ExpandEnvironment`.
constexpr int kExpanded = 0;
constexpr int kNotSet = 1;
constexpr int kNotClosed = 2;
constexpr int kOnNetwork = 3;

/// The value of an environment variable; nothing when it is not set.
std::optional<std::string> FindVariable(std::string_view name) {
  const std::optional<std::wstring> wideName = ToWideExactly(name);
  // The system keeps the current directories of drives in variables whose names begin with "=".
  if (!wideName || wideName->starts_with(L'=')) {
    return std::nullopt;
  }
  std::wstring value(MAX_PATH, L'\0');
  for (;;) {
    ::SetLastError(ERROR_SUCCESS);
    const DWORD length =
        ::GetEnvironmentVariableW(wideName->c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && ::GetLastError() != ERROR_SUCCESS) {
      return std::nullopt;
    }
    const bool hadRoom = length < value.size();
    value.resize(length);
    if (hadRoom) {
      return ToNarrow(value);
    }
  }
}

/// The first of the languages that the user wants to see texts in, such as "de-DE"; empty when unknown.
std::wstring PreferredLanguage() {
  ULONG count = 0;
  ULONG length = 0;
  if (::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &length) != 0 && length != 0) {
    std::vector<wchar_t> names(length);
    if (::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &length) != 0 && count != 0) {
      return names.data();
    }
  }
  wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
  return ::GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) != 0 ? name : std::wstring();
}

}  // namespace

std::string EnvironmentLanguage() {
  return LanguageFromName(ToNarrow(PreferredLanguage()));
}

PersonalNames ReadPersonalNames() {
  PersonalNames names;
  wchar_t user[UNLEN + 1] = {};
  DWORD userLength = UNLEN + 1;
  if (::GetUserNameW(user, &userLength) != 0) {
    names.mUser = ToNarrow(user);
  }
  wchar_t host[MAX_PATH] = {};
  DWORD hostLength = MAX_PATH;
  if (::GetComputerNameExW(ComputerNameDnsHostname, host, &hostLength) != 0) {
    names.mHost = ToNarrow(host);
  }
  names.mHome = PathOf(KnownFolder::kProfile);
  return names;
}

int ExpandEnvironment(std::string& path) {
  std::string result;
  std::string_view rest = path;
  while (!rest.empty()) {
    const std::size_t begin = rest.find('%');
    result += rest.substr(0, begin);
    if (begin == std::string_view::npos) {
      break;
    }
    rest.remove_prefix(begin + 1);
    const std::size_t end = rest.find('%');
    if (end == std::string_view::npos) {
      return kNotClosed;
    }
    if (end == 0) {
      result += '%';
    } else if (const std::optional<std::string> value = FindVariable(rest.substr(0, end))) {
      result += *value;
    } else {
      return kNotSet;
    }
    rest.remove_prefix(end + 1);
  }
  if (LiesOnNetwork(result)) {
    return kOnNetwork;
  }
  path = std::move(result);
  return kExpanded;
}

}  // namespace qelcore::host
