#include "host/qelcore/windows/SystemPath.h"

#include <algorithm>
#include <string_view>

#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"

namespace qelcore::host {

namespace {

constexpr std::wstring_view kLongMark = L"\\\\?\\";
constexpr std::wstring_view kLongNetworkMark = L"\\\\?\\UNC\\";
constexpr std::wstring_view kDeviceMark = L"\\\\.\\";
constexpr std::wstring_view kNetworkMark = L"\\\\";

/// Directories have the lower limit, 248: there must be room for a short file name.
constexpr std::size_t kLongestPlainPath = 240;

/// The path from its root on, without "." and "..", with the system's separators. Empty when there is none.
std::wstring FullPath(const std::wstring& path) {
  std::wstring result(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(result.size()), result.data(), nullptr);
    // Without enough room the answer is the room that is needed.
    const bool hadRoom = length < result.size();
    result.resize(length);
    if (hadRoom || length == 0) {
      return result;
    }
  }
}

wchar_t LowerCase(wchar_t character) {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t one, wchar_t other) { return LowerCase(one) == LowerCase(other); });
}

bool StartsWithDrive(std::wstring_view path) {
  const wchar_t letter = path.empty() ? L'\0' : LowerCase(path[0]);
  return path.size() >= 2 && letter >= L'a' && letter <= L'z' && path[1] == L':';
}

/// The second name in "server\share\...", which for pipes and mailslots is a fixed one.
bool NamesNetworkPipe(std::wstring_view path) {
  const std::size_t begin = path.find(L'\\');
  if (begin == std::wstring_view::npos) {
    return false;
  }
  const std::wstring_view rest = path.substr(begin + 1);
  const std::wstring_view share = rest.substr(0, rest.find(L'\\'));
  return EqualsIgnoringCase(share, L"pipe") || EqualsIgnoringCase(share, L"mailslot");
}

/// The path, or in `error` the code that says what is wrong with it.
std::wstring Convert(const std::string& path, DWORD& error) {
  error = ERROR_SUCCESS;
  if (path.empty()) {
    error = ERROR_PATH_NOT_FOUND;
    return {};
  }
  const std::optional<std::wstring> wide = ToWideExactly(path);
  if (!wide) {
    error = path.find('\0') != std::string::npos ? ERROR_INVALID_PARAMETER : ERROR_NO_UNICODE_TRANSLATION;
    return {};
  }
  if (wide->starts_with(kLongMark)) {
    return *wide;
  }
  std::wstring full = FullPath(*wide);
  if (full.empty()) {
    error = ERROR_INVALID_NAME;
    return {};
  }
  if (full.size() < kLongestPlainPath || full.starts_with(kDeviceMark) || full.starts_with(kLongMark)) {
    return full;
  }
  return full.starts_with(kNetworkMark) ? std::wstring(kLongNetworkMark) + full.substr(kNetworkMark.size())
                                        : std::wstring(kLongMark) + full;
}

}  // namespace

std::wstring SystemPath(const std::string& path) {
  DWORD error = ERROR_SUCCESS;
  std::wstring result = Convert(path, error);
  if (error != ERROR_SUCCESS) {
    ThrowFileError(error, path.substr(0, path.find('\0')));
  }
  return result;
}

std::optional<std::wstring> TrySystemPath(const std::string& path) {
  DWORD error = ERROR_SUCCESS;
  std::wstring result = Convert(path, error);
  return error == ERROR_SUCCESS ? std::optional(std::move(result)) : std::nullopt;
}

bool NamesDevice(const std::wstring& path) {
  std::wstring_view rest = path;
  if (rest.starts_with(kDeviceMark)) {
    return true;
  }
  if (rest.starts_with(kLongNetworkMark)) {
    return NamesNetworkPipe(rest.substr(kLongNetworkMark.size()));
  }
  if (rest.starts_with(kLongMark)) {
    rest.remove_prefix(kLongMark.size());
    return !StartsWithDrive(rest) && !EqualsIgnoringCase(rest.substr(0, rest.find(L'{')), L"Volume");
  }
  return rest.starts_with(kNetworkMark) && NamesNetworkPipe(rest.substr(kNetworkMark.size()));
}

bool LiesOnNetwork(const std::string& path) {
  std::wstring wide = ToWide(path);
  std::replace(wide.begin(), wide.end(), L'/', L'\\');
  std::wstring_view rest = wide;
  if (rest.starts_with(kLongMark) || rest.starts_with(kDeviceMark)) {
    rest.remove_prefix(kLongMark.size());
    // "UNC" is the way to the network, and not the only one.
    if (!StartsWithDrive(rest)) {
      return true;
    }
  }
  if (!StartsWithDrive(rest)) {
    return rest.starts_with(kNetworkMark);
  }
  const std::wstring root = {rest[0], L':', L'\\'};
  return ::GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
}

}  // namespace qelcore::host
