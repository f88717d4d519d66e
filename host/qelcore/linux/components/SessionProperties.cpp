// Properties that come from the process's surroundings: language, desktop, display server, free space.
#include <string>
#include <string_view>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {
namespace {

/// The language of messages without encoding and variant: "de_DE" for "de_DE.UTF-8@euro".
std::string Language(const Surroundings& surroundings) {
  for (const std::string_view name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string value = surroundings.Variable(name);
    if (!value.empty()) return value.substr(0, value.find_first_of(".@"));
  }
  return {};
}

std::string DisplayServer(const Surroundings& surroundings) {
  std::string session = surroundings.Variable("XDG_SESSION_TYPE");
  if (session == "wayland" || session == "x11") return session;
  if (!surroundings.Variable("WAYLAND_DISPLAY").empty()) return "wayland";
  return surroundings.Variable("DISPLAY").empty() ? "none" : "x11";
}

}  // namespace

void AddSystemProperties(const OperatingSystem& system, const Surroundings& surroundings,
                         Properties& properties) {
  AddProperty(properties, "os.architecture", surroundings.mArchitecture);
  AddProperty(properties, "os.distribution", system.mDistributionTitle);
  AddProperty(properties, "os.kernel_release", system.mKernelRelease);
  AddProperty(properties, "os.language", Language(surroundings));
}

void AddSessionProperties(const Surroundings& surroundings, Properties& properties) {
  constexpr int kGibibyteShift = 30;
  AddProperty(properties, "desktop.session", surroundings.Variable("XDG_CURRENT_DESKTOP"));
  AddProperty(properties, "display.server", DisplayServer(surroundings));
  if (surroundings.mFreeBytes) {
    AddProperty(properties, "disk.free_gb", std::to_string(*surroundings.mFreeBytes >> kGibibyteShift));
  }
}

}  // namespace qelcore::host::components
