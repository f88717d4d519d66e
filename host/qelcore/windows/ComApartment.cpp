#include "host/qelcore/windows/ComApartment.h"

#include "host/qelcore/windows/SystemHeaders.h"
// Needs the system's header before it.
#include <objbase.h>

namespace qelcore::host {

// The call fails, and nothing is to be undone, on a thread that is ready in another way.
ComApartment::ComApartment() noexcept
    : mIsEntered(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}

ComApartment::~ComApartment() {
  if (mIsEntered) {
    ::CoUninitialize();
  }
}

}  // namespace qelcore::host
