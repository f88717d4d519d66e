// The mark of everything that the library exports. Everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(QELSCR_BUILDING)
#define QELSCR_EXPORT __declspec(dllexport)
#else
#define QELSCR_EXPORT __declspec(dllimport)
#endif
#else
#define QELSCR_EXPORT __attribute__((visibility("default")))
#endif
