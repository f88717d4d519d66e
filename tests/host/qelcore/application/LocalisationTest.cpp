#include "platform/qelcore/Localisation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::Localise;
using qelcore::ReplacePlaceholders;
using qelcore::host::SetApplicationLanguage;

class Texts : public testing::Test {
 protected:
  void SetUp() override {
    qelcore::host::SetDirectories({.mApplication = mDirectory.Path().string()});
    qelcore::host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view context) {
      mLogged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
    });
  }

  void TearDown() override { qelcore::host::SetExceptionSink(nullptr); }

  testsupport::TemporaryDirectory mDirectory;
  std::vector<std::string> mLogged;
};

constexpr const char* kOK = "$$$/qel/scr/kOKButtonText=OK";

TEST_F(Texts, WithoutACatalogueTheDefaultIsUsed) {
  SetApplicationLanguage("de_DE");
  EXPECT_EQ(Localise(kOK), u"OK");
  EXPECT_EQ(Localise("$$$/a=one\ntwo = three\n"), u"one\ntwo = three\n");
  EXPECT_EQ(Localise("$$$/a="), u"");
  EXPECT_EQ(Localise("$$$/a=\xC3\xA9\xF0\x9F\x98\x80"), u"\u00E9\U0001F600");
  EXPECT_EQ(Localise("$$$/a=\xFF"), u"\uFFFD");
  EXPECT_EQ(Localise("no default"), u"no default");
  EXPECT_EQ(Localise(""), u"");
  EXPECT_TRUE(mLogged.empty());
}

TEST_F(Texts, ACatalogueTranslates) {
  mDirectory.Write("translations/de_DE.json",
                   "{\"$$$/qel/scr/kOKButtonText\":\"In "
                   "Ordnung\",\"$$$/empty\":\"\",\"$$$/lines\":\"eins\\nzw\xC3\xB6lf\"}");
  SetApplicationLanguage("de_DE");
  EXPECT_EQ(Localise(kOK), u"In Ordnung");
  EXPECT_EQ(Localise("$$$/lines=one"), u"eins\nzw\u00F6lf");
  EXPECT_EQ(Localise("$$$/empty=not yet translated"), u"not yet translated");
  EXPECT_EQ(Localise("$$$/absent=absent"), u"absent");
  EXPECT_EQ(Localise("$$$/qel/scr/kokbuttontext=OK"), u"OK");
}

TEST_F(Texts, ALanguageWithoutCatalogueTakesTheFirstOfTheSameLetters) {
  mDirectory.Write("translations/de_DE.json", R"({"$$$/a":"de_DE"})");
  mDirectory.Write("translations/de_CH.json", R"({"$$$/a":"de_CH"})");
  mDirectory.Write("translations/den_XX.json", R"({"$$$/a":"den_XX"})");
  mDirectory.Write("translations/en_GB.json", R"({"$$$/a":"en_GB"})");
  mDirectory.Write("translations/fr_FR.txt", R"({"$$$/a":"fr_FR"})");
  struct Row {
    const char* mLanguage;
    const char16_t* mText;
  };
  for (const Row& row : {Row{"de_DE", u"de_DE"},
                         {"de_AT", u"de_CH"},
                         {"de", u"de_CH"},
                         {"den", u"den_XX"},
                         {"en_AU", u"en_GB"},
                         {"en_US", u"default"},
                         {"fr_FR", u"default"},
                         {"d", u"default"}}) {
    SetApplicationLanguage(row.mLanguage);
    EXPECT_EQ(Localise("$$$/a=default"), row.mText) << row.mLanguage;
  }
}

TEST_F(Texts, EnglishMayHaveACatalogueToo) {
  mDirectory.Write("translations/en_US.json", R"({"$$$/a":"changed"})");
  SetApplicationLanguage("en_US");
  EXPECT_EQ(Localise("$$$/a=default"), u"changed");
}

