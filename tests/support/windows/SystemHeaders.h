// The system's headers without their macros that disturb ours. For `.cpp` files only.
#pragma once

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#define NOGDI
#include <winsock2.h>
// Behind the header of sockets, which it would replace by an older one.
#include <windows.h>
