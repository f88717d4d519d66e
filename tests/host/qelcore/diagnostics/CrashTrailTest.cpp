#include "host/qelcore/CrashTrail.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::ImmutableString;
using qelcore::debug::brindle::LeaveTrail;
using qelcore::debug::brindle::TrailMarker;
using qelcore::debug::brindle::TrailValue;
using qelcore::host::FileOperation;
using qelcore::host::GetTrailMarkers;
using qelcore::host::GetTrails;
using qelcore::host::ReadLastTrail;
using qelcore::host::Trail;
using Markers = std::map<std::string, TrailValue>;
using Strings = std::vector<std::string>;

class CrashTrails : public testing::Test {
 protected:
  [[nodiscard]] std::string Content() const { return mHost.Files().Read("preferences/crash-trail.json"); }

  testsupport::TestHost mHost;
};

TEST_F(CrashTrails, TheFileHoldsAllThatTheProcessLeft) {
  LeaveTrail({{"text", "value"}, {"flag", false}}, {});
  EXPECT_EQ(ReadLastTrail()->mTrails, GetTrails());
  EXPECT_EQ(ReadLastTrail()->mMarkers, Markers());
  TrailMarker(ImmutableString("count"), "1");
  LeaveTrail({}, {"first", true, "third"});
  TrailMarker(ImmutableString("count"), "2");
  TrailMarker(ImmutableString("flag"), true);

  const auto last = ReadLastTrail();
  ASSERT_TRUE(last.has_value());
  EXPECT_EQ(last->mTrails,
            (std::vector<Trail>{{{{"text", "value"}, {"flag", false}}, {}}, {{}, {"first", true, "third"}}}));
  EXPECT_EQ(last->mMarkers, (Markers{{"count", "2"}, {"flag", true}}));
  EXPECT_EQ(last->mTrails, GetTrails());
  EXPECT_EQ(last->mMarkers, GetTrailMarkers());
  EXPECT_TRUE(std::regex_match(last->mTime, std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)")))
      << last->mTime;
}

TEST_F(CrashTrails, TheFileIsOneObject) {
  LeaveTrail({{"b", "x"}, {"a", true}}, {"one"});
  TrailMarker(ImmutableString("count"), "1");
  const std::regex expected(
      R"(\{"markers":\{"count":"1"\},"time":"[^"]+","trails":\[\{"list":\["one"\],"values":\{"a":true,"b":"x"\}\}\]\})");
  EXPECT_TRUE(std::regex_match(Content(), expected)) << Content();
}

TEST_F(CrashTrails, ItTakesThePlaceOfAnEarlierProcess) {
  mHost.Files().Write("preferences/crash-trail.json",
                      R"({"markers":{"earlier":"1"},"time":"then","trails":[{"list":[],"values":{}}]})");
  EXPECT_EQ(ReadLastTrail()->mTime, "then");
  EXPECT_EQ(ReadLastTrail()->mMarkers, (Markers{{"earlier", "1"}}));
  EXPECT_EQ(ReadLastTrail()->mTrails.size(), 1U);
  EXPECT_EQ(GetTrails().size(), 0U);
  TrailMarker(ImmutableString("count"), "0");
  EXPECT_EQ(ReadLastTrail()->mMarkers, (Markers{{"count", "0"}}));
  EXPECT_TRUE(ReadLastTrail()->mTrails.empty());
}

TEST_F(CrashTrails, AwkwardTextsComeBack) {
  const std::string large(1'000'000, 'x');
  const Trail trail{{{"", ""}, {"\"\\\n", std::string("a\0b", 3)}, {"large", large}}, {"Gr\xC3\xBC\xC3\x9F"}};
  LeaveTrail(trail.mDictionary, trail.mList);
  TrailMarker(ImmutableString(std::string("\0", 1)), "");
  EXPECT_EQ(ReadLastTrail()->mTrails, std::vector<Trail>{trail});
  EXPECT_EQ(ReadLastTrail()->mMarkers, (Markers{{std::string("\0", 1), ""}}));
  TrailMarker(ImmutableString("a\xFFz"), "\xC3");
  EXPECT_EQ(ReadLastTrail()->mMarkers.at("a\xEF\xBF\xBDz"), TrailValue("\xEF\xBF\xBD"));
}

TEST_F(CrashTrails, WithoutAFileThereIsNone) {
  EXPECT_FALSE(ReadLastTrail().has_value());
  std::filesystem::remove(mHost.Preferences());
  EXPECT_FALSE(ReadLastTrail().has_value());
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences()));
  EXPECT_EQ(qelcore::host::GetTrailFile(), (mHost.Preferences() / "crash-trail.json").string());
}

