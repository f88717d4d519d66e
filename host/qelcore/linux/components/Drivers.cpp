#include "host/qelcore/linux/components/Drivers.h"

#include <algorithm>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Versions.h"

namespace qelcore::host::components {
namespace {

/// The kernel marks a module that was built outside of its tree with "O" in the module's taint flags.
bool IsOutOfTree(const RootedFiles& files, const std::string& module) {
  return files.ReadLine("sys/module/" + module + "/taint").find('O') != std::string::npos;
}

bool CarriesLink(const RootedFiles& files, const std::string& interface) {
  return files.ReadLine("sys/class/net/" + interface + "/operstate") == "up";
}

}  // namespace

void ReadDriver(const RootedFiles& files, const std::string& directory, Device& device) {
  device.mDriver = CleanText(files.LinkName(directory + "/driver"));
  device.mModule = files.LinkName(directory + "/driver/module");
  if (device.mModule.empty()) {
    device.mModule = device.mDriver;
    std::replace(device.mModule.begin(), device.mModule.end(), '-', '_');
  }
}

utility::OSComponentVersion DriverVersion(const RootedFiles& files, const Device& device,
                                          const utility::OSComponentVersion& kernel,
                                          const NetworkDriverQuery& askDriver) {
  if (device.mDriver.empty()) return {};
  if (const auto version = ReadVersion(ModuleVersion(files, device.mModule))) return version;
  if (askDriver && !device.mNetworkInterface.empty() && IsOutOfTree(files, device.mModule) &&
      CarriesLink(files, device.mNetworkInterface)) {
    if (const auto version = ReadVersion(askDriver(device.mNetworkInterface))) return version;
  }
  return kernel;
}

std::string ModuleVersion(const RootedFiles& files, const std::string& module) {
  if (module.empty()) return {};
  return CleanText(files.ReadLine("sys/module/" + module + "/version"));
}

}  // namespace qelcore::host::components
