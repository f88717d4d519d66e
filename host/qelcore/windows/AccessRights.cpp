#include "host/qelcore/windows/AccessRights.h"

#include <memory>

#include "host/qelcore/windows/FileError.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/OwnerOnly.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/SystemPath.h"
// Needs the system's header before it.
#include <aclapi.h>

namespace qelcore::host {

namespace {

Handle OpenForRights(const std::string& path, DWORD access) {
  return Handle(::CreateFileW(SystemPath(path).c_str(), access,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              0, nullptr));
}

/// Whether the code says that the disk knows no access rights.
bool SaysNoRights(DWORD code) {
  return code == ERROR_NOT_SUPPORTED || code == ERROR_INVALID_FUNCTION;
}

}  // namespace

void CopyAccessRights(const std::string& from, const std::string& to) {
  const Handle source = OpenForRights(from, READ_CONTROL);
  if (!source.IsValid()) {
    return;
  }
  PACL entries = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (::GetSecurityInfo(source.Get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &entries,
                        nullptr, &descriptor) != ERROR_SUCCESS) {
    return;
  }
  const std::unique_ptr<void, FreeLocal> owner(descriptor);
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (::GetSecurityDescriptorControl(descriptor, &control, &revision) == 0) {
    return;
  }
  const Handle target = OpenForRights(to, WRITE_DAC | READ_CONTROL);
  if (!target.IsValid()) {
    ThrowFileError(::GetLastError(), to);
  }
  // Whether the directory above has a say is a right of its own.
  const bool isProtected = (control & SE_DACL_PROTECTED) != 0;
  const SECURITY_INFORMATION inheritance =
      isProtected ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
  const DWORD code = ::SetSecurityInfo(target.Get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance,
                                       nullptr, nullptr, entries, nullptr);
  if (code != ERROR_SUCCESS && !SaysNoRights(code)) {
    ThrowFileError(code, to);
  }
}

}  // namespace qelcore::host
