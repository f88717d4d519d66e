#include "platform/qelcore/DebugDatabase.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Trace.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::DebugDatabase;
using qelcore::host::GetDebugEntries;
using qelcore::host::RemoveDebugEntry;
using qelcore::host::SaveDebugEntry;
using qelcore::host::SetDebugEntryForThisRun;

using Keys = std::vector<std::string>;
using Entries = std::map<std::string, std::string>;

class DebugSettings : public testing::Test {
 protected:
  void SetUp() override {
    UsePreferences("preferences");
    qelcore::host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view context) {
      mLogged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
    });
  }

  void TearDown() override { qelcore::host::SetExceptionSink(nullptr); }

  /// Uses another preferences directory, which reads the file there anew.
  void UsePreferences(const std::string& name) const {
    qelcore::host::SetDirectories({.mPreferences = (mDirectory.Path() / name).string()});
  }

  [[nodiscard]] bool Exists(const std::string& name) const {
    return std::filesystem::exists(mDirectory.Path() / name);
  }

  DebugDatabase& mDatabase = DebugDatabase::Instance();
  testsupport::TemporaryDirectory mDirectory;
  Keys mLogged;
};

TEST_F(DebugSettings, DefaultsComeBack) {
  EXPECT_EQ(mDatabase.GetEntry("a.b", "10"), "10");
  EXPECT_EQ(mDatabase.GetEntry("a.b", "11"), "11");
  EXPECT_EQ(mDatabase.GetDefaultValue("a.b"), "11");
  EXPECT_EQ(mDatabase.GetCurrentValue("a.b"), "11");
  EXPECT_EQ(mDatabase.GetCurrentValue("never asked"), "");
  EXPECT_EQ(mDatabase.GetDefaultValue("never asked"), "");
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), Keys());
}

TEST_F(DebugSettings, AskingCreatesNothingOnTheDisk) {
  (void)mDatabase.GetEntry("a", "1");
  (void)mDatabase.GetNonDefaultDebugKeys();
  (void)GetDebugEntries();
  SetDebugEntryForThisRun("a", "2");
  EXPECT_FALSE(RemoveDebugEntry("never set"));
  EXPECT_FALSE(Exists("preferences"));
  EXPECT_EQ(mLogged, Keys());
}

TEST_F(DebugSettings, AnEntryForThisRunHoldsAndIsNotSaved) {
  SetDebugEntryForThisRun("a", "2");
  EXPECT_EQ(mDatabase.GetEntry("a", "1"), "2");
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), Keys{"a"});
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "2");
  EXPECT_EQ(mDatabase.GetDefaultValue("a"), "1");
  EXPECT_FALSE(Exists("preferences"));
  EXPECT_TRUE(RemoveDebugEntry("a"));
  EXPECT_EQ(mDatabase.GetEntry("a", "1"), "1");
}

TEST_F(DebugSettings, AValueEqualToItsDefaultIsNoDifference) {
  SetDebugEntryForThisRun("a", "1");
  SetDebugEntryForThisRun("unasked", "x");
  SetDebugEntryForThisRun("unasked and empty", "");
  (void)mDatabase.GetEntry("a", "1");
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), Keys{"unasked"});
  (void)mDatabase.GetEntry("a", "2");
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), (Keys{"a", "unasked"}));
}

TEST_F(DebugSettings, OnlyExactlyTrueIsTrue) {
  EXPECT_FALSE(mDatabase.GetBoolEntry("unset"));
  for (const char* const value : {"true", "True", "TRUE", " true", "true ", "1", "yes", "", "false"}) {
    SetDebugEntryForThisRun("flag", value);
    EXPECT_EQ(mDatabase.GetBoolEntry("flag"), std::string(value) == "true") << value;
  }
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), Keys());
}

TEST_F(DebugSettings, SavedEntriesAreThereInTheNextProcess) {
  SaveDebugEntry("b", "2");
  SaveDebugEntry("a", "line\n\"quoted\" \xC3\xA9");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"),
            "{\"a\":\"line\\n\\\"quoted\\\" \xC3\xA9\",\"b\":\"2\"}");
  UsePreferences("other");
  EXPECT_EQ(mDatabase.GetCurrentValue("b"), "");
  UsePreferences("preferences");
  EXPECT_EQ(mDatabase.GetCurrentValue("b"), "2");
  EXPECT_EQ(mDatabase.GetNonDefaultDebugKeys(), (Keys{"a", "b"}));
  EXPECT_EQ(GetDebugEntries(), (Entries{{"a", "line\n\"quoted\" \xC3\xA9"}, {"b", "2"}}));
}

TEST_F(DebugSettings, AnEntryForThisRunHidesTheSavedOneUntilThatIsSavedAgain) {
  SaveDebugEntry("a", "saved");
  SetDebugEntryForThisRun("a", "run");
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "run");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"a":"saved"})");
  SaveDebugEntry("a", "again");
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "again");
}

TEST_F(DebugSettings, RemovingTakesAnEntryOutOfTheFile) {
  SaveDebugEntry("a", "1");
  SaveDebugEntry("b", "2");
  EXPECT_TRUE(RemoveDebugEntry("a"));
  EXPECT_FALSE(RemoveDebugEntry("a"));
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"b":"2"})");
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "");
}

