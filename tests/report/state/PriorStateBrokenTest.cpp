// Remembered states that are broken in every way.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/report/state/PriorStateFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PriorStateBrokenTest : public testsupport::PriorStateFixture {};

TEST_F(PriorStateBrokenTest, AKeyOfAnotherTypeFailsTheWholeLoad) {
  const struct {
    const char* mKey;
    std::vector<const char*> mValues;
  } rows[] = {
      {"last_match_job", {"1", "1.5", "true", "null", "[]", "{}", "[\"a\"]"}},
      {"info_matches",
       {"\"a\"", "1", "true", "null", "{}", "[1]", "[\"a\",null]", "[[\"a\"]]", "[true,\"a\"]"}},
      {"warn_matches", {"\"a\"", "1", "true", "null", "{}", "[1]", "[\"a\",null]", "[[\"a\"]]", "[1.5]"}},
      {"error_matches", {"\"a\"", "1", "true", "null", "{}", "[1]", "[\"a\",null]", "[[\"a\"]]", "[{}]"}},
      {"fatal_matches", {"\"a\"", "1", "true", "null", "{}", "[1]", "[\"a\",null]", "[[\"a\"]]", "[[]]"}},
      {"show_issues_at_startup",
       {"\"yes\"", "\"no\"", "\"True\"", "\"FALSE\"", "\"1\"", "\"\"", "\" true\"", "\"true \"", "1.0", "0.0",
        "null", "[]", "{}", "18446744073709551616"}},
      {"dialog_disable_reason",
       {"true", "false", "\"0\"", "1.0", "0.0", "1e3", "null", "[]", "{}", "18446744073709551616",
        "-9223372036854775809"}},
  };
  for (const auto& row : rows) {
    for (const char* const value : row.mValues) {
      // What was read before and after the broken key does not stay either.
      const std::string text = std::string(R"({"a":1,")") + row.mKey + "\":" + value + R"(,"zzz":1})";
      SCOPED_TRACE(text);
      EXPECT_FALSE(Load(text));
      ExpectDefaults();
      ExpectLogged();
    }
  }
}

TEST_F(PriorStateBrokenTest, OneBrokenKeyTakesTheOthersWithIt) {
  EXPECT_FALSE(Load(R"({"dialog_disable_reason":true,"error_matches":["e"],"fatal_matches":["f"],)"
                    R"("info_matches":["i"],"last_match_job":"01234567-89ab-cdef-0123-456789abcdef",)"
                    R"("show_issues_at_startup":false,"warn_matches":["w"]})"));
  ExpectDefaults();
  ExpectLogged();
}

TEST_F(PriorStateBrokenTest, ARootThatIsNoObjectIsLogged) {
  for (const char* const text : {"[]", "[{}]", "null", "true", "1", "1.5", "\"{}\""}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(Load(text));
    ExpectDefaults();
    ExpectLogged();
  }
}

TEST_F(PriorStateBrokenTest, WhatIsNotJSONIsTraced) {
  const std::string_view texts[] = {
      "{",
      "}",
      "{]",
      "{}{}",
      "{},",
      "{'a':1}",
      "{\"a\":1,}",
      "// nothing\n{}",
      "not JSON\n",
      " ",
      "\n",
      std::string_view("\0", 1),
      std::string_view("{}\0", 3),
      std::string_view("\x7F"
                       "ELF\x02\x01\x01\0\0",
                       9),
      "\xFF\xFE{\0}\0",
      "{\"last_match_job\":\"\xFF\"}",
      "{\"last_match_job\":\"\\ud800\"}",
      "{\"info_matches\":[\"a\"}",
      "{\"dialog_disable_reason\":0x10}",
      "{\"dialog_disable_reason\":01}",
      "{\"show_issues_at_startup\":True}",
  };
  for (const std::string_view text : texts) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(Load(text));
    ExpectDefaults();
    EXPECT_THAT(mHost.Traced(5), ElementsAre("Error parsing Prior State JSON:\n" + std::string(text)));
    EXPECT_EQ(mHost.mTrace.size(), 1U);
    EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  }
}

TEST_F(PriorStateBrokenTest, TheTraceNeedsItsLevel) {
  qelcore::host::SetTraceLevel(4);
  EXPECT_FALSE(Load("{"));
  EXPECT_THAT(mHost.mTrace, IsEmpty());
  qelcore::host::SetTraceLevel(5);
  EXPECT_FALSE(Load("{"));
  EXPECT_THAT(mHost.Traced(5), ElementsAre("Error parsing Prior State JSON:\n{"));
}

TEST_F(PriorStateBrokenTest, TruncatedAtEveryByte) {
  const std::string whole =
      R"({"dialog_disable_reason":4294967295,"error_matches":["é"],"fatal_matches":["f"],"info_matches":["i"],)"
      R"("last_match_job":"01234567-89ab-cdef-0123-456789abcdef","show_issues_at_startup":false,)"
      R"("warn_matches":["w\u00e9"]})";
  ASSERT_TRUE(Load(whole));
  for (std::size_t length = 1; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_FALSE(Load(whole.substr(0, length)));
    ExpectDefaults();
    EXPECT_THAT(mHost.Traced(5), ElementsAre("Error parsing Prior State JSON:\n" + whole.substr(0, length)));
    EXPECT_THAT(mHost.mExceptionContexts, IsEmpty());
  }
}

TEST_F(PriorStateBrokenTest, DeepNestingIsNoCrash) {
  EXPECT_FALSE(Load("{\"info_matches\":" + std::string(100000, '[') + std::string(100000, ']') + "}"));
  ExpectDefaults();
  EXPECT_FALSE(Load(std::string(1000000, '{')));
  ExpectDefaults();
}

TEST_F(PriorStateBrokenTest, AFileThatCannotBeReadIsLogged) {
  using qelcore::host::FileOperation;
  mHost.Files().Write("preferences/SCRPriorState.json", R"({"info_matches":["i"]})");
  for (const FileOperation failing : {FileOperation::kOpenForReading, FileOperation::kRead}) {
    qelcore::host::SetFileOperationHook([failing](FileOperation operation, const std::string&) {
      if (operation == failing) throw std::runtime_error("bad sector");
    });
    EXPECT_FALSE(LoadAgain());
    ExpectDefaults();
    ExpectLogged();
  }
}

TEST_F(PriorStateBrokenTest, NoPreferencesDirectory) {
  std::filesystem::remove(mHost.Preferences());
  EXPECT_FALSE(LoadAgain());
  ExpectDefaults();
  std::filesystem::remove_all(mHost.Preferences());
  mHost.Files().Write("preferences", "a file stands where the directory should");
  EXPECT_FALSE(LoadAgain());
  ExpectDefaults();
  ExpectLogged();
}

}  // namespace
