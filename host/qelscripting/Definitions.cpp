#include "host/qelscripting/Definitions.h"

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Trace.h"

namespace qelscripting {

namespace {

using Initiators = std::vector<ScriptObjectDefinitionInitiatorBase*>;

struct KnownDefinition {
  std::shared_ptr<ScriptObjectDefinition> mDefinition;
  /// Who added it, or null when no initiator was asked.
  const ScriptObjectDefinitionInitiatorBase* mInitiator = nullptr;
};

struct Store {
  Initiators mWaiting;
  const ScriptObjectDefinitionInitiatorBase* mAsked = nullptr;
  std::vector<KnownDefinition> mDefinitions;
  std::map<std::string, ScriptComponentGroups, std::less<>> mComponentGroups;
};

Store& TheStore() {
  // Registrars are static objects of many modules. Each asks for this while it is made, so it outlives them
  // all.
  static Store store;
  return store;
}

/// Makes a definition the current one for a scope.
class CurrentDefinition {
 public:
  explicit CurrentDefinition(ScriptObjectDefinitionBase& definition)
      : mPrevious(std::exchange(ScriptObjectDefinitionBase::sCurrent, &definition)) {}
  ~CurrentDefinition() { ScriptObjectDefinitionBase::sCurrent = mPrevious; }
  CurrentDefinition(const CurrentDefinition&) = delete;
  CurrentDefinition& operator=(const CurrentDefinition&) = delete;

 private:
  ScriptObjectDefinitionBase* mPrevious;
};

}  // namespace

ScriptObject::ScriptObject(std::string className) : mClassName(std::move(className)) {}
ScriptObject::~ScriptObject() = default;

ScriptObjectDefinitionBase* ScriptObjectDefinitionBase::sCurrent = nullptr;

ScriptObjectDefinitionBase::ScriptObjectDefinitionBase() = default;
ScriptObjectDefinitionBase::~ScriptObjectDefinitionBase() = default;

void ScriptObjectDefinitionBase::AddOrChangeNamespace(std::string name) {
  mNamespace = std::move(name);
}

void ScriptObjectDefinitionBase::AddMethod(ScriptMethod method) {
  const auto place = std::find_if(mMethods.begin(), mMethods.end(),
                                  [&](const ScriptMethod& known) { return known.mName == method.mName; });
  if (place != mMethods.end()) {
    *place = std::move(method);
  } else {
    mMethods.push_back(std::move(method));
  }
}

ScriptObjectDefinition::ScriptObjectDefinition(std::string className, std::string description, Make make,
                                               DefineObject defineObject)
    : mClassName(std::move(className)),
      mDescription(std::move(description)),
      mMake(std::move(make)),
      mDefineObject(std::move(defineObject)) {}

ScriptObjectDefinition::~ScriptObjectDefinition() = default;

void ScriptObjectDefinition::AttachComponentGroups(ScriptComponentGroups groups) {
  mComponentGroups = std::move(groups);
}

ScriptComponentGroups ScriptDefinitions::GetScriptComponentGroupDefinitions(std::string_view className) {
  const auto& groups = TheStore().mComponentGroups;
  const auto place = groups.find(className);
  return place != groups.end() ? place->second : ScriptComponentGroups();
}

void ScriptDefinitions::AddObjectDefinition(std::shared_ptr<ScriptObjectDefinition> definition) {
  {
    const CurrentDefinition current(*definition);
    definition->Fill();
  }
  auto& definitions = TheStore().mDefinitions;
  const auto place = std::find_if(definitions.begin(), definitions.end(), [&](const auto& known) {
    return known.mDefinition->GetClassName() == definition->GetClassName();
  });
  KnownDefinition known{std::move(definition), TheStore().mAsked};
  if (place != definitions.end()) {
    *place = std::move(known);
  } else {
    definitions.push_back(std::move(known));
  }
}

ScriptObjectDefinitionInitiatorBase::~ScriptObjectDefinitionInitiatorBase() = default;

ScriptObjectDefinitionRegistrar::ScriptObjectDefinitionRegistrar(
    std::unique_ptr<ScriptObjectDefinitionInitiatorBase> initiator)
    : mInitiator(std::move(initiator)) {
  TheStore().mWaiting.push_back(mInitiator.get());
}

ScriptObjectDefinitionRegistrar::~ScriptObjectDefinitionRegistrar() {
  Store& store = TheStore();
  std::erase(store.mWaiting, mInitiator.get());
  std::erase_if(store.mDefinitions,
                [&](const KnownDefinition& known) { return known.mInitiator == mInitiator.get(); });
}

ClassDefinitions AllClassDefinitions() {
  Store& store = TheStore();
  // One by one, because an initiator may load a module that leaves further ones.
  while (!store.mWaiting.empty()) {
    ScriptObjectDefinitionInitiatorBase* const initiator = store.mWaiting.front();
    store.mWaiting.erase(store.mWaiting.begin());
    const auto* const previous = std::exchange(store.mAsked, initiator);
    try {
      initiator->Define();
    } catch (...) {
      qelcore::LogException(std::current_exception(),
                            "qelscripting::ScriptObjectDefinitionInitiatorBase::Define");
    }
    store.mAsked = previous;
  }
  ClassDefinitions definitions;
  definitions.reserve(store.mDefinitions.size());
  for (const KnownDefinition& known : store.mDefinitions) definitions.push_back(known.mDefinition);
  return definitions;
}

void host::SetScriptComponentGroups(std::string className, ScriptComponentGroups groups) {
  TheStore().mComponentGroups.insert_or_assign(std::move(className), std::move(groups));
}

}  // namespace qelscripting
