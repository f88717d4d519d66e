#include "benchmarks/Machine.h"

#include <memory>
#include <utility>

#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"

namespace benchmarks {

namespace json = qelcore::json;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentVersion;

namespace {

std::string TextOrEmpty(const json::Dictionary& object, std::string_view key) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? std::string() : *text;
}

}  // namespace

Machine ReadMachine(const std::string& path) {
  const qelcore::filesupport::File file(qelcore::string::UTF8to16(path));
  const std::any root = json::Parse(qelcore::filesupport::IPlatformByteStream(file).ReadAll());
  const json::Dictionary& document = json::AsDictionary(root);
  Machine machine;
  if (const json::Array* const components = json::FindArray(document, "components")) {
    for (const std::any& element : *components) {
      const json::Dictionary& object = json::AsDictionary(element);
      machine.mComponents.push_back({qelcore::utility::ComponentTypeFromString(TextOrEmpty(object, "type")),
                                     TextOrEmpty(object, "name"), TextOrEmpty(object, "version"),
                                     TextOrEmpty(object, "value")});
    }
  }
  if (const json::Array* const files = json::FindArray(document, "files")) {
    for (const std::any& element : *files) {
      const json::Dictionary& object = json::AsDictionary(element);
      machine.mFileVersions[TextOrEmpty(object, "path")] = TextOrEmpty(object, "version");
    }
  }
  return machine;
}

OSComponentRegistry MakeRegistry(const Machine& machine) {
  OSComponentRegistry::Components components;
  for (const MachineComponent& component : machine.mComponents) {
    components.push_back(std::make_shared<OSComponent>(
        component.mType, component.mName, OSComponentVersion(component.mVersion), component.mValue));
  }
  return OSComponentRegistry(std::move(components));
}

}  // namespace benchmarks
