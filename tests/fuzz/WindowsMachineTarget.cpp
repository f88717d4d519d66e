// The readers of a Windows machine: the input is what its registry says, in the form of the recorded
// machines.
#include <any>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/windows/components/ReadMachine.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/MachineComponents.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
namespace windows = qelcore::host::windows;
using fuzz::Require;

/// An object's members; whatever is missing or of another type is absent.
class Members {
 public:
  explicit Members(const std::any& value) {
    if (const auto* const object = std::any_cast<json::Dictionary>(&value)) mObject = *object;
  }

  [[nodiscard]] std::any Value(const char* key) const {
    const auto found = mObject.find(key);
    return found == mObject.end() ? std::any() : *found->second;
  }

  [[nodiscard]] std::string Text(const char* key) const {
    const std::any value = Value(key);
    const auto* const text = std::any_cast<std::string>(&value);
    return text == nullptr ? std::string() : *text;
  }

  [[nodiscard]] json::Array Elements(const char* key) const {
    const std::any value = Value(key);
    const auto* const array = std::any_cast<json::Array>(&value);
    return array == nullptr ? json::Array() : *array;
  }

  template <typename Number>
  [[nodiscard]] std::optional<Number> Integer(const char* key) const {
    const std::any value = Value(key);
    const auto* const number = std::any_cast<std::int64_t>(&value);
    return number == nullptr ? std::nullopt : std::optional(static_cast<Number>(*number));
  }

  [[nodiscard]] std::optional<bool> Bool(const char* key) const {
    const std::any value = Value(key);
    const auto* const boolean = std::any_cast<bool>(&value);
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
  }

 private:
  json::Dictionary mObject;
};

windows::SystemFacts FactsOf(const Members& members) {
  windows::SystemFacts facts;
  facts.mVersion = qelcore::utility::OSComponentVersion(members.Text("version"));
  facts.mProductName = members.Text("product_name");
  facts.mDisplayVersion = members.Text("display_version");
  facts.mArchitecture = members.Text("architecture");
  facts.mLanguage = members.Text("language");
  facts.mFirmware.mManufacturer = members.Text("manufacturer");
  facts.mFirmware.mModel = members.Text("model");
  facts.mFirmware.mBoardManufacturer = members.Text("board_manufacturer");
  facts.mFirmware.mFirmwareVendor = members.Text("bios_vendor");
  facts.mFirmwareVersion = members.Text("bios_version");
  facts.mFirmwareDate = members.Text("bios_date");
  facts.mChassis = members.Integer<std::uint8_t>("chassis");
  facts.mIsSecureBootEnabled = members.Bool("secure_boot");
  facts.mHypervisor.mName = members.Text("hypervisor");
  facts.mHypervisor.mIsPresent = !facts.mHypervisor.mName.empty();
  facts.mHypervisor.mIsRootPartition = members.Bool("root_partition").value_or(false);
  facts.mIsContainer = members.Bool("container").value_or(false);
  facts.mProcessorName = members.Text("processor");
  facts.mCores = members.Integer<std::uint64_t>("cores");
  facts.mLogicalProcessors = members.Integer<std::uint64_t>("logical_processors");
  facts.mMemoryBytes = members.Integer<std::uint64_t>("memory_bytes");
  facts.mPageFileBytes = members.Integer<std::uint64_t>("page_file_bytes");
  facts.mDotsPerInch = members.Integer<std::uint32_t>("dots_per_inch");
  facts.mMonitors = members.Integer<std::uint32_t>("monitors");
  facts.mIsRemoteSession = members.Bool("remote_session");
  facts.mFreeBytes = members.Integer<std::uint64_t>("free_bytes");
  return facts;
}

windows::DeviceRecord RecordOf(const Members& members) {
  windows::DeviceRecord record;
  record.mInstance = members.Text("instance");
  record.mBusNumber = members.Integer<std::uint32_t>("bus_number");
  record.mBusAddress = members.Integer<std::uint32_t>("bus_address");
  record.mFriendlyName = members.Text("friendly_name");
  record.mDescription = members.Text("description");
  for (const std::any& element : members.Elements("hardware_ids")) {
    if (const auto* const text = std::any_cast<std::string>(&element)) record.mHardwareIds.push_back(*text);
  }
  record.mService = members.Text("service");
  record.mProvider = members.Text("provider");
  record.mDriverVersion = members.Text("driver_version");
  record.mDriverDate = members.Text("driver_date");
  record.mMemoryBytes = members.Integer<std::uint64_t>("memory_bytes");
  record.mProblem = members.Integer<std::uint32_t>("problem");
  return record;
}

