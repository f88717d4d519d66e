#include "host/qelcore/windows/KnownFolders.h"

#include <memory>

#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"
// Need the system's header before them.
#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

namespace qelcore::host {

namespace {

struct FreeTaskMemory {
  void operator()(wchar_t* memory) const noexcept { ::CoTaskMemFree(memory); }
};

const KNOWNFOLDERID& IdentifierOf(KnownFolder folder) {
  switch (folder) {
    case KnownFolder::kRoamingData:
      return FOLDERID_RoamingAppData;
    case KnownFolder::kLocalData:
      return FOLDERID_LocalAppData;
    case KnownFolder::kDocuments:
      return FOLDERID_Documents;
    case KnownFolder::kProfile:
      break;
  }
  return FOLDERID_Profile;
}

}  // namespace

std::string PathOf(KnownFolder folder) {
  wchar_t* path = nullptr;
  // Without the flag a folder that is missing, or on a drive that is away, has no path.
  const HRESULT result = ::SHGetKnownFolderPath(IdentifierOf(folder), KF_FLAG_DONT_VERIFY, nullptr, &path);
  // The memory is to be freed in either case.
  const std::unique_ptr<wchar_t, FreeTaskMemory> owner(path);
  return SUCCEEDED(result) && path != nullptr ? ToNarrow(path) : std::string();
}

}  // namespace qelcore::host
