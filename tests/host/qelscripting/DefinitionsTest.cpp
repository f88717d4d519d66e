// Definitions of classes, and when they are asked for.
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelscripting/ScriptTest.h"

namespace scripttest {
namespace {

using qelscripting::ScriptComponentGroups;
using qelscripting::ScriptDefinitions;
using qelscripting::ScriptMethod;
using qelscripting::ScriptObject;
using qelscripting::ScriptObjectDefinition;
using qelscripting::ScriptObjectDefinitionBase;
using qelscripting::ScriptObjectDefinitionInitiatorBase;
using qelscripting::ScriptObjectDefinitionRegistrar;
using qelscripting::ScriptType;
using qelscripting::ScriptValue;

/// Which initiators were asked. Not a plain object, because the registrars below run before it would be made.
Texts& Asked() {
  static Texts asked;
  return asked;
}

class NotingInitiator final : public ScriptObjectDefinitionInitiatorBase {
 public:
  explicit NotingInitiator(std::string name) : mName(std::move(name)) {}
  void Define() override {
    Asked().push_back(mName);
    if (mName == "faulty") {
      throw std::runtime_error("from an initiator");
    }
  }

 private:
  std::string mName;
};

const ScriptObjectDefinitionRegistrar kFirst(std::make_unique<NotingInitiator>("first"));
const ScriptObjectDefinitionRegistrar kFaulty(std::make_unique<NotingInitiator>("faulty"));
const ScriptObjectDefinitionRegistrar kSecond(std::make_unique<NotingInitiator>("second"));

/// A definition with one method that returns the text.
std::shared_ptr<ScriptObjectDefinition> Definition(const std::string& className, const std::string& nameSpace,
                                                   const std::string& methodName,
                                                   const std::u16string& text) {
  return std::make_shared<ScriptObjectDefinition>(
      className, "A " + className, [] { return std::make_shared<Recorder>(); },
      [=] {
        ScriptObjectDefinitionBase::sCurrent->AddOrChangeNamespace(nameSpace);
        ScriptMethod method = Method(methodName);
        method.mResult = ScriptType::kString;
        method.mCall = [text](ScriptObject&, const std::vector<ScriptValue>&) -> ScriptValue { return text; };
        ScriptObjectDefinitionBase::sCurrent->AddMethod(method);
      });
}

TEST_F(Script, InitiatorsAreAskedOnceBeforeTheFirstScript) {
  EXPECT_EQ(Asked(), Texts());
  Texts logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
  });
  EXPECT_EQ(Run("return Recorder.Echo('there')"), Texts{"there"});
  EXPECT_EQ(Asked(), (Texts{"first", "faulty", "second"}));
  EXPECT_EQ(logged, Texts{"qelscripting::ScriptObjectDefinitionInitiatorBase::Define: from an initiator"});
  EXPECT_EQ(Run("return 1"), Texts{"1"});
  EXPECT_EQ(Asked().size(), 3U);
  qelcore::host::SetExceptionSink(nullptr);
}

TEST_F(Script, ALateInitiatorIsAskedBeforeTheNextSession) {
  EXPECT_EQ(Run("return 1"), Texts{"1"});
  const ScriptObjectDefinitionRegistrar late(std::make_unique<NotingInitiator>("late"));
  EXPECT_EQ(Asked().back(), "second");
  EXPECT_EQ(Run("return 1"), Texts{"1"});
  EXPECT_EQ(Asked().back(), "late");
}

TEST_F(Script, AnInitiatorThatIsGoneIsNotAsked) {
  { const ScriptObjectDefinitionRegistrar early(std::make_unique<NotingInitiator>("early")); }
  EXPECT_EQ(Run("return 1"), Texts{"1"});
  EXPECT_EQ(Asked(), (Texts{"first", "faulty", "second"}));
}

class AddingInitiator final : public ScriptObjectDefinitionInitiatorBase {
 public:
  void Define() override {
    ScriptDefinitions::AddObjectDefinition(Definition("Guest", "", "Stay", u"a while"));
  }
};

TEST_F(Script, DefinitionsLeaveWithTheInitiatorThatAddedThem) {
  ScriptDefinitions::AddObjectDefinition(Definition("Host", "", "Stay", u"always"));
  {
    const ScriptObjectDefinitionRegistrar guest(std::make_unique<AddingInitiator>());
    EXPECT_EQ(Run("return Guest.Stay()"), Texts{"a while"});
  }
  EXPECT_EQ(Run("return Guest == nil"), Texts{"true"});
  EXPECT_EQ(Run("return Host.Stay()"), Texts{"always"});
}

TEST(Definitions, NoneIsCurrentOutsideFilling) {
  EXPECT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
  const ScriptObjectDefinitionBase* seen = nullptr;
  const auto definition = std::make_shared<ScriptObjectDefinition>(
      "Class", "", nullptr, [&] { seen = ScriptObjectDefinitionBase::sCurrent; });
  EXPECT_EQ(seen, nullptr);
  ScriptDefinitions::AddObjectDefinition(definition);
  EXPECT_EQ(seen, definition.get());
  EXPECT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
}

