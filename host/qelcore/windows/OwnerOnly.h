// Access rights of files and directories.
#pragma once

#include <memory>

namespace qelcore::host {

/// Frees what the system allocated with `LocalAlloc`.
struct FreeLocal {
  void operator()(void* memory) const noexcept;
};

/// The rights of what only the user may use: nobody but the user, the system and its administrators, whatever
/// the directory above grants. A directory hands them on.
class OwnerOnly {
 public:
  enum class Kind { kFile, kDirectory };

  /// Throws `std::system_error` when the system does not tell who the user is.
  explicit OwnerOnly(Kind kind);

  /// The descriptor of these rights, as `SECURITY_ATTRIBUTES` takes it; lives as long as this object.
  [[nodiscard]] void* Descriptor() const noexcept { return mDescriptor.get(); }

 private:
  std::unique_ptr<void, FreeLocal> mDescriptor;
};

}  // namespace qelcore::host
