// Threads of curl's may look a name up for longer than anybody waits for it, in code that must not go away.
#pragma once

namespace qelnet {

/// Keeps this library in the process to its end, even when whoever loaded it lets it go. Elsewhere it was
/// loaded to stay.
#if defined(_WIN32)
void StayLoaded();
#else
inline void StayLoaded() {}
#endif

}  // namespace qelnet
