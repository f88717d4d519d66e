// Recorded Windows machines: the files of `tests/host/qelcore/data/windows-machines`.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/components/PropertyKeeping.h"
#include "host/qelcore/windows/components/DeviceSource.h"
#include "host/qelcore/windows/components/SystemFacts.h"
#include "platform/qelcore/Components.h"

namespace testsupport {

/// Devices that a test gives.
class GivenDevices : public qelcore::host::windows::DeviceSource {
 public:
  [[nodiscard]] std::vector<qelcore::host::windows::DeviceRecord> List(
      qelcore::host::windows::DeviceClass deviceClass) const override {
    const auto place = mByClass.find(deviceClass);
    return place == mByClass.end() ? std::vector<qelcore::host::windows::DeviceRecord>() : place->second;
  }

  std::map<qelcore::host::windows::DeviceClass, std::vector<qelcore::host::windows::DeviceRecord>> mByClass;
};

/// A recorded machine: an object with "about"; "system", what the machine says about itself; "display",
/// "media" and "net", its devices in the order that the system lists them in; and "expected", a line for each
/// component. A key that is absent stands for what the machine does not say; an unknown one fails the test.
struct RecordedMachine {
  /// Reads `<name>.json`.
  explicit RecordedMachine(const std::string& name);

  /// The machine's components, for a user "anna" of a machine "ANNAS-PC".
  [[nodiscard]] qelcore::utility::OSComponentRegistry::Components Read(
      const std::optional<qelcore::host::components::PropertyKeeping>& keeping = std::nullopt) const;

  [[nodiscard]] static std::string TextOf(const std::string& name);

  /// The names of all recorded machines, sorted.
  [[nodiscard]] static std::vector<std::string> Names();

  qelcore::host::windows::SystemFacts mFacts;
  GivenDevices mDevices;
  std::vector<std::string> mExpected;
};

}  // namespace testsupport
