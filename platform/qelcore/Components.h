// The component model: what a machine is made of, as rules see it.
//
// A component is the operating system, a video, audio or network device with the version of its driver, a
// file with its version, or a named property of the system with a text value. `OSComponentRegistry` is a
// snapshot of one machine's components.
#pragma once

#include <any>
#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "platform/qelcore/JsonView.h"

namespace qelcore::utility {

/// The kinds of components. The numbers index tables and are written to files: do not renumber.
enum class OSComponentType : std::int32_t {
  kInvalid = -1,  ///< the kind of an empty component, and of one that could not be read
  kOS = 0,
  kVideo = 1,
  kAudio = 2,
  kNetwork = 3,
  kFile = 4,
  kProperty = 5,
};

/// The number of valid kinds; they run from 0 to one less.
inline constexpr std::int32_t kOSComponentTypeCount = 6;

/// The kind's name in JSON, reports and events: "OS", "Video", "Audio", "Network", "File", "Property". Any
/// other value gives an empty text.
[[nodiscard]] QELCORE_EXPORT std::string ComponentTypeToString(OSComponentType type);

/// The inverse of `ComponentTypeToString`, compared byte for byte; `kInvalid` for every other text.
[[nodiscard]] QELCORE_EXPORT OSComponentType ComponentTypeFromString(std::string_view text);

/// A version of four unsigned parts, the most significant first: "24.21.14.1195" has W 24, X 21, Y 14, Z
/// 1195. A plain value. An empty version has four parts 0 and differs from "0.0.0.0" in its truth value only.
class QELCORE_EXPORT OSComponentVersion {
 public:
  /// The largest part value, written "+".
  static constexpr std::uint32_t kLargestPart = 0xFFFFFFFFu;

  /// The empty version.
  OSComponentVersion() = default;

  OSComponentVersion(std::uint32_t w, std::uint32_t x, std::uint32_t y, std::uint32_t z);

  /// Reads up to four decimal parts joined by points; missing parts at the end are 0. A part written "+"
  /// stands for the largest part value in its place and in every later one, and nothing after it is read.
  /// Gives the empty version for every other text: an empty one, one with a part that is empty, not decimal
  /// or above 32 bits, or one with more than four parts. Never throws.
  ///
  ///   "10.0.17763.1"   10, 0, 17763, 1
  ///   "5.2"            5, 2, 0, 0
  ///   "0.0.4.+"        0, 0, 4, 4294967295
  ///   "0.0.+"          0, 0, 4294967295, 4294967295
  ///   "8.1 beta"       empty
  explicit OSComponentVersion(std::string_view text);

  /// Whether this is a version at all: false for the empty version only.
  explicit operator bool() const { return mIsValid; }

  /// The text form; the empty text for the empty version. A run of largest parts that reaches the end is
  /// written as one "+". The constructor reads it back to an equal version.
  [[nodiscard]] std::string ToString() const;

  static constexpr std::size_t kLongestText = sizeof "4294967295.4294967295.4294967295.4294967295" - 1;

  /// Writes what `ToString` gives to where `kLongestText` characters have room. Returns the text's end.
  char* WriteTo(char* room) const;

  // Comparison part by part, W first; the truth value plays no part.
  friend bool operator==(const OSComponentVersion& left, const OSComponentVersion& right) {
    return left.High() == right.High() && left.Low() == right.Low();
  }
  friend bool operator<=(const OSComponentVersion& left, const OSComponentVersion& right) {
    return left.High() != right.High() ? left.High() < right.High() : left.Low() <= right.Low();
  }
  friend bool operator>=(const OSComponentVersion& left, const OSComponentVersion& right) {
    return right <= left;
  }

  /// Masking: part-wise AND. A mask part 0 clears the part, a mask part "+" keeps it.
  friend OSComponentVersion operator&(const OSComponentVersion& version, const OSComponentVersion& mask) {
    return {version.mVersionW & mask.mVersionW, version.mVersionX & mask.mVersionX,
            version.mVersionY & mask.mVersionY, version.mVersionZ & mask.mVersionZ};
  }

  /// Reduction: part-wise remainder. A modulus part 0 gives 0, as a mask part 0 does.
  friend OSComponentVersion operator%(const OSComponentVersion& version, const OSComponentVersion& modulus) {
    const auto remainder = [](std::uint32_t part, std::uint32_t by) { return by == 0 ? 0 : part % by; };
    return {remainder(version.mVersionW, modulus.mVersionW), remainder(version.mVersionX, modulus.mVersionX),
            remainder(version.mVersionY, modulus.mVersionY), remainder(version.mVersionZ, modulus.mVersionZ)};
  }

  std::uint32_t mVersionW = 0;
  std::uint32_t mVersionX = 0;
  std::uint32_t mVersionY = 0;
  std::uint32_t mVersionZ = 0;

 private:
  [[nodiscard]] std::uint64_t High() const { return std::uint64_t{mVersionW} << 32 | mVersionX; }
  [[nodiscard]] std::uint64_t Low() const { return std::uint64_t{mVersionY} << 32 | mVersionZ; }

  bool mIsValid = false;
};

/// One component. Copies are independent. Its JSON form:
///
///   {"name":"Windows","osc_version":1,"type":"OS","version":"10.0.17763.1"}
///   {"name":"memory.mb","osc_version":1,"type":"Property","value":"16384"}
class QELCORE_EXPORT OSComponent {
 public:
  /// An empty component of the kind `kInvalid`.
  OSComponent();

