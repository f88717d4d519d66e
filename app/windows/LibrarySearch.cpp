#include "app/LibrarySearch.h"

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#define NOGDI
#include <windows.h>

namespace app {

void RestrictLibrarySearch() {
  // Cannot fail with these directories: the program's own and the system's.
  ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

}  // namespace app
