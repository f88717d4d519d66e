// A registry of one test's own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace testsupport {

/// While it lives, this process finds an empty key in the place of the machine's registry
/// (HKEY_LOCAL_MACHINE). The keys go with it. At most one at a time. Wine's setup functions look there too;
/// those of Windows ask a service, which does not.
class OwnRegistry {
 public:
  OwnRegistry();
  ~OwnRegistry();
  OwnRegistry(const OwnRegistry&) = delete;
  OwnRegistry& operator=(const OwnRegistry&) = delete;

  // Each sets a value and makes the keys that lead to it.

  void SetText(const std::wstring& key, const wchar_t* name, const std::wstring& text);
  void SetTexts(const std::wstring& key, const wchar_t* name, const std::vector<std::wstring>& texts);
  void SetNumber(const std::wstring& key, const wchar_t* name, std::uint32_t number);
  void SetBytes(const std::wstring& key, const wchar_t* name, const std::vector<unsigned char>& bytes);

 private:
  void Set(const std::wstring& key, const wchar_t* name, unsigned long type, const void* bytes,
           std::size_t size);

  std::wstring mPlace;
  void* mRoot = nullptr;
};

}  // namespace testsupport