  /// `propertyValue` is the value of a property; other kinds leave it empty.
  OSComponent(OSComponentType type, std::string name, const OSComponentVersion& version,
              std::string propertyValue = {});

  /// Reads a JSON value as `FromJSON` does; a component that could not be read is `kInvalid`.
  /// (A template, because a plain parameter of type `std::any` would take part in deciding whether a
  /// component can be copied, which `std::any` in turn asks.)
  template <std::same_as<std::any> Any>
  explicit OSComponent(const Any& json) {
    static_cast<void>(OSComponent::FromJSON(json));
  }

  OSComponent(const OSComponent&);
  OSComponent(OSComponent&&) noexcept;
  OSComponent& operator=(const OSComponent&);
  OSComponent& operator=(OSComponent&&) noexcept;

  // ---- Virtual operations. Their order is fixed. ----------------------------------------------------------

  virtual ~OSComponent();

  /// The JSON form above: a `json::Dictionary` with "name", "type", "osc_version" and, for a property,
  /// "value", for every other kind "version".
  [[nodiscard]] virtual std::any ToJSON() const;

  /// Reads the JSON form. "name" and "type" are required, "version" and "value" may be absent, "osc_version"
  /// must be an integer when present; other keys are ignored. Returns false, leaving the component empty,
  /// when the value is not an object or one of these is missing, of another JSON type, or an unknown kind.
  /// Does not throw.
  [[nodiscard]] virtual bool FromJSON(const std::any& json);

  /// A hash state into which the component's own fields were mixed.
  [[nodiscard]] virtual MixHashGuidT<HashValueMixerState> Hash() const;

  /// The identifier that somebody gave the component: empty, since no JSON key and no operation gives one.
  [[nodiscard]] virtual std::string GetID() const;

  // ---- Plain operations -----------------------------------------------------------------------------------

  /// Parses JSON text, then reads it with the virtual `FromJSON`, whose result it returns. Text that is not
  /// JSON reaches `FromJSON` as an empty value.
  bool FromJSONString(std::string_view text);

  /// Reads the JSON form as `OSComponent::FromJSON` does, of a value in memory or of a text.
  [[nodiscard]] bool ReadFrom(const json::View& value);

  /// The members of the JSON form, for a kind of component that looks for them together with its own.
  struct Members {
    static constexpr std::array<std::string_view, 5> kKeys{"name", "osc_version", "type", "value", "version"};

    json::View mName;
    json::View mFormat;
    json::View mType;
    json::View mValue;
    json::View mVersion;
  };

  [[nodiscard]] bool ReadFrom(const Members& members);

  /// The JSON form without "version" and "value".
  [[nodiscard]] std::any ToJSONWithoutVersionOrValue() const;

  [[nodiscard]] OSComponentType GetType() const { return mType; }
  [[nodiscard]] std::string GetName() const { return mName; }
  [[nodiscard]] OSComponentVersion GetVersion() const { return mVersion; }
  [[nodiscard]] std::string GetPropertyValue() const { return mPropertyValue; }

  /// The name in a form that logs and events may carry: the home directory in a path becomes "~", and the
  /// names of the user and of the machine, network addresses and e-mail addresses are replaced by "<user>",
  /// "<host>" and "<address>".
  [[nodiscard]] std::string GetPIISafeName() const;

  /// Equality and order by type, then name (as unsigned bytes), version and property value. The two agree.
  friend QELCORE_EXPORT bool operator==(const OSComponent& left, const OSComponent& right);
  friend QELCORE_EXPORT bool operator<(const OSComponent& left, const OSComponent& right);

  /// Whether property components are available: the platform enumerates them and they were switched on.
  [[nodiscard]] static bool SupportsProperties();

  /// Switches the enumeration of property components on or off for this process; off at load.
  static void EnableSupportProperties(bool enable);

 private:
  OSComponentType mType = OSComponentType::kInvalid;
  std::string mName;
  OSComponentVersion mVersion;
  std::string mPropertyValue;
  std::string mID;
};

/// A snapshot of one machine's components. It never changes, so any number of threads may read it.
class QELCORE_EXPORT OSComponentRegistry {
 public:
  using Components = std::vector<std::shared_ptr<OSComponent>>;

  /// A registry of these components, in this order. Null pointers are left out.
  explicit OSComponentRegistry(Components components);

  /// The registry of the running machine; null when the machine cannot be enumerated. With `explicitRun`
  /// true, for a report that somebody asked for, the machine is enumerated anew; with false, for launch, a
  /// snapshot that this process already made is handed out again, and properties may come from the
  /// preferences directory, where the last enumeration saved them.
  [[nodiscard]] static std::shared_ptr<const OSComponentRegistry> Get(bool explicitRun);

  /// The components of a kind, in the registry's order. An empty list for `kInvalid`.
  [[nodiscard]] const Components& GetComponentsOfType(OSComponentType type) const;

  /// All components, in the registry's order.
  [[nodiscard]] const Components& GetAllComponents() const { return mAll; }

  /// Sixteen bytes over the whole content, in order. The same components give the same bytes in every
  /// process.
  [[nodiscard]] Guid Hash() const;

  /// Deletes the properties that enumeration saved in the preferences directory; does nothing when there are
  /// none. Does not throw.
  static void DeletePropertiesFromPrefsDir();

  /// Reports statistics about the registry to the host's analytics.
  void LogToAnalytics() const;

 private:
  Components mAll;
  std::array<Components, kOSComponentTypeCount> mByType;
};

}  // namespace qelcore::utility
