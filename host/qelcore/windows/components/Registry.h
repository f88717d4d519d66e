// Reading of the system's registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qelcore::host::windows {

/// An open key of the registry, for reading. What is missing, unreadable or of another type than asked for
/// counts as absent; nothing throws.
class RegistryKey {
 public:
  /// A key below the machine's root, such as "SOFTWARE\Microsoft".
  explicit RegistryKey(const wchar_t* path) noexcept;

  /// Takes over a key that the system opened; an invalid one has no values.
  [[nodiscard]] static RegistryKey Adopt(void* key) noexcept;

  RegistryKey(RegistryKey&& other) noexcept;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  RegistryKey& operator=(RegistryKey&&) = delete;
  ~RegistryKey();

  /// A text as UTF-8; empty when absent. Placeholders in it are not expanded.
  [[nodiscard]] std::string Text(const wchar_t* name) const;

  /// A number of 32 or 64 bits, also one that is stored as bytes, the lowest first.
  [[nodiscard]] std::optional<std::uint64_t> Number(const wchar_t* name) const;

 private:
  RegistryKey() = default;

  void* mKey = nullptr;
};

}  // namespace qelcore::host::windows
