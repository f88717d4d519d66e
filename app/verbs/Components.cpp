// `scr components`: what this machine is made of.
#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Snapshot.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelappsupport.h"
#include "platform/qelcore/Components.h"

namespace app {

using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;

namespace {

std::string WriteTable(const OSComponentRegistry& registry) {
  std::size_t width = 0;
  for (const auto& component : registry.GetAllComponents()) {
    width = std::max(width, std::min<std::size_t>(component->GetName().size(), 60));
  }
  std::string text;
  for (const auto& component : registry.GetAllComponents()) {
    const std::string value = component->GetType() == OSComponentType::kProperty
                                  ? component->GetPropertyValue()
                                  : component->GetVersion().ToString();
    text += fmt::format("{:<9} {:<{}}  {}\n", ComponentTypeToString(component->GetType()),
                        Printable(component->GetName()), width, value.empty() ? "-" : Printable(value));
  }
  return text;
}

void ListComponents(bool asJSON) {
  const Diagnostics diagnostics;
  OSComponent::EnableSupportProperties(
      qelappsupport::IsFeatureEnabled("qelsystemcompatibilityreport.properties"));
  const auto registry = qelcore::host::ReadMachineWithoutKeeping();
  diagnostics.PrintProblems();
  if (!registry) throw UserError("this machine's components cannot be read; --trace 1 tells why");
  Print(asJSON ? WriteSnapshot(*registry) : WriteTable(*registry));
}

}  // namespace

void AddComponentsVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("components", "What this machine is made of");
  verb->group("Verbs")->footer(
      "This machine's components as rules see them: kind, name, and version or value.\n"
      "\n"
      "  scr components                       a table\n"
      "  scr components --json > here.json    a snapshot that \"scr check --machine\" accepts\n");
  const auto asJSON = std::make_shared<bool>(false);
  verb->add_flag("--json", *asJSON, "Write a machine snapshot");
  verb->callback([asJSON] { ListComponents(*asJSON); });
}

}  // namespace app
