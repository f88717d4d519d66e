// The main thread's queue, as the end of the process sees it.
#pragma once

namespace qelcore::host {

/// Drops the tasks that are still waiting. Any thread.
void DropMainThreadTasks();

}  // namespace qelcore::host
