// Objects and their methods as scripts see them.
#include <stdexcept>

#include "tests/host/qelscripting/ScriptTest.h"

namespace scripttest {
namespace {

using qelscripting::ScriptMethod;
using qelscripting::ScriptObject;
using qelscripting::ScriptObjectDefinitionBase;
using qelscripting::ScriptType;
using qelscripting::ScriptValue;
using qelscripting::host::RunScriptText;
using qelscripting::host::ScriptError;
using qelscripting::host::ScriptSession;

TEST_F(Script, AnObjectIsMadeWhenItIsFirstUsedAndKeptForTheSession) {
  {
    ScriptSession session;
    session.RunText("local f = Recorder.Text", "test");
    EXPECT_EQ(MadeRecorders(), 0);
    session.RunText("Recorder.Nothing() Recorder:Nothing()", "test");
    session.RunText("Recorder.Nothing()", "test");
    EXPECT_EQ(MadeRecorders(), 1);
    EXPECT_EQ(LivingRecorders(), 1);
  }
  EXPECT_EQ(LivingRecorders(), 0);
}

TEST_F(Script, AnUnknownMethodIsAnErrorThatListsWhatThereIs) {
  EXPECT_EQ(MessageOf("Recorder.Tekst('a')"),
            "test:1: Recorder has no \"Tekst\"; it has Nothing, Text, Mixed, Echo, Not, Do");
  EXPECT_EQ(MessageOf("\nRecorder:Tekst('a')"),
            "test:2: Recorder has no \"Tekst\"; it has Nothing, Text, Mixed, Echo, Not, Do");
  EXPECT_EQ(MessageOf("return Recorder.field"),
            "test:1: Recorder has no \"field\"; it has Nothing, Text, Mixed, Echo, Not, Do");
  EXPECT_EQ(MessageOf("return Recorder[1]"),
            "test:1: Recorder has no \"1\"; it has Nothing, Text, Mixed, Echo, Not, Do");
}

TEST_F(Script, ANamespaceIsReadOnly) {
  const char* const attempts[] = {
      "Recorder.Text = print",           "Recorder.other = 1",         "Recorder[1] = 1",
      "rawset(Recorder, 'Text', print)", "setmetatable(Recorder, {})", "getmetatable(Recorder).__index = {}",
      "table.insert(Recorder, 1)",
  };
  for (const char* const attempt : attempts) {
    EXPECT_EQ(Run(std::string("pcall(function() ") + attempt + " end) return Recorder.Echo('still')"),
              Texts{"still"})
        << attempt;
    EXPECT_EQ(Run(std::string("return (pcall(function() ") + attempt + " end))"), Texts{"false"}) << attempt;
  }
  EXPECT_EQ(MessageOf("Recorder.Text = print"), "test:1: Recorder cannot be changed by a script");
}

TEST_F(Script, WhatAMethodThrowsIsAnErrorOfTheScript) {
  Action() = []() -> std::u16string { throw std::runtime_error("from the method"); };
  EXPECT_EQ(MessageOf("local a\nRecorder.Do()"), "test:2: Do: from the method");
  Action() = []() -> std::u16string { throw 5; };
  EXPECT_EQ(MessageOf("Recorder.Do()"), "test:1: Do: unknown exception");
  Action() = []() -> std::u16string { throw std::bad_alloc(); };
  EXPECT_EQ(MessageOf("Recorder.Do()").substr(0, 12), "test:1: Do: ");
  // The script may catch it and go on, in a coroutine too.
  Action() = []() -> std::u16string { throw std::runtime_error("from the method"); };
  EXPECT_EQ(Run("return pcall(function() Recorder.Do() end)"),
            (Texts{"false", "test:1: Do: from the method"}));
  EXPECT_EQ(Run("return pcall(Recorder.Do)"), (Texts{"false", "Do: from the method"}));
  EXPECT_EQ(Run("return coroutine.resume(coroutine.create(function() Recorder.Do() end))"),
            (Texts{"false", "test:1: Do: from the method"}));
}

TEST_F(Script, EveryThrowReleasesWhatTheCallHeld) {
  Action() = []() -> std::u16string { throw std::runtime_error(std::string(1000, 'x')); };
  EXPECT_EQ(Run("for i = 1, 1000 do pcall(Recorder.Do) pcall(Recorder.Text, i) pcall(Recorder.Text) end "
                "return Recorder.Echo(('y'):rep(3))"),
            Texts{"yyy"});
}

TEST_F(Script, AMethodMayRunAnotherScript) {
  Action() = [] {
    const Texts inner = RunScriptText("x = 'inner'; return Recorder.Echo(x), y", "inner");
    EXPECT_EQ(inner, (Texts{"inner", "nil"}));
    return u"done";
  };
  EXPECT_EQ(Run("y = 'outer'; return Recorder.Do(), x, y"), (Texts{"done", "nil", "outer"}));
}

TEST_F(Script, AnErrorOfAnInnerScriptShowsBothPlaces) {
  Action() = [] {
    RunScriptText("\nerror('deep')", "inner");
    return u"";
  };
  EXPECT_EQ(MessageOf("Recorder.Do()"), "test:1: Do: inner:2: deep");
}

TEST_F(Script, ASessionCannotRunTwoScriptsAtOnce) {
  ScriptSession session;
  Action() = [&] {
    session.RunText("return 1", "inner");
    return u"";
  };
  try {
    session.RunText("Recorder.Do()", "test");
    FAIL();
  } catch (const ScriptError& error) {
    EXPECT_STREQ(error.what(), "test:1: Do: inner: the session is running a script already");
  }
  EXPECT_EQ(session.RunText("1", "test"), Texts{"1"});
}

TEST_F(Script, ScriptsWithinOneAnotherGoTwoDeep) {
  int depth = 0;
  Action() = [&depth] {
    ++depth;
    RunScriptText("Recorder.Do()", "inner");
    return u"";
  };
  EXPECT_EQ(MessageOf("Recorder.Do()"),
            "test:1: Do: inner:1: Do: inner: too many scripts run within one another");
  EXPECT_EQ(depth, 2);
  EXPECT_EQ(Run("return 1"), Texts{"1"});
}

TEST_F(Script, AMethodWithoutTheFlagIsHidden) {
  Define("Shy", [] {
    ScriptMethod hidden = Method("Hidden");
    hidden.mFlags = 0x400000;
    ScriptObjectDefinitionBase::sCurrent->AddMethod(hidden);
    ScriptMethod shown = Method("Shown");
    shown.mFlags = 1;
    ScriptObjectDefinitionBase::sCurrent->AddMethod(shown);
  });
  EXPECT_EQ(Run("return Shy.Shown()"), Texts{"true"});
  EXPECT_EQ(MessageOf("Shy.Hidden()"), "test:1: Shy has no \"Hidden\"; it has Shown");
}

TEST_F(Script, AClassThatDoesNotKeepItsWordGivesAnError) {
  Define("Liar", [] {
    ScriptMethod method = Method("Wrong");
    method.mCall = [](ScriptObject&, const std::vector<ScriptValue>&) -> ScriptValue { return u"text"; };
    ScriptObjectDefinitionBase::sCurrent->AddMethod(method);
    method.mName = "Empty";
    method.mCall = nullptr;
    ScriptObjectDefinitionBase::sCurrent->AddMethod(method);
  });
  EXPECT_EQ(MessageOf("Liar.Wrong()"), "test:1: Wrong: the result is not a truth value");
  EXPECT_EQ(MessageOf("Liar.Empty()").substr(0, 15), "test:1: Empty: ");
}

TEST_F(Script, AnObjectThatCannotBeMadeGivesAnError) {
  using qelscripting::ScriptDefinitions;
  using qelscripting::ScriptObjectDefinition;
  const auto fill = [] { ScriptObjectDefinitionBase::sCurrent->AddMethod(Method("Go")); };
  ScriptDefinitions::AddObjectDefinition(std::make_shared<ScriptObjectDefinition>(
      "Missing", "", [] { return std::shared_ptr<ScriptObject>(); }, fill));
  ScriptDefinitions::AddObjectDefinition(std::make_shared<ScriptObjectDefinition>(
      "Faulty", "", []() -> std::shared_ptr<ScriptObject> { throw std::runtime_error("no object"); }, fill));
  EXPECT_EQ(MessageOf("Missing.Go()"), "test:1: Go: there is no object of the class Missing");
  EXPECT_EQ(MessageOf("Faulty.Go()"), "test:1: Go: no object");
}

}  // namespace
}  // namespace scripttest
