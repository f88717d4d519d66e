// Where the objects that tests hand to the library as their host's say that they are called.
#pragma once

#include <functional>
#include <string_view>

namespace testsupport {

/// Gets the name of each function of the host's objects, such as "View::AddText", before it does its work.
/// What it throws, the function throws. An empty function takes it away. Main thread.
void SetHostCallHook(std::function<void(std::string_view function)> hook);

/// To be called at the beginning of each such function.
void OnHostCall(std::string_view function);

}  // namespace testsupport
