// The mark of everything that the core library exports.
#pragma once

#if defined(_WIN32)
#if defined(QELCORE_BUILDING)
#define QELCORE_EXPORT __declspec(dllexport)
#else
#define QELCORE_EXPORT __declspec(dllimport)
#endif
#else
#define QELCORE_EXPORT __attribute__((visibility("default")))
#endif
