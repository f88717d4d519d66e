// Where the libraries come from that are loaded while the program runs.
#pragma once

namespace app {

/// Leaves the current directory and the environment's path out of the search for libraries, where the system
/// would look there. To be called before anything is loaded.
#if defined(_WIN32)
void RestrictLibrarySearch();
#else
inline void RestrictLibrarySearch() {}
#endif

}  // namespace app