TEST_F(Texts, ABrokenCatalogueIsLoggedOnceAndIgnored) {
  SetApplicationLanguage("de_DE");
  int number = 0;
  for (const char* const content :
       {"", "{", "[]", R"({"$$$/a":1})", R"({"$$$/a":"x","$$$/b":null})", "{\"$$$/a\":\"\xFF\"}"}) {
    const std::string folder = "app" + std::to_string(number++);
    mDirectory.Write(folder + "/translations/de_DE.json", content);
    qelcore::host::SetDirectories({.mApplication = (mDirectory.Path() / folder).string()});
    mLogged.clear();
    EXPECT_EQ(Localise("$$$/a=default"), u"default") << content;
    EXPECT_EQ(Localise("$$$/b=default"), u"default") << content;
    ASSERT_EQ(mLogged.size(), 1U) << content;
    EXPECT_TRUE(mLogged[0].starts_with("qelcore::Localise: ")) << mLogged[0];
  }
}

TEST_F(Texts, ALanguageNeverLeadsOutOfTheFolder) {
  mDirectory.Write("secret.json", R"({"$$$/a":"secret"})");
  const std::string usual = qelcore::Locale::ApplicationLanguage();
  EXPECT_NE(usual, "");
  mDirectory.Write("translations/" + usual + ".json", R"({})");
  for (const char* const language :
       {"../secret", "/etc/passwd", "de/../../secret", "de\n", "d\xC3\xA9", ".."}) {
    SetApplicationLanguage(language);
    EXPECT_EQ(qelcore::Locale::ApplicationLanguage(), usual) << language;
    EXPECT_EQ(Localise("$$$/a=default"), u"default") << language;
  }
}

TEST_F(Texts, ManyThreadsMayAskAtATime) {
  mDirectory.Write("translations/de_DE.json", R"({"$$$/a":"eins"})");
  SetApplicationLanguage("de_DE");
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([] {
      for (int count = 0; count < 200; ++count) {
        EXPECT_EQ(Localise("$$$/a=one"), u"eins");
      }
    });
  }
}

TEST(ApplicationName, IsSetByTheHost) {
  EXPECT_EQ(qelcore::GetApplicationName(), u"System Compatibility Report");
  qelcore::host::SetApplicationName(u"\u00C9diteur");
  EXPECT_EQ(qelcore::GetApplicationName(), u"\u00C9diteur");
}

TEST(Placeholders, AreReplacedByTheirValues) {
  EXPECT_EQ(ReplacePlaceholders(u"", {u"a"}), u"");
  EXPECT_EQ(ReplacePlaceholders(u"plain", {}), u"plain");
  EXPECT_EQ(ReplacePlaceholders(u"@0 and @1", {u"a", u"b"}), u"a and b");
  EXPECT_EQ(ReplacePlaceholders(u"@1@0@1", {u"a", u"b"}), u"bab");
  EXPECT_EQ(ReplacePlaceholders(u"@0", {u"@1", u"b"}), u"@1");
  EXPECT_EQ(ReplacePlaceholders(u"@0 @2 @1", {u"a", u"b"}), u"a @2 b");
  EXPECT_EQ(ReplacePlaceholders(u"@", {u"a"}), u"@");
  EXPECT_EQ(ReplacePlaceholders(u"@@0", {u"a"}), u"@a");
  EXPECT_EQ(ReplacePlaceholders(u"a@b.c @x", {u"a"}), u"a@b.c @x");
  EXPECT_EQ(ReplacePlaceholders(u"@0", {u""}), u"");
  EXPECT_EQ(ReplacePlaceholders(u"@01", {u"a", u"b"}), u"a1");
  EXPECT_EQ(ReplacePlaceholders(u"@10", {u"a", u"b"}), u"@10");
  EXPECT_EQ(ReplacePlaceholders(u"@10", {u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"ten"}),
            u"ten");
  EXPECT_EQ(ReplacePlaceholders(u"@99999999999999999999999", {u"a"}), u"@99999999999999999999999");
}

}  // namespace