TEST_F(CrashTrails, ADamagedFileIsAnError) {
  const char* const contents[] = {
      "",
      "{",
      "[]",
      "{}",
      R"({"markers":{},"trails":[]})",
      R"({"markers":{},"time":1,"trails":[]})",
      R"({"markers":[],"time":"t","trails":[]})",
      R"({"markers":{"a":1},"time":"t","trails":[]})",
      R"({"markers":{"a":null},"time":"t","trails":[]})",
      R"({"markers":{},"time":"t","trails":{}})",
      R"({"markers":{},"time":"t"})",
      R"({"markers":{},"time":"t","trails":[[]]})",
      R"({"markers":{},"time":"t","trails":[{"list":[]}]})",
      R"({"markers":{},"time":"t","trails":[{"values":{}}]})",
      R"({"markers":{},"time":"t","trails":[{"list":[{}],"values":{}}]})",
      R"({"markers":{},"time":"t","trails":[{"list":[],"values":{"a":[]}}]})",
  };
  for (const char* const content : contents) {
    const std::string path =
        testsupport::PathText(mHost.Files().Write("preferences/crash-trail.json", content));
    try {
      static_cast<void>(ReadLastTrail());
      ADD_FAILURE() << content;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(std::string(error.what()).rfind(path + ":", 0), 0U) << content << ": " << error.what();
      // Whoever passes the message on adds to it.
      EXPECT_FALSE(std::string(error.what()).ends_with('.')) << content << ": " << error.what();
    }
  }
  mHost.Files().Write("preferences/crash-trail.json", R"({"markers":{},"time":"t","trails":[],"more":1})");
  EXPECT_EQ(ReadLastTrail()->mTime, "t");
}

TEST_F(CrashTrails, AFailureIsLoggedAndKeepsFileAndMemory) {
  TrailMarker(ImmutableString("count"), "1");
  const std::string before = Content();
  for (const FileOperation failing : {FileOperation::kOpenForWriting, FileOperation::kWrite,
                                      FileOperation::kFlush, FileOperation::kReplace}) {
    mHost.mExceptionTexts.clear();
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string&) {
      if (operation == failing) throw std::runtime_error("the disk is full");
    });
    EXPECT_NO_THROW(LeaveTrail({}, {})) << static_cast<int>(failing);
    EXPECT_EQ(mHost.mExceptionTexts, Strings{"the disk is full"}) << static_cast<int>(failing);
    EXPECT_EQ(Content(), before) << static_cast<int>(failing);
  }
  qelcore::host::SetFileOperationHook({});
  EXPECT_EQ(GetTrails().size(), 4U);
  TrailMarker(ImmutableString("count"), "2");
  EXPECT_EQ(ReadLastTrail()->mTrails.size(), 4U);
}

TEST_F(CrashTrails, ADirectoryThatCannotBeMadeIsLogged) {
  std::filesystem::remove(mHost.Preferences());
  mHost.Files().Write("preferences", "a file where the directory should be");
  EXPECT_NO_THROW(TrailMarker(ImmutableString("count"), "1"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"qelcore::debug::brindle"});
  EXPECT_EQ(GetTrailMarkers(), (Markers{{"count", "1"}}));
}

TEST_F(CrashTrails, WhoeverHearsOfAFailureMayLeaveATrail) {
  std::filesystem::create_directory(mHost.Preferences() / "crash-trail.json");
  int heard = 0;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr&, std::string_view context) {
    ++heard;
    LeaveTrail({{"context", std::string(context)}}, {});
    EXPECT_FALSE(GetTrails().empty());
  });
  LeaveTrail({}, {});
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(GetTrails().size(), 2U);
  std::filesystem::remove(mHost.Preferences() / "crash-trail.json");
  TrailMarker(ImmutableString("count"), "1");
  EXPECT_EQ(ReadLastTrail()->mTrails.size(), 2U);
}

TEST_F(CrashTrails, WhoeverSeesTheFileWrittenMayLeaveATrail) {
  int seen = 0;
  qelcore::host::SetFileOperationHook([&](FileOperation, const std::string&) {
    ++seen;
    LeaveTrail({}, {});
  });
  LeaveTrail({}, {});
  qelcore::host::SetFileOperationHook({});
  EXPECT_EQ(seen, 4);
  EXPECT_EQ(GetTrails().size(), 5U);
  // What was left meanwhile is in the file after the next change.
  EXPECT_EQ(ReadLastTrail()->mTrails.size(), 1U);
  LeaveTrail({}, {});
  EXPECT_EQ(ReadLastTrail()->mTrails.size(), 6U);
}

TEST_F(CrashTrails, WhatAnotherThreadLeavesWhileTheFileIsWrittenGetsThere) {
  bool hasBegun = false;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kReplace && !std::exchange(hasBegun, true)) {
      std::thread([] { TrailMarker(ImmutableString("from another thread"), true); }).join();
    }
  });
  TrailMarker(ImmutableString("count"), "1");
  EXPECT_EQ(ReadLastTrail()->mMarkers, (Markers{{"count", "1"}, {"from another thread", true}}));
}

TEST_F(CrashTrails, ThreadsLeaveThemAtATime) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([number] {
      for (int count = 0; count < 25; ++count) {
        LeaveTrail({{"number", std::to_string(number)}}, {});
        TrailMarker(ImmutableString(std::to_string(number)), std::to_string(count));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(GetTrails().size(), 100U);
  EXPECT_EQ(ReadLastTrail()->mTrails, GetTrails());
  EXPECT_EQ(ReadLastTrail()->mMarkers, (Markers{{"0", "24"}, {"1", "24"}, {"2", "24"}, {"3", "24"}}));
  EXPECT_EQ(mHost.mExceptionTexts, Strings());
}

}  // namespace
