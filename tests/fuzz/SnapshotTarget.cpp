// A snapshot of a machine, as `scr check --machine` reads it and `scr components --json` writes it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "app/Output.h"
#include "app/Snapshot.h"
#include "platform/qelcore/Text.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

using fuzz::Require;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;

void CheckRegistry(const OSComponentRegistry& registry) {
  std::size_t count = 0;
  for (std::int32_t kind = 0; kind < qelcore::utility::kOSComponentTypeCount; ++kind) {
    for (const auto& component : registry.GetComponentsOfType(OSComponentType{kind})) {
      Require(component->GetType() == OSComponentType{kind}, "a kind holds components of that kind");
      ++count;
    }
  }
  Require(count == registry.GetAllComponents().size(), "every component is of a kind");
  for (const auto& component : registry.GetAllComponents()) {
    const std::string name = component->GetPIISafeName();
    Require(qelcore::string::UTF16to8(qelcore::string::UTF8to16(name)) == name,
            "a name without personal data is UTF-8");
  }
}

bool AreEqual(const OSComponentRegistry& left, const OSComponentRegistry& right) {
  const auto& first = left.GetAllComponents();
  const auto& second = right.GetAllComponents();
  if (first.size() != second.size()) return false;
  for (std::size_t place = 0; place < first.size(); ++place) {
    if (!(*first[place] == *second[place])) return false;
  }
  return left.Hash() == right.Hash();
}

/// A property has a value in its JSON form and no version, but keeps one that is read. No machine has such.
bool HasPropertyWithVersion(const OSComponentRegistry& registry) {
  const auto& properties = registry.GetComponentsOfType(OSComponentType::kProperty);
  return std::any_of(properties.begin(), properties.end(),
                     [](const auto& property) { return static_cast<bool>(property->GetVersion()); });
}

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"components",
                                                "files",
                                                "name",
                                                "type",
                                                "version",
                                                "value",
                                                "osc_version",
                                                "path",
                                                "OS",
                                                "Video",
                                                "Audio",
                                                "Network",
                                                "File",
                                                "Property",
                                                "10.0.+",
                                                "1.2.3.4",
                                                "anna@example.com",
                                                "192.168.0.1",
                                                "fe80::1%eth0",
                                                "00:11:22:aa:bb:cc",
                                                "memory.mb",
                                                "/home/anna/x",
                                                ""};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path directory = fuzz::QuietHost::Instance().Directory();
  const std::string file = (directory / "snapshot.json").string();
  fuzz::WriteFile(file, std::string(data, data + size));
  try {
    const app::Snapshot snapshot = app::ReadSnapshot(file);
    CheckRegistry(*snapshot.mRegistry);
    const std::string again = (directory / "again.json").string();
    fuzz::WriteFile(again, app::WriteSnapshot(*snapshot.mRegistry));
    Require(AreEqual(*app::ReadSnapshot(again).mRegistry, *snapshot.mRegistry) ||
                HasPropertyWithVersion(*snapshot.mRegistry),
            "a written snapshot reads back equal");
  } catch (const app::UserError& error) {
    Require(std::string(error.what()).starts_with(file), "a refusal names the file");
  }
  return 0;
}
