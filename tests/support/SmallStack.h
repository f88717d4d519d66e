// Code on a stack as small as a Windows program's threads have.
#pragma once

#include <functional>

namespace testsupport {

/// Runs `body` on a thread with a stack of 1 MiB and waits for it. `body` must not throw. In a build with
/// sanitizers, whose frames are several times as large, the stack grows with them.
void RunOnStackOfOneMebibyte(const std::function<void()>& body);

}  // namespace testsupport
