#include "host/qelcore/linux/components/OperatingSystem.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Versions.h"

namespace qelcore::host::components {
namespace {

using utility::OSComponent;
using utility::OSComponentType;

constexpr std::string_view kKernelName = "Linux";

/// A value of os-release as a shell would read it, as far as such files go: with or without quotes, and with
/// backslashes before what they protect.
std::string Unquote(std::string_view value) {
  const char quote = value.empty() ? '\0' : value.front();
  const bool isQuoted = value.size() >= 2 && (quote == '"' || quote == '\'') && value.back() == quote;
  if (isQuoted) value = value.substr(1, value.size() - 2);
  if (isQuoted && quote == '\'') return std::string(value);
  std::string text;
  for (std::size_t index = 0; index < value.size(); ++index) {
    if (value[index] == '\\' && index + 1 < value.size()) ++index;
    text += value[index];
  }
  return text;
}

std::map<std::string, std::string, std::less<>> ReadReleaseFile(const RootedFiles& files) {
  std::optional<std::string> content = files.Read("etc/os-release");
  if (!content) content = files.Read("usr/lib/os-release");
  std::map<std::string, std::string, std::less<>> values;
  ForEachLine(content.value_or(std::string()), [&](std::string_view line) {
    line = Trim(line);
    const std::size_t equals = line.find('=');
    if (equals != std::string_view::npos && !line.starts_with('#')) {
      values[std::string(line.substr(0, equals))] = CleanText(Unquote(line.substr(equals + 1)));
    }
    return true;
  });
  return values;
}

}  // namespace

OperatingSystem ReadOperatingSystem(const RootedFiles& files) {
  OperatingSystem system;
  system.mKernelRelease = CleanText(files.ReadLine("proc/sys/kernel/osrelease"));
  system.mKernelVersion = ReadVersion(system.mKernelRelease);
  auto values = ReadReleaseFile(files);
  system.mDistribution = values["NAME"];
  system.mDistributionVersion = values["VERSION_ID"];
  system.mDistributionTitle = values["PRETTY_NAME"].empty() ? values["NAME"] : values["PRETTY_NAME"];
  return system;
}

std::vector<OSComponent> ComponentsOf(const OperatingSystem& system) {
  std::vector<OSComponent> components;
  components.emplace_back(OSComponentType::kOS, std::string(kKernelName), system.mKernelVersion);
  // A distribution without a name of its own calls itself "Linux", which is the kernel's here.
  if (!system.mDistribution.empty() && system.mDistribution != kKernelName) {
    components.emplace_back(OSComponentType::kOS, system.mDistribution,
                            ReadVersion(system.mDistributionVersion));
  }
  return components;
}

}  // namespace qelcore::host::components