TEST_F(DebugSettings, AChangeKeepsWhatAnotherProcessSaved) {
  SaveDebugEntry("a", "1");
  mDirectory.Write("preferences/DebugDatabase.json", R"({"a":"other","c":"3"})");
  SaveDebugEntry("b", "2");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"a":"other","b":"2","c":"3"})");
  EXPECT_EQ(mDatabase.GetCurrentValue("c"), "3");
}

TEST_F(DebugSettings, ABrokenFileIsLoggedAndCountsAsEmpty) {
  const std::string rows[] = {"",
                              "{",
                              "[]",
                              "\"a\"",
                              "{\"a\":1}",
                              "{\"a\":null}",
                              "{\"a\":\"1\",\"b\":true}",
                              "{\"a\":\"\xFF\"}",
                              std::string(100000, '[')};
  int number = 0;
  for (const std::string& row : rows) {
    const std::string folder = "broken" + std::to_string(number++);
    mDirectory.Write(folder + "/DebugDatabase.json", row);
    UsePreferences(folder);
    mLogged.clear();
    EXPECT_EQ(mDatabase.GetEntry("a", "default"), "default") << row;
    EXPECT_EQ(mDatabase.GetCurrentValue("b"), "") << row;
    ASSERT_EQ(mLogged.size(), 1U) << row;
    EXPECT_TRUE(mLogged[0].starts_with("qelcore::DebugDatabase: ")) << mLogged[0];
    const std::filesystem::path file = std::filesystem::path(folder) / "DebugDatabase.json";
    EXPECT_NE(mLogged[0].find(testsupport::PathText(file)), std::string::npos) << mLogged[0];
    EXPECT_EQ(mDirectory.Read(folder + "/DebugDatabase.json"), row);
  }
}

TEST_F(DebugSettings, ABrokenFileStepsAsideWhenSomethingIsSaved) {
  mDirectory.Write("preferences/DebugDatabase.json", "{\"a\":");
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "");
  SaveDebugEntry("b", "2");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"b":"2"})");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json.broken"), "{\"a\":");
}

TEST_F(DebugSettings, AFileThatCannotBeReadIsNeitherUsedNorReplaced) {
  mDirectory.Write("preferences/DebugDatabase.json", R"({"a":"1"})");
  qelcore::host::SetFileOperationHook([](qelcore::host::FileOperation operation, const std::string& path) {
    if (operation == qelcore::host::FileOperation::kRead) {
      throw std::system_error(std::make_error_code(std::errc::io_error), path);
    }
  });
  EXPECT_EQ(mDatabase.GetEntry("a", "default"), "default");
  EXPECT_EQ(mLogged.size(), 1U);
  EXPECT_THROW(SaveDebugEntry("b", "2"), std::system_error);
  qelcore::host::SetFileOperationHook(nullptr);
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"a":"1"})");
  EXPECT_FALSE(Exists("preferences/DebugDatabase.json.broken"));
}

TEST_F(DebugSettings, AFailedSaveThrowsAndChangesNothing) {
  SaveDebugEntry("a", "1");
  qelcore::host::SetFileOperationHook([](qelcore::host::FileOperation operation, const std::string& path) {
    if (operation == qelcore::host::FileOperation::kReplace) {
      throw std::system_error(std::make_error_code(std::errc::no_space_on_device), path);
    }
  });
  EXPECT_THROW(SaveDebugEntry("a", "2"), std::system_error);
  EXPECT_THROW((void)RemoveDebugEntry("a"), std::system_error);
  EXPECT_EQ(mDatabase.GetCurrentValue("a"), "1");
  EXPECT_EQ(mDirectory.Read("preferences/DebugDatabase.json"), R"({"a":"1"})");
}

TEST_F(DebugSettings, WhoSeesTheExceptionMayAskForAnEntry) {
  mDirectory.Write("preferences/DebugDatabase.json", "broken");
  std::string seen;
  qelcore::host::SetExceptionSink(
      [&](const std::exception_ptr&, std::string_view) { seen = mDatabase.GetEntry("inner", "value"); });
  EXPECT_EQ(mDatabase.GetEntry("outer", "value"), "value");
  EXPECT_EQ(seen, "value");
}

TEST_F(DebugSettings, ManyThreadsMayAskAndChangeAtATime) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (int count = 0; count < 200; ++count) {
        const std::string key = "key" + std::to_string(count % 10);
        (void)mDatabase.GetEntry(key, "default");
        SetDebugEntryForThisRun(key, std::to_string(thread));
        (void)mDatabase.GetNonDefaultDebugKeys();
        if (count % 50 == 0) {
          SaveDebugEntry("saved" + std::to_string(thread), std::to_string(count));
        }
      }
    });
  }
  threads.clear();
  for (int thread = 0; thread < 4; ++thread) {
    EXPECT_EQ(mDatabase.GetCurrentValue("saved" + std::to_string(thread)), "150");
  }
}

}  // namespace
