#include <fcntl.h>
#include <unistd.h>

#include "host/qelcore/HostSetup.h"

namespace qelcore::host {

void ReserveStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // Read-only, so that writing to an output that the caller closed still fails.
    if (fcntl(stream, F_GETFD) == -1) static_cast<void>(open("/dev/null", O_RDONLY));
  }
}

bool IsStandardErrorATerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace qelcore::host
