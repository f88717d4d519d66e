// The system that the tests run on, as its component is named.
#pragma once

namespace testsupport {

#if defined(_WIN32)
inline constexpr const char* kSystemName = "Windows";
#else
inline constexpr const char* kSystemName = "Linux";
#endif

}  // namespace testsupport
