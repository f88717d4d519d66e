#include "host/qelnet/StayLoaded.h"

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#define NOGDI
#include <windows.h>

namespace qelnet {

void StayLoaded() {
  HMODULE library = nullptr;
  // Cannot fail: the address is the library's own.
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&StayLoaded)), &library);
}

}  // namespace qelnet
