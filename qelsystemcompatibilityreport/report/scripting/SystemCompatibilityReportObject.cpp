#include "qelsystemcompatibilityreport/SystemCompatibilityReportObject.h"

#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

using qelscripting::ScriptDefinitions;
using qelscripting::ScriptObjectDefinition;
using qelscripting::ScriptObjectDefinitionBase;
using qelscripting::ScriptType;
using qelscripting::ScriptValue;

namespace {

/// Null after a failure, which the script then reports.
std::shared_ptr<qelscripting::ScriptObject> MakeObject() {
  return AtBoundary("qelsystemcompatibilityreport::SystemCompatibilityReportObject",
                    std::shared_ptr<qelscripting::ScriptObject>(),
                    [] { return std::make_shared<SystemCompatibilityReportObject>(); });
}

class Initiator final : public qelscripting::ScriptObjectDefinitionInitiatorBase {
 public:
  void Define() override {
    using Object = SystemCompatibilityReportObject;
    auto definition = std::make_shared<ScriptObjectDefinition>(
        Object::GetClassname(), Object::GetDescription(), MakeObject, Object::DefineObject);
    definition->AttachComponentGroups(
        ScriptDefinitions::GetScriptComponentGroupDefinitions(Object::GetClassname()));
    ScriptDefinitions::AddObjectDefinition(std::move(definition));
  }
};

const qelscripting::ScriptObjectDefinitionRegistrar gRegistrar(std::make_unique<Initiator>());

}  // namespace

SystemCompatibilityReportObject::SystemCompatibilityReportObject() : ScriptObject(GetClassname()) {}

SystemCompatibilityReportObject::~SystemCompatibilityReportObject() = default;

std::string SystemCompatibilityReportObject::GetClassname() {
  return "SystemCompatibilityReport";
}

std::string SystemCompatibilityReportObject::GetDescription() {
  return "Provide system compatibility report generation";
}

void SystemCompatibilityReportObject::DefineObject() {
  ScriptObjectDefinitionBase* const definition = ScriptObjectDefinitionBase::sCurrent;
  if (definition == nullptr) return;
  definition->AddOrChangeNamespace("SystemCompatibilityReport");
  definition->AddMethod({.mName = "CreateReport",
                         .mParameters = {{.mName = "filePath", .mType = ScriptType::kString}},
                         .mResult = ScriptType::kBool,
                         .mFlags = qelscripting::kMethodIsCallable | qelscripting::kMethodIsPlain,
                         .mCall = [](qelscripting::ScriptObject& object,
                                     const std::vector<ScriptValue>& arguments) -> ScriptValue {
                           return static_cast<SystemCompatibilityReportObject&>(object).CreateReport(
                               std::get<std::u16string>(arguments.at(0)));
                         }});
}

bool SystemCompatibilityReportObject::CreateReport(const std::u16string& filePath) {
  AtBoundary("qelsystemcompatibilityreport::SystemCompatibilityReportObject::CreateReport",
             [&] { RunReportToFile(qelcore::GetApplicationName(), filePath); });
  return true;
}

}  // namespace qelsystemcompatibilityreport
