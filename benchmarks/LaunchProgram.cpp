// What an application does at its start, as `scr launch` does it, but on a recorded machine:
//
//   launch FOLDER MACHINE          the launch, with the folders "preferences" and "application" in FOLDER
//   launch LIST MACHINE only-read  its yardstick: starts, loads the same libraries, reads both
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "benchmarks/Machine.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace {

using namespace qelsystemcompatibilityreport;

std::shared_ptr<const qelcore::utility::OSComponentRegistry> ReadRegistry(const std::string& machinePath) {
  return std::make_shared<const qelcore::utility::OSComponentRegistry>(
      benchmarks::MakeRegistry(benchmarks::ReadMachine(machinePath)));
}

int OnlyRead(const std::string& listPath, const std::string& machinePath) {
  const qelcore::filesupport::File list(qelcore::string::UTF8to16(listPath));
  const std::string text = qelcore::filesupport::IPlatformByteStream(list).ReadAll();
  return text.empty() || ReadRegistry(machinePath)->GetAllComponents().empty() ? 1 : 0;
}

int Launch(const std::string& folder, const std::string& machinePath) {
  const std::string preferences = folder + "/preferences";
  qelcore::host::SetDirectories({.mPreferences = preferences,
                                 .mApplication = folder + "/application",
                                 .mDocuments = {},
                                 .mState = preferences});
  qelcore::host::SetApplicationLanguage("en_US");
  qelcore::host::SetComponentSource(
      [registry = ReadRegistry(machinePath)](bool /*again*/) { return registry; });
  if (!qelcore::host::BeginProcess()) throw std::runtime_error("the host could not be started");
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kStarted);
  RunReportForStartup(qelcore::GetApplicationName(), nullptr);
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  const std::uint64_t issues = CountFatalIncompatibilities() + CountErrorIncompatibilities() +
                               CountWarnIncompatibilities() + CountInfoIncompatibilities();
  std::puts((std::to_string(issues) + " issues").c_str());
  qelcore::host::EndProcess();
  return 0;
}

}  // namespace

int main(int count, char** texts) {
  const bool isOnlyRead = count == 4 && std::string_view(texts[3]) == "only-read";
  if (count != 3 && !isOnlyRead) {
    std::fputs("usage: launch FOLDER MACHINE, or launch LIST MACHINE only-read\n", stderr);
    return 2;
  }
  try {
    return isOnlyRead ? OnlyRead(texts[1], texts[2]) : Launch(texts[1], texts[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "launch: %s\n", error.what());
    return 1;
  }
}
