#include "app/Snapshot.h"

#include <utility>

#include "app/InputFile.h"
#include "app/Output.h"
#include "platform/qelcore/Json.h"

namespace app {

namespace json = qelcore::json;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;

namespace {

constexpr std::string_view kComponents = "components";
constexpr std::string_view kFiles = "files";
constexpr std::string_view kMachine = "machine";

OSComponentRegistry::Components ReadComponents(const json::Array& elements) {
  OSComponentRegistry::Components components;
  for (const std::any& element : elements) {
    auto component = std::make_shared<OSComponent>();
    if (!component->FromJSON(element)) {
      throw UserError(
          "element " + std::to_string(components.size()) +
          " of \"components\" is no component: it needs \"name\" and \"type\" (OS, Video, Audio, Network, "
          "File or Property), and \"version\" or \"value\" as texts");
    }
    components.push_back(std::move(component));
  }
  return components;
}

std::map<std::string, std::string, std::less<>> ReadFiles(const json::Array& elements) {
  std::map<std::string, std::string, std::less<>> versions;
  for (const std::any& element : elements) {
    const json::Dictionary& file = json::AsDictionary(element);
    const std::string* const path = json::FindText(file, "path");
    const std::string* const version = json::FindText(file, "version");
    if (path == nullptr) throw UserError("an element of \"files\" has no \"path\"");
    versions.insert_or_assign(*path, version == nullptr ? std::string() : *version);
  }
  return versions;
}

Snapshot FromJSON(const std::any& value) {
  const json::Dictionary& document = json::AsDictionary(value);
  const json::Array* const components = json::FindArray(document, kComponents);
  if (components == nullptr)
    throw UserError("has no \"components\"; \"scr components --json\" writes a snapshot");
  Snapshot snapshot;
  if (const auto name = document.find(kMachine); name != document.end()) {
    if (const auto* const text = std::any_cast<std::string>(name->second.get())) snapshot.mName = *text;
  }
  snapshot.mRegistry = std::make_shared<const OSComponentRegistry>(ReadComponents(*components));
  if (const json::Array* const files = json::FindArray(document, kFiles)) {
    snapshot.mFileVersions = ReadFiles(*files);
    snapshot.mHasFiles = true;
  }
  return snapshot;
}

}  // namespace

Snapshot ParseSnapshot(const std::string& name, const std::string& text) {
  const std::any value = ParseInputFile(name, text);
  try {
    return FromJSON(value);
  } catch (const std::runtime_error& error) {
    throw UserError(name + ": not a machine snapshot: " + error.what());
  }
}

Snapshot ReadSnapshot(const std::string& path) {
  return ParseSnapshot(path, ReadInputFile(path));
}

std::string WriteSnapshot(const OSComponentRegistry& registry) {
  std::string text = "{\"components\": [";
  const char* separator = "\n";
  for (const auto& component : registry.GetAllComponents()) {
    text += std::exchange(separator, ",\n") + json::Serialise(component->ToJSON());
  }
  return text + "\n]}\n";
}

}  // namespace app
