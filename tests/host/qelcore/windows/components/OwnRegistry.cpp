#include "tests/host/qelcore/windows/components/OwnRegistry.h"

#include <gtest/gtest.h>

#include "host/qelcore/windows/SystemHeaders.h"

namespace testsupport {

OwnRegistry::OwnRegistry() : mPlace(L"Software\\qelscr-test-" + std::to_wstring(::GetCurrentProcessId())) {
  HKEY root = nullptr;
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, mPlace.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &root, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, root), ERROR_SUCCESS);
  mRoot = root;
}

OwnRegistry::~OwnRegistry() {
  ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  ::RegCloseKey(static_cast<HKEY>(mRoot));
  ::RegDeleteTreeW(HKEY_CURRENT_USER, mPlace.c_str());
}

void OwnRegistry::SetText(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  Set(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void OwnRegistry::SetTexts(const std::wstring& key, const wchar_t* name,
                           const std::vector<std::wstring>& texts) {
  std::wstring units;
  for (const std::wstring& text : texts) units += text + L'\0';
  units += L'\0';
  Set(key, name, REG_MULTI_SZ, units.data(), units.size() * sizeof(wchar_t));
}

void OwnRegistry::SetNumber(const std::wstring& key, const wchar_t* name, std::uint32_t number) {
  Set(key, name, REG_DWORD, &number, sizeof number);
}

void OwnRegistry::SetBytes(const std::wstring& key, const wchar_t* name,
                           const std::vector<unsigned char>& bytes) {
  Set(key, name, REG_BINARY, bytes.data(), bytes.size());
}

void OwnRegistry::Set(const std::wstring& key, const wchar_t* name, unsigned long type, const void* bytes,
                      std::size_t size) {
  HKEY opened = nullptr;
  ASSERT_EQ(::RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                              nullptr, &opened, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(
      ::RegSetValueExW(opened, name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)),
      ERROR_SUCCESS);
  ::RegCloseKey(opened);
}

}  // namespace testsupport
