#include "host/qelcore/windows/OwnerOnly.h"

#include <array>
#include <cstddef>
#include <string>

#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/SystemHeaders.h"
// Needs the header above it.
#include <sddl.h>

namespace qelcore::host {

namespace {

constexpr const char* kSubject = "the user's account";

/// The identifier of the user who runs the process, as text.
std::wstring UserIdentifier() {
  HANDLE opened = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
    ThrowFileError(::GetLastError(), kSubject);
  }
  const Handle token(opened);
  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> buffer{};
  DWORD size = 0;
  if (::GetTokenInformation(token.Get(), TokenUser, buffer.data(), static_cast<DWORD>(buffer.size()),
                            &size) == 0) {
    ThrowFileError(::GetLastError(), kSubject);
  }
  LPWSTR text = nullptr;
  if (::ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(buffer.data())->User.Sid, &text) == 0) {
    ThrowFileError(::GetLastError(), kSubject);
  }
  const std::unique_ptr<void, FreeLocal> owner(text);
  return text;
}

}  // namespace

void FreeLocal::operator()(void* memory) const noexcept {
  ::LocalFree(memory);
}

OwnerOnly::OwnerOnly(Kind kind) {
  // Each entry: allow, inherited by what is made inside, full access, to whom.
  const std::wstring begin = kind == Kind::kDirectory ? L"(A;OICI;FA;;;" : L"(A;;FA;;;";
  const std::wstring rights = L"D:P" + begin + UserIdentifier() + L")" + begin + L"SY)" + begin + L"BA)";
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &descriptor,
                                                             nullptr) == 0) {
    ThrowFileError(::GetLastError(), kSubject);
  }
  mDescriptor.reset(descriptor);
}

}  // namespace qelcore::host
