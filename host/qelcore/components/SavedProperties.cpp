#include "host/qelcore/components/SavedProperties.h"

#include <algorithm>
#include <any>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/qelcore/Json.h"

namespace qelcore::host::components {
namespace {

constexpr std::u16string_view kFileName = u"SystemProperties.json";
constexpr std::string_view kSavedAt = "saved_at";
constexpr std::string_view kKernelRelease = "kernel_release";
constexpr std::uint64_t kLongestFile = std::uint64_t{1} << 20;
constexpr std::int64_t kLongestAge = std::int64_t{24} * 60 * 60;

json::Dictionary ReadFile(const filesupport::File& file) {
  filesupport::IPlatformByteStream stream(file);
  if (stream.GetLength() > kLongestFile) throw std::runtime_error("The saved properties are too long.");
  json::ParseError error;
  const std::any value = json::Parse(stream.ReadAll(), &error);
  if (!value.has_value()) throw std::runtime_error("The saved properties are not JSON: " + error.mMessage);
  return json::AsDictionary(value);
}

bool IsOfSystem(const json::Dictionary& object, const SystemIdentity& system) {
  const std::string* const release = json::FindText(object, kKernelRelease);
  return release != nullptr && *release == system.mKernelRelease &&
         std::all_of(system.mProperties.begin(), system.mProperties.end(), [&](const auto& property) {
           const std::string* const saved = json::FindText(object, property.first);
           return (saved == nullptr ? std::string() : *saved) == property.second;
         });
}

bool IsFresh(const json::Dictionary& object, std::int64_t now) {
  const auto savedAt = json::FindInteger(object, kSavedAt);
  if (!savedAt || now < 0) return false;
  const auto present = static_cast<std::uint64_t>(now);
  return *savedAt <= present && present - *savedAt < static_cast<std::uint64_t>(kLongestAge);
}

}  // namespace

std::optional<Properties> LoadProperties(const filesupport::Dir& directory, const SystemIdentity& system,
                                         std::int64_t now) {
  const filesupport::File file(directory, kFileName);
  if (!file.Exists()) return std::nullopt;
  const json::Dictionary object = ReadFile(file);
  if (!IsOfSystem(object, system) || !IsFresh(object, now)) return std::nullopt;
  Properties properties;
  for (const auto& [name, value] : object) {
    if (name == kSavedAt || name == kKernelRelease) continue;
    AddProperty(properties, name, *json::FindText(object, name));
  }
  return properties;
}

void SaveProperties(const filesupport::Dir& directory, const Properties& properties,
                    const SystemIdentity& system, std::int64_t now) {
  json::Dictionary object;
  for (const auto& [name, value] : properties) json::Set(object, name, value);
  json::Set(object, kSavedAt, now);
  json::Set(object, kKernelRelease, system.mKernelRelease);
  filesupport::SafeSave save{filesupport::File(directory, kFileName)};
  save.Write(json::Serialise(std::any(std::move(object))));
  save.Commit();
}

void DeleteProperties(const filesupport::Dir& directory) {
  filesupport::File(directory, kFileName).Delete();
}

}  // namespace qelcore::host::components