bool IsOfWord(char sign) {
  return (sign >= '0' && sign <= '9') || (sign >= 'A' && sign <= 'Z') || (sign >= 'a' && sign <= 'z') ||
         static_cast<unsigned char>(sign) >= 0x80;
}

/// Whether the word stands in the text, no part of a longer one.
bool HoldsWord(std::string_view text, std::string_view word) {
  for (std::size_t place = text.find(word); place != std::string_view::npos;
       place = text.find(word, place + 1)) {
    const std::size_t end = place + word.size();
    if ((place == 0 || !IsOfWord(text[place - 1])) && (end == text.size() || !IsOfWord(text[end])))
      return true;
  }
  return false;
}

class GivenDevices : public windows::DeviceSource {
 public:
  explicit GivenDevices(const Members& members) {
    for (const auto& [key, deviceClass] :
         {std::pair{"display", windows::DeviceClass::kDisplay},
          std::pair{"media", windows::DeviceClass::kMedia}, std::pair{"net", windows::DeviceClass::kNet}}) {
      for (const std::any& element : members.Elements(key)) {
        mByClass[deviceClass].push_back(RecordOf(Members(element)));
      }
    }
  }

  [[nodiscard]] std::vector<windows::DeviceRecord> List(windows::DeviceClass deviceClass) const override {
    const auto place = mByClass.find(deviceClass);
    return place == mByClass.end() ? std::vector<windows::DeviceRecord>() : place->second;
  }

 private:
  std::map<windows::DeviceClass, std::vector<windows::DeviceRecord>> mByClass;
};

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"system",
                                                "display",
                                                "media",
                                                "net",
                                                "version",
                                                "product_name",
                                                "display_version",
                                                "architecture",
                                                "language",
                                                "manufacturer",
                                                "model",
                                                "board_manufacturer",
                                                "bios_vendor",
                                                "bios_version",
                                                "bios_date",
                                                "chassis",
                                                "secure_boot",
                                                "hypervisor",
                                                "root_partition",
                                                "container",
                                                "processor",
                                                "cores",
                                                "logical_processors",
                                                "memory_bytes",
                                                "page_file_bytes",
                                                "dots_per_inch",
                                                "monitors",
                                                "remote_session",
                                                "free_bytes",
                                                "instance",
                                                "bus_number",
                                                "bus_address",
                                                "friendly_name",
                                                "description",
                                                "hardware_ids",
                                                "service",
                                                "provider",
                                                "driver_version",
                                                "driver_date",
                                                "problem",
                                                "Windows 10 Pro",
                                                "10.0.22631.3007",
                                                "03/14/2023",
                                                "6-8-2023",
                                                "31.0.15.3623",
                                                "nvlddmkm",
                                                "KVMKVMKVM",
                                                "Microsoft Hv",
                                                "PCI\\VEN_10DE&DEV_2484&SUBSYS_00000000\\4&2283F625",
                                                "USB\\VID_0D8C&PID_0014",
                                                "ROOT\\NET\\0000",
                                                "SWD\\X",
                                                "BTHENUM\\X",
                                                "anna",
                                                "ANNAS-PC",
                                                "Headset of anna",
                                                ""};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost::Instance();
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  const Members members(json::Parse(std::string(data, data + size)));
  const GivenDevices devices(members);
  const windows::SystemFacts facts = FactsOf(Members(members.Value("system")));
  const qelcore::host::PersonalNames names{.mUser = "anna", .mHost = "ANNAS-PC", .mHome = "C:\\Users\\anna"};
  const auto components = windows::ReadMachine(devices, facts, names, std::nullopt);
  fuzz::RequireSoundComponents(components);
  fuzz::RequireEqualComponents(components, windows::ReadMachine(devices, facts, names, std::nullopt));
  for (const auto& component : components) {
    if (component->GetType() == qelcore::utility::OSComponentType::kProperty) continue;
    Require(!HoldsWord(component->GetName(), "ANNAS-PC"), "no name holds the machine's");
    Require(!HoldsWord(component->GetName(), "anna"), "no name holds the user's");
  }
  return 0;
}
