#include "host/qelcore/windows/components/Registry.h"

#include <array>
#include <cstddef>
#include <utility>

#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"

namespace qelcore::host::windows {
namespace {

/// The most that is read of a text, in bytes. Those that are read are names and versions.
constexpr DWORD kLongestText = 65'536;

HKEY SystemKey(void* key) {
  return static_cast<HKEY>(key);
}

}  // namespace

RegistryKey::RegistryKey(const wchar_t* path) noexcept {
  HKEY key = nullptr;
  if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS) mKey = key;
}

RegistryKey RegistryKey::Adopt(void* key) noexcept {
  RegistryKey result;
  if (key != INVALID_HANDLE_VALUE) result.mKey = key;
  return result;
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : mKey(std::exchange(other.mKey, nullptr)) {}

RegistryKey::~RegistryKey() {
  if (mKey != nullptr) ::RegCloseKey(SystemKey(mKey));
}

std::string RegistryKey::Text(const wchar_t* name) const {
  constexpr DWORD kFlags = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
  if (mKey == nullptr) return {};
  std::wstring text(MAX_PATH, L'\0');
  LSTATUS status = ERROR_MORE_DATA;
  while (status == ERROR_MORE_DATA && text.size() * sizeof(wchar_t) <= kLongestText) {
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    status = ::RegGetValueW(SystemKey(mKey), nullptr, name, kFlags, nullptr, text.data(), &size);
    // The value may grow between two calls, so that the size of the first is no promise.
    if (status == ERROR_MORE_DATA) text.resize(text.size() * 2);
  }
  return status == ERROR_SUCCESS ? ToNarrow(text.c_str()) : std::string();
}

std::optional<std::uint64_t> RegistryKey::Number(const wchar_t* name) const {
  if (mKey == nullptr) return std::nullopt;
  std::array<unsigned char, sizeof(std::uint64_t)> bytes{};
  DWORD size = sizeof bytes;
  if (::RegGetValueW(SystemKey(mKey), nullptr, name, RRF_RT_REG_DWORD | RRF_RT_REG_QWORD | RRF_RT_REG_BINARY,
                     nullptr, bytes.data(), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  if (size != sizeof(std::uint32_t) && size != sizeof(std::uint64_t)) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t index = size; index-- > 0;) number = number << 8 | bytes[index];
  return number;
}

}  // namespace qelcore::host::windows
