// What the toolkit library exports.
#pragma once

#if defined(_WIN32)
#if defined(QELUI_BUILDING)
#define QELUI_EXPORT __declspec(dllexport)
#else
#define QELUI_EXPORT __declspec(dllimport)
#endif
#else
#define QELUI_EXPORT __attribute__((visibility("default")))
#endif
