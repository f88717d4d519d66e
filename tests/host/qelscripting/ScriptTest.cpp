#include "tests/host/qelscripting/ScriptTest.h"

#include <stdexcept>
#include <utility>

#include "platform/qelcore/Text.h"

namespace scripttest {

namespace {

using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;
using qelscripting::kMethodIsCallable;
using qelscripting::kMethodIsPlain;
using qelscripting::ScriptDefinitions;
using qelscripting::ScriptMethod;
using qelscripting::ScriptObject;
using qelscripting::ScriptObjectDefinition;
using qelscripting::ScriptObjectDefinitionBase;
using qelscripting::ScriptType;
using qelscripting::ScriptValue;
using Arguments = std::vector<ScriptValue>;

int living = 0;
int made = 0;

std::string Show(const ScriptValue& value) {
  const auto* const text = std::get_if<std::u16string>(&value);
  return text != nullptr ? '"' + UTF16to8(*text) + '"' : std::get<bool>(value) ? "true" : "false";
}

ScriptValue Record(ScriptObject& object, const Arguments& arguments) {
  std::string call = object.GetScriptClassName();
  for (const ScriptValue& argument : arguments) {
    call += ' ' + Show(argument);
  }
  Recorded().push_back(call);
  return true;
}

void DefineRecorder() {
  ScriptObjectDefinitionBase& definition = *ScriptObjectDefinitionBase::sCurrent;
  definition.AddOrChangeNamespace("Recorder");
  ScriptMethod method = Method("Nothing");
  method.mCall = Record;
  definition.AddMethod(method);

  method.mName = "Text";
  method.mParameters = {{"text", ScriptType::kString}};
  definition.AddMethod(method);

  method.mName = "Mixed";
  method.mParameters = {
      {"title", ScriptType::kString}, {"isOpen", ScriptType::kBool}, {"body", ScriptType::kString}};
  definition.AddMethod(method);

  method.mName = "Echo";
  method.mParameters = {{"text", ScriptType::kString}};
  method.mResult = ScriptType::kString;
  method.mCall = [](ScriptObject&, const Arguments& arguments) { return arguments.at(0); };
  definition.AddMethod(method);

  method.mName = "Not";
  method.mParameters = {{"truth", ScriptType::kBool}};
  method.mResult = ScriptType::kBool;
  method.mCall = [](ScriptObject&, const Arguments& arguments) -> ScriptValue {
    return !std::get<bool>(arguments.at(0));
  };
  definition.AddMethod(method);

  method.mName = "Do";
  method.mParameters = {};
  method.mResult = ScriptType::kString;
  method.mCall = [](ScriptObject&, const Arguments&) -> ScriptValue { return Action()(); };
  definition.AddMethod(method);
}

/// Registered before `main`, as the libraries of an application do it.
class RecorderInitiator final : public qelscripting::ScriptObjectDefinitionInitiatorBase {
  void Define() override {
    ScriptDefinitions::AddObjectDefinition(std::make_shared<ScriptObjectDefinition>(
        "Recorder", "Notes how it is called", [] { return std::make_shared<Recorder>(); }, DefineRecorder));
  }
};

const qelscripting::ScriptObjectDefinitionRegistrar kRegistrar(std::make_unique<RecorderInitiator>());

}  // namespace

Recorder::Recorder() : ScriptObject("Recorder") {
  ++living;
  ++made;
}

Recorder::~Recorder() {
  --living;
}

Texts& Recorded() {
  static Texts recorded;
  return recorded;
}

int LivingRecorders() {
  return living;
}

int MadeRecorders() {
  return made;
}

std::function<std::u16string()>& Action() {
  static std::function<std::u16string()> action;
  return action;
}

ScriptMethod Method(const std::string& name) {
  return {name,
          {},
          ScriptType::kBool,
          kMethodIsCallable | kMethodIsPlain,
          [](ScriptObject&, const Arguments&) -> ScriptValue { return true; }};
}

void Define(const std::string& className, const std::function<void()>& fill) {
  ScriptDefinitions::AddObjectDefinition(std::make_shared<ScriptObjectDefinition>(
      className, "", [] { return std::make_shared<Recorder>(); },
      [className, fill] {
        ScriptObjectDefinitionBase::sCurrent->AddOrChangeNamespace(className);
        fill();
      }));
}

Script::Script() {
  SetOptions({});
}

Script::~Script() {
  qelscripting::host::SetOptions({});
}

void Script::SetOptions(qelscripting::host::Options options) {
  options.mPrint = [this](std::string_view text) { mPrinted += text; };
  qelscripting::host::SetOptions(std::move(options));
}

Texts Script::Run(const std::string& text) {
  try {
    return qelscripting::host::RunScriptText(text, "test");
  } catch (const qelscripting::host::ScriptError& error) {
    return {"failed: " + std::string(error.what())};
  }
}

std::string Script::MessageOf(const std::string& text) {
  try {
    const Texts values = qelscripting::host::RunScriptText(text, "test");
    ADD_FAILURE() << "did not fail: " << text;
    return values.empty() ? std::string() : values.front();
  } catch (const qelscripting::host::ScriptError& error) {
    return error.what();
  }
}

}  // namespace scripttest
