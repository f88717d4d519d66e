// A process that appends to a log: `log_writer PREFERENCES NAME COUNT LENGTH [die]`. The entries are the
// name, a number and a filling of that length. Ends with the number of exceptions that were logged, or dies
// with 9.
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/diagnostics/JsonLinesLog.h"

int main(int argumentCount, char** arguments) {
  if (argumentCount < 5) return EXIT_FAILURE;
  int exceptions = 0;
  qelcore::host::SetDirectories({.mPreferences = arguments[1]});
  qelcore::host::SetExceptionSink([&](const std::exception_ptr&, std::string_view) { ++exceptions; });
  const qelcore::host::JsonLinesLog log("log.jsonl", "the log");
  const int count = std::atoi(arguments[3]);
  const std::string filling(static_cast<std::size_t>(std::atoi(arguments[4])), 'x');
  for (int number = 0; number < count; ++number) {
    qelcore::json::Dictionary entry;
    qelcore::json::Set(entry, "text", arguments[2] + std::to_string(number) + filling);
    log.Append(entry);
  }
  // Neither destructors nor what is registered for the end runs.
  if (argumentCount > 5) std::_Exit(9);
  return exceptions;
}
