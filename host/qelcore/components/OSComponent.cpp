#include <atomic>
#include <bit>
#include <cstddef>
#include <cstring>
#include <utility>

#include "host/qelcore/System.h"
#include "host/qelcore/components/PIISafeName.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"

namespace qelcore::utility {

namespace {

// Keys of the JSON form.
constexpr std::string_view kNameKey = "name";
constexpr std::string_view kTypeKey = "type";
constexpr std::string_view kFormatKey = "osc_version";
constexpr std::string_view kVersionKey = "version";
constexpr std::string_view kValueKey = "value";

constexpr std::int64_t kFormat = 1;

/// The names in the order of the kinds' numbers.
constexpr std::array<std::string_view, kOSComponentTypeCount> kTypeNames = {"OS",      "Video", "Audio",
                                                                            "Network", "File",  "Property"};

std::atomic<bool> arePropertiesEnabled{false};

/// Numbers on their way into a hash, least significant byte first. They are mixed in together: each call of
/// the mixer costs more than the bytes.
class NumberBytes {
 public:
  template <typename Unsigned>
  void Append(Unsigned value) {
    static_assert(std::endian::native == std::endian::little, "hashes must not depend on the machine");
    std::memcpy(mBytes.data() + mSize, &value, sizeof value);
    mSize += sizeof value;
  }

  void MixInto(MixHashGuidT<HashValueMixerState>& state) const {
    UpdateHashState(state, mBytes.data(), mSize);
  }

 private:
  std::array<unsigned char, 32> mBytes{};
  std::size_t mSize = 0;
};

}  // namespace

std::string ComponentTypeToString(OSComponentType type) {
  const auto index = static_cast<std::int32_t>(type);
  if (index < 0 || index >= kOSComponentTypeCount) {
    return {};
  }
  return std::string(kTypeNames[static_cast<std::size_t>(index)]);
}

OSComponentType ComponentTypeFromString(std::string_view text) {
  for (std::size_t index = 0; index < kTypeNames.size(); ++index) {
    if (kTypeNames[index] == text) {
      return static_cast<OSComponentType>(index);
    }
  }
  return OSComponentType::kInvalid;
}

OSComponent::OSComponent() = default;

OSComponent::OSComponent(OSComponentType type, std::string name, const OSComponentVersion& version,
                         std::string propertyValue)
    : mType(type), mName(std::move(name)), mVersion(version), mPropertyValue(std::move(propertyValue)) {}

OSComponent::OSComponent(const OSComponent&) = default;
OSComponent::OSComponent(OSComponent&&) noexcept = default;
OSComponent& OSComponent::operator=(const OSComponent&) = default;
OSComponent& OSComponent::operator=(OSComponent&&) noexcept = default;
OSComponent::~OSComponent() = default;

std::any OSComponent::ToJSON() const {
  std::any json = ToJSONWithoutVersionOrValue();
  auto& object = *std::any_cast<json::Dictionary>(&json);
  if (mType == OSComponentType::kProperty) {
    json::Set(object, kValueKey, mPropertyValue);
  } else {
    json::Set(object, kVersionKey, mVersion.ToString());
  }
  return json;
}

bool OSComponent::FromJSON(const std::any& json) {
  return OSComponent::ReadFrom(json::View(json));
}

bool OSComponent::ReadFrom(const json::View& json) {
  if (!json.IsObject()) {
    return ReadFrom(Members());
  }
  const auto [name, format, type, value, version] = json.Members(Members::kKeys);
  return ReadFrom({.mName = name, .mFormat = format, .mType = type, .mValue = value, .mVersion = version});
}

bool OSComponent::ReadFrom(const Members& members) {
  mType = OSComponentType::kInvalid;
  mName.clear();
  mVersion = {};
  mPropertyValue.clear();
  try {
    const std::optional<std::string_view> name = members.mName.Text();
    const OSComponentType type = ComponentTypeFromString(members.mType.Text().value_or(std::string_view()));
    const std::string_view version = members.mVersion.Text().value_or(std::string_view());
    const std::string_view value = members.mValue.Text().value_or(std::string_view());
    // Its value does not matter, its type does.
    static_cast<void>(members.mFormat.Integer());
    if (!name || type == OSComponentType::kInvalid) {
      return false;
    }
    mName = *name;
    mVersion = OSComponentVersion(version);
    if (type == OSComponentType::kProperty) {
      mPropertyValue = value;
    }
    mType = type;
    return true;
  } catch (const json::TypeError&) {
    return false;
  }
}

MixHashGuidT<HashValueMixerState> OSComponent::Hash() const {
  MixHashGuidT<HashValueMixerState> state;
  NumberBytes beforeName;
  beforeName.Append(static_cast<std::uint32_t>(mType));
  beforeName.Append(std::uint64_t{mName.size()});
  beforeName.MixInto(state);
  UpdateHashState(state, mName.data(), mName.size());
  NumberBytes beforeValue;
  beforeValue.Append(std::uint32_t{mVersion ? 1U : 0U});
  for (const std::uint32_t part :
       {mVersion.mVersionW, mVersion.mVersionX, mVersion.mVersionY, mVersion.mVersionZ}) {
    beforeValue.Append(part);
  }
  beforeValue.Append(std::uint64_t{mPropertyValue.size()});
  beforeValue.MixInto(state);
  UpdateHashState(state, mPropertyValue.data(), mPropertyValue.size());
  return state;
}

std::string OSComponent::GetID() const {
  return mID;
}

bool OSComponent::FromJSONString(std::string_view text) {
  return FromJSON(json::Parse(text));
}

std::any OSComponent::ToJSONWithoutVersionOrValue() const {
  json::Dictionary object;
  json::Set(object, kNameKey, mName);
  json::Set(object, kTypeKey, ComponentTypeToString(mType));
  json::Set(object, kFormatKey, kFormat);
  return object;
}

std::string OSComponent::GetPIISafeName() const {
  static const host::PersonalNames names = host::ReadPersonalNames();
  return host::RemovePersonalData(mName, names);
}

bool operator==(const OSComponent& left, const OSComponent& right) {
  return left.mType == right.mType && left.mName == right.mName && left.mVersion == right.mVersion &&
         left.mPropertyValue == right.mPropertyValue;
}

bool operator<(const OSComponent& left, const OSComponent& right) {
  if (left.mType != right.mType) {
    return left.mType < right.mType;
  }
  // `std::string` compares its characters as unsigned bytes.
  if (left.mName != right.mName) {
    return left.mName < right.mName;
  }
  if (!(left.mVersion == right.mVersion)) {
    return left.mVersion <= right.mVersion;
  }
  return left.mPropertyValue < right.mPropertyValue;
}

bool OSComponent::SupportsProperties() {
  return host::kSystemHasProperties && arePropertiesEnabled.load();
}

void OSComponent::EnableSupportProperties(bool enable) {
  arePropertiesEnabled.store(enable);
}

}  // namespace qelcore::utility
