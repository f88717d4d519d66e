// The system's own header, without what would disturb ours: macros named `min`, `max` and `ERROR`, and parts
// that nobody needs. For the `.cpp` files of this folder only; no header may include it.
#pragma once

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined(NOGDI)
#define NOGDI
#endif
#include <windows.h>
