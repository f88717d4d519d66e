#include "tests/host/qelcore/windows/components/RecordedMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <any>
#include <filesystem>
#include <set>

#include "host/qelcore/windows/components/ReadMachine.h"
#include "platform/qelcore/Json.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

namespace {

using qelcore::host::windows::DeviceClass;
using qelcore::host::windows::DeviceRecord;
using qelcore::host::windows::SystemFacts;
using qelcore::json::Array;
using qelcore::json::Dictionary;

std::filesystem::path MachinesDirectory() {
  return std::filesystem::path(QELSCR_SOURCE_DIR) / "tests/host/qelcore/data/windows-machines";
}

/// An object whose keys must all be asked for.
class Members {
 public:
  explicit Members(const Dictionary& object) : mObject(object) {}
  ~Members() {
    for (const auto& [key, value] : mObject) EXPECT_TRUE(mAsked.contains(key)) << "unknown key: " << key;
  }
  Members(const Members&) = delete;
  Members& operator=(const Members&) = delete;

  std::string Text(const std::string& key) {
    mAsked.insert(key);
    const std::string* const text = qelcore::json::FindText(mObject, key);
    return text != nullptr ? *text : std::string();
  }

  std::vector<std::string> Texts(const std::string& key) {
    mAsked.insert(key);
    std::vector<std::string> texts;
    if (const Array* const array = qelcore::json::FindArray(mObject, key)) {
      for (const std::any& text : *array) texts.push_back(std::any_cast<std::string>(text));
    }
    return texts;
  }

  template <typename Number>
  void Read(const std::string& key, std::optional<Number>& number) {
    mAsked.insert(key);
    if (const auto found = qelcore::json::FindInteger(mObject, key)) number = static_cast<Number>(*found);
  }

  void Read(const std::string& key, std::optional<bool>& value) {
    mAsked.insert(key);
    value = qelcore::json::FindBool(mObject, key);
  }

 private:
  const Dictionary& mObject;
  std::set<std::string> mAsked;
};

SystemFacts FactsOf(const Dictionary& object) {
  Members members(object);
  SystemFacts facts;
  facts.mVersion = qelcore::utility::OSComponentVersion(members.Text("version"));
  facts.mProductName = members.Text("product_name");
  facts.mDisplayVersion = members.Text("display_version");
  facts.mArchitecture = members.Text("architecture");
  facts.mLanguage = members.Text("language");
  facts.mFirmware.mManufacturer = members.Text("manufacturer");
  facts.mFirmware.mModel = members.Text("model");
  facts.mFirmware.mFirmwareVendor = members.Text("bios_vendor");
  facts.mFirmwareVersion = members.Text("bios_version");
  facts.mFirmwareDate = members.Text("bios_date");
  members.Read("chassis", facts.mChassis);
  members.Read("secure_boot", facts.mIsSecureBootEnabled);
  facts.mHypervisor.mName = members.Text("hypervisor");
  facts.mHypervisor.mIsPresent = !facts.mHypervisor.mName.empty();
  facts.mProcessorName = members.Text("processor");
  members.Read("cores", facts.mCores);
  members.Read("logical_processors", facts.mLogicalProcessors);
  members.Read("memory_bytes", facts.mMemoryBytes);
  members.Read("page_file_bytes", facts.mPageFileBytes);
  members.Read("dots_per_inch", facts.mDotsPerInch);
  members.Read("monitors", facts.mMonitors);
  members.Read("remote_session", facts.mIsRemoteSession);
  return facts;
}

DeviceRecord RecordOf(const Dictionary& object) {
  Members members(object);
  DeviceRecord record;
  record.mInstance = members.Text("instance");
  members.Read("bus_number", record.mBusNumber);
  members.Read("bus_address", record.mBusAddress);
  record.mFriendlyName = members.Text("friendly_name");
  record.mDescription = members.Text("description");
  record.mHardwareIds = members.Texts("hardware_ids");
  record.mService = members.Text("service");
  record.mProvider = members.Text("provider");
  record.mDriverVersion = members.Text("driver_version");
  record.mDriverDate = members.Text("driver_date");
  members.Read("memory_bytes", record.mMemoryBytes);
  members.Read("problem", record.mProblem);
  return record;
}

}  // namespace

RecordedMachine::RecordedMachine(const std::string& name) {
  const std::any json = qelcore::json::Parse(TextOf(name));
  const Dictionary& object = qelcore::json::AsDictionary(json);
  mFacts = FactsOf(*qelcore::json::FindDictionary(object, "system"));
  for (const auto& [key, deviceClass] : {std::pair{"display", DeviceClass::kDisplay},
                                         {"media", DeviceClass::kMedia},
                                         {"net", DeviceClass::kNet}}) {
    for (const std::any& device : *qelcore::json::FindArray(object, key)) {
      mDevices.mByClass[deviceClass].push_back(RecordOf(qelcore::json::AsDictionary(device)));
    }
  }
  for (const std::any& line : *qelcore::json::FindArray(object, "expected")) {
    mExpected.push_back(std::any_cast<std::string>(line));
  }
}

qelcore::utility::OSComponentRegistry::Components RecordedMachine::Read(
    const std::optional<qelcore::host::components::PropertyKeeping>& keeping) const {
  const qelcore::host::PersonalNames names{.mUser = "anna", .mHost = "ANNAS-PC", .mHome = "C:\\Users\\anna"};
  return qelcore::host::windows::ReadMachine(mDevices, mFacts, names, keeping);
}

std::string RecordedMachine::TextOf(const std::string& name) {
  return ReadWholeFile(MachinesDirectory() / (name + ".json"));
}

std::vector<std::string> RecordedMachine::Names() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(MachinesDirectory())) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace testsupport