TEST(Definitions, FillingOneMayAddAnother) {
  const auto inner = std::make_shared<ScriptObjectDefinition>("Inner", "", nullptr, [] {});
  const ScriptObjectDefinitionBase* afterInner = nullptr;
  const auto outer = std::make_shared<ScriptObjectDefinition>("Outer", "", nullptr, [&] {
    ScriptDefinitions::AddObjectDefinition(inner);
    afterInner = ScriptObjectDefinitionBase::sCurrent;
  });
  ScriptDefinitions::AddObjectDefinition(outer);
  EXPECT_EQ(afterInner, outer.get());
  EXPECT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
}

TEST_F(Script, AFillThatThrowsLeavesTheClassUnknownAndNoneCurrent) {
  EXPECT_THROW(Define("Broken", [] { throw std::runtime_error("from filling"); }), std::runtime_error);
  EXPECT_EQ(ScriptObjectDefinitionBase::sCurrent, nullptr);
  EXPECT_EQ(Run("return Broken"), Texts{"nil"});
  // What was there before stays.
  Define("Broken", [] { ScriptObjectDefinitionBase::sCurrent->AddMethod(Method("Go")); });
  EXPECT_THROW(Define("Broken", [] { throw std::runtime_error("from filling"); }), std::runtime_error);
  EXPECT_EQ(Run("return Broken.Go()"), Texts{"true"});
}

TEST_F(Script, ADefinitionOfTheSameNameReplaces) {
  ScriptDefinitions::AddObjectDefinition(Definition("Class", "Space", "Old", u"old"));
  EXPECT_EQ(Run("return Space.Old()"), Texts{"old"});
  ScriptDefinitions::AddObjectDefinition(Definition("Class", "Space", "New", u"new"));
  EXPECT_EQ(Run("return Space.New()"), Texts{"new"});
  EXPECT_EQ(MessageOf("Space.Old()"), "test:1: Space has no \"Old\"; it has New");
}

TEST_F(Script, ClassesOfOneNamespaceShareIt) {
  ScriptDefinitions::AddObjectDefinition(Definition("Class", "Space", "One", u"one"));
  ScriptDefinitions::AddObjectDefinition(Definition("Other", "Space", "Two", u"two"));
  EXPECT_EQ(Run("return Space.One(), Space.Two(), Class, Other"), (Texts{"one", "two", "nil", "nil"}));
  EXPECT_EQ(MessageOf("Space.Three()"), "test:1: Space has no \"Three\"; it has One, Two");
}

TEST_F(Script, AClassWithoutANamespaceIsUnderItsOwnName) {
  ScriptDefinitions::AddObjectDefinition(Definition("Class", "", "One", u"one"));
  EXPECT_EQ(Run("return Class.One()"), Texts{"one"});
}

TEST(Definitions, KeepWhatIsDefined) {
  ScriptObjectDefinition definition(
      "Class", "What it is for", [] { return std::make_shared<Recorder>(); }, [] {});
  EXPECT_EQ(definition.GetClassName(), "Class");
  EXPECT_EQ(definition.GetDescription(), "What it is for");
  definition.AddOrChangeNamespace("One");
  definition.AddOrChangeNamespace("Two");
  EXPECT_EQ(definition.GetNamespace(), "Two");

  definition.AddMethod(Method("First"));
  definition.AddMethod(Method("Second"));
  ScriptMethod replacement = Method("First");
  replacement.mResult = ScriptType::kString;
  definition.AddMethod(replacement);
  ASSERT_EQ(definition.GetMethods().size(), 2U);
  EXPECT_EQ(definition.GetMethods()[0].mName, "First");
  EXPECT_EQ(definition.GetMethods()[0].mResult, ScriptType::kString);
  EXPECT_EQ(definition.GetMethods()[1].mName, "Second");

  definition.AttachComponentGroups({{"group"}});
  ASSERT_EQ(definition.GetComponentGroups().size(), 1U);
  EXPECT_EQ(definition.GetComponentGroups()[0].mName, "group");
  EXPECT_EQ(definition.MakeObject()->GetScriptClassName(), "Recorder");
}

TEST(Definitions, ComponentGroupsAreThoseThatTheHostSet) {
  EXPECT_TRUE(ScriptDefinitions::GetScriptComponentGroupDefinitions("Class").empty());
  qelscripting::host::SetScriptComponentGroups("Class", {{"one"}, {"two"}});
  const ScriptComponentGroups groups = ScriptDefinitions::GetScriptComponentGroupDefinitions("Class");
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[1].mName, "two");
  EXPECT_TRUE(ScriptDefinitions::GetScriptComponentGroupDefinitions("Other").empty());
  qelscripting::host::SetScriptComponentGroups("Class", {});
  EXPECT_TRUE(ScriptDefinitions::GetScriptComponentGroupDefinitions("Class").empty());
}

}  // namespace
}  // namespace scripttest
