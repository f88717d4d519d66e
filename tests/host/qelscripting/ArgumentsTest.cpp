// What passes between scripts and methods.
#include "platform/qelcore/Text.h"
#include "tests/host/qelscripting/ScriptTest.h"

namespace scripttest {
namespace {

TEST_F(Script, AMethodIsCalledWithADotOrAColon) {
  EXPECT_EQ(Run("return Recorder.Text('a'), Recorder:Text('b')"), (Texts{"true", "true"}));
  EXPECT_EQ(Run("local f = Recorder.Text; return f('c')"), Texts{"true"});
  EXPECT_EQ(Run("return Recorder.Nothing(), Recorder:Nothing()"), (Texts{"true", "true"}));
  EXPECT_EQ(Recorded(),
            (Texts{"Recorder \"a\"", "Recorder \"b\"", "Recorder \"c\"", "Recorder", "Recorder"}));
}

TEST_F(Script, SeveralParametersOfBothTypesArriveInOrder) {
  EXPECT_EQ(Run("return Recorder.Mixed('one', true, 'two'), Recorder:Mixed('', false, '3')"),
            (Texts{"true", "true"}));
  EXPECT_EQ(Recorded(), (Texts{"Recorder \"one\" true \"two\"", "Recorder \"\" false \"3\""}));
}

TEST_F(Script, ResultsOfBothTypesComeBack) {
  EXPECT_EQ(Run("return Recorder.Echo('text'), Recorder.Not(true), Recorder.Not(false), "
                "type(Recorder.Echo('')), type(Recorder.Not(true))"),
            (Texts{"text", "false", "true", "string", "boolean"}));
}

TEST_F(Script, AWrongArgumentNamesTheMethodTheParameterAndWhatCame) {
  const struct {
    const char* mCall;
    const char* mExpected;
  } rows[] = {
      {"Recorder.Text(5)", "test:1: Text: the parameter \"text\" needs a text, not a number"},
      {"Recorder.Text(5.5)", "test:1: Text: the parameter \"text\" needs a text, not a number"},
      {"Recorder.Text(nil)", "test:1: Text: the parameter \"text\" needs a text, not nil"},
      {"Recorder.Text(true)", "test:1: Text: the parameter \"text\" needs a text, not a truth value"},
      {"Recorder.Text({})", "test:1: Text: the parameter \"text\" needs a text, not a table"},
      {"Recorder.Text(print)", "test:1: Text: the parameter \"text\" needs a text, not a function"},
      {"Recorder.Text(coroutine.create(print))",
       "test:1: Text: the parameter \"text\" needs a text, not a coroutine"},
      {"Recorder:Text(Recorder)", "test:1: Text: the parameter \"text\" needs a text, not an object"},
      {"Recorder.Not('true')", "test:1: Not: the parameter \"truth\" needs a truth value, not a text"},
      {"Recorder.Not(0)", "test:1: Not: the parameter \"truth\" needs a truth value, not a number"},
      {"Recorder.Mixed('a', 'b', 'c')",
       "test:1: Mixed: the parameter \"isOpen\" needs a truth value, not a text"},
      {"Recorder.Mixed('a', true, false)",
       "test:1: Mixed: the parameter \"body\" needs a text, not a truth value"},
      {"Recorder.Text()", "test:1: Text: takes 1 argument (\"text\"), not 0"},
      {"Recorder:Text()", "test:1: Text: takes 1 argument (\"text\"), not 0"},
      {"Recorder.Text('a', 'b')", "test:1: Text: takes 1 argument (\"text\"), not 2"},
      {"Recorder.Text('a', nil)", "test:1: Text: takes 1 argument (\"text\"), not 2"},
      {"Recorder.Nothing(1)", "test:1: Nothing: takes 0 arguments, not 1"},
      {"Recorder:Mixed('a', true)",
       "test:1: Mixed: takes 3 arguments (\"title\", \"isOpen\", \"body\"), not 2"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MessageOf(row.mCall), row.mExpected);
  }
  EXPECT_EQ(Recorded(), Texts());
  EXPECT_EQ(MadeRecorders(), 0);
}

TEST_F(Script, TextsAreUTF8InScriptsAndUTF16InMethods) {
  const struct {
    const char* mLua;
    std::u16string mExpected;
  } rows[] = {
      {"'Grüße'", u"Grüße"},
      {"'\\u{1F600}'", u"\U0001F600"},
      {"'\\u{0}'", std::u16string(1, u'\0')},
      {"'a\\0b'", std::u16string(u"a\0b", 3)},
      {"''", u""},
      {"'\\xFF'", u"\uFFFD"},
      {"'a\\xC3'", u"a\uFFFD"},
      {"'\\xC3x'", u"\uFFFDx"},
  };
  for (const auto& row : rows) {
    std::u16string seen;
    Define("Reader", [&] {
      auto method = Method("Read");
      method.mParameters = {{"text", qelscripting::ScriptType::kString}};
      method.mCall =
          [&](qelscripting::ScriptObject&,
              const std::vector<qelscripting::ScriptValue>& arguments) -> qelscripting::ScriptValue {
        seen = std::get<std::u16string>(arguments.at(0));
        return true;
      };
      qelscripting::ScriptObjectDefinitionBase::sCurrent->AddMethod(method);
    });
    EXPECT_EQ(Run("Reader.Read(" + std::string(row.mLua) + ")"), Texts{"true"}) << row.mLua;
    EXPECT_EQ(seen, row.mExpected) << row.mLua;
  }
}

TEST_F(Script, ATextThatIsReturnedKeepsItsBytes) {
  EXPECT_EQ(Run("local t = 'a\\0b\\u{20AC}\\u{1F600}'; return Recorder.Echo(t) == t"), Texts{"true"});
  EXPECT_EQ(Run("return #Recorder.Echo(('\\u{20AC}'):rep(1000000))"), Texts{"3000000"});
  // What is no UTF-8 comes back as the character that stands for it, and an unpaired surrogate as well.
  EXPECT_EQ(Run("return Recorder.Echo('\\xFF')"), Texts{"\xEF\xBF\xBD"});
  Action() = [] { return std::u16string(1, u'\xD800'); };
  EXPECT_EQ(Run("return Recorder.Do()"), Texts{"\xEF\xBF\xBD"});
}

}  // namespace
}  // namespace scripttest
