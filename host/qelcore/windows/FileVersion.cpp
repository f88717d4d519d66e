#include <cstddef>
#include <string>
#include <vector>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"

namespace qelcore::host {

namespace {

std::string Dotted(const VS_FIXEDFILEINFO& information) {
  return std::to_string(HIWORD(information.dwFileVersionMS)) + '.' +
         std::to_string(LOWORD(information.dwFileVersionMS)) + '.' +
         std::to_string(HIWORD(information.dwFileVersionLS)) + '.' +
         std::to_string(LOWORD(information.dwFileVersionLS));
}

}  // namespace

std::string NativeFileVersion(const std::string& path) {
  const std::optional<std::wstring> systemPath = TrySystemPath(path);
  if (!systemPath || NamesDevice(*systemPath)) {
    return {};
  }
  // The version of the file itself, not that of its translation into the user's language.
  constexpr DWORD kFlags = FILE_VER_GET_NEUTRAL;
  DWORD unused = 0;
  const DWORD size = ::GetFileVersionInfoSizeExW(kFlags, systemPath->c_str(), &unused);
  if (size == 0) {
    return {};
  }
  std::vector<std::byte> resource(size);
  void* value = nullptr;
  UINT length = 0;
  if (::GetFileVersionInfoExW(kFlags, systemPath->c_str(), 0, size, resource.data()) == 0 ||
      ::VerQueryValueW(resource.data(), L"\\", &value, &length) == 0 || value == nullptr ||
      length < sizeof(VS_FIXEDFILEINFO)) {
    return {};
  }
  const auto& information = *static_cast<const VS_FIXEDFILEINFO*>(value);
  return information.dwSignature == VS_FFI_SIGNATURE ? Dotted(information) : std::string();
}

}  // namespace qelcore::host
