#include "platform/qelcore/Trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::LogException;
using qelcore::TraceChangeCount;
using qelcore::TraceEnabled;
using qelcore::TraceOutput;
using qelcore::host::SetTraceLevel;
using qelcore::host::SetTraceSink;

class Traces : public testing::Test {
 protected:
  void SetUp() override { UseState("state"); }

  void UseState(const std::string& name) const {
    qelcore::host::SetDirectories({.mState = (mDirectory.Path() / name).string()});
  }

  /// The log with the ends of lines that a text has in memory.
  [[nodiscard]] std::string Log() const {
    std::string log = mDirectory.Read("state/trace.log");
    std::erase(log, '\r');
    return log;
  }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(Traces, NothingIsEnabledAtFirst) {
  for (const int level : {-1, 0, 1, 5, 6}) {
    EXPECT_FALSE(TraceEnabled("SystemCompatibilityReport", level)) << level;
  }
}

TEST_F(Traces, ALevelRecordsItselfAndEveryLowerNumber) {
  SetTraceLevel(5);
  EXPECT_TRUE(TraceEnabled("SystemCompatibilityReport", 1));
  EXPECT_TRUE(TraceEnabled("another", 5));
  EXPECT_FALSE(TraceEnabled("SystemCompatibilityReport", 6));
  SetTraceLevel(0);
  EXPECT_FALSE(TraceEnabled("SystemCompatibilityReport", 1));
}

TEST_F(Traces, TheCounterStartsAboveZeroAndMovesWithEachChange) {
  const std::uint32_t first = TraceChangeCount();
  EXPECT_GT(first, 0U);
  EXPECT_EQ(TraceChangeCount(), first);
  SetTraceLevel(6);
  const std::uint32_t second = TraceChangeCount();
  EXPECT_NE(second, first);
  SetTraceLevel(0);
  EXPECT_NE(TraceChangeCount(), second);
}

TEST_F(Traces, MessagesGoToTheFileOfTheStateDirectory) {
  SetTraceLevel(6);
  EXPECT_FALSE(std::filesystem::exists(mDirectory.Path() / "state"));
  TraceOutput("SystemCompatibilityReport", 6, "first line\nsecond line {} %n \xC3\xA9");
  TraceOutput("Other", 1, "another");
  const std::string log = Log();
  EXPECT_NE(log.find("[SystemCompatibilityReport 6] first line\nsecond line {} %n \xC3\xA9\n"),
            std::string::npos)
      << log;
  EXPECT_NE(log.find("[Other 1] another\n"), std::string::npos) << log;
}

TEST_F(Traces, TheFileStaysSmallAndOneOlderOneIsKept) {
  const std::string block(50000, 'x');
  for (int count = 0; count < 70; ++count) {
    TraceOutput("Channel", 1, std::to_string(count) + block);
  }
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(mDirectory.Path() / "state")) {
    names.push_back(entry.path().filename().string());
    EXPECT_LE(entry.file_size(), 1024U * 1024U) << entry.path();
  }
  EXPECT_EQ(names.size(), 2U);
  EXPECT_NE(mDirectory.Read("state/trace.log").find("[Channel 1] 69x"), std::string::npos);
}

TEST_F(Traces, AStateDirectoryThatCannotBeMadeLosesTheMessagesOnly) {
  mDirectory.Write("file", "");
  UseState("file/below");
  EXPECT_NO_THROW(TraceOutput("Channel", 1, "lost"));
  UseState("good");
  TraceOutput("Channel", 1, "kept");
  EXPECT_NE(mDirectory.Read("good/trace.log").find("kept"), std::string::npos);
  EXPECT_EQ(mDirectory.Read("good/trace.log").find("lost"), std::string::npos);
}

TEST_F(Traces, StandardErrorSeesThemWhenAsked) {
  testing::internal::CaptureStderr();
  SetTraceLevel(6, true);
  TraceOutput("Channel", 3, "seen\nin two lines");
  SetTraceLevel(6, false);
  TraceOutput("Channel", 3, "unseen");
  const std::string output = testing::internal::GetCapturedStderr();
  EXPECT_NE(output.find("[Channel 3] seen\nin two lines\n"), std::string::npos) << output;
  EXPECT_EQ(output.find("unseen"), std::string::npos) << output;
}

TEST_F(Traces, ASinkTakesThePlaceOfTheFile) {
  std::vector<std::string> seen;
  SetTraceSink([&](std::string_view channel, int level, std::string_view text) {
    seen.push_back(std::string(channel) + '|' + std::to_string(level) + '|' + std::string(text));
  });
  testing::internal::CaptureStderr();
  SetTraceLevel(6, true);
  TraceOutput("Channel", 5, "a\nb");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(seen, std::vector<std::string>{"Channel|5|a\nb"});
  EXPECT_FALSE(std::filesystem::exists(mDirectory.Path() / "state"));
  SetTraceSink(nullptr);
  SetTraceLevel(6);
  TraceOutput("Channel", 5, "to the file");
  EXPECT_EQ(seen.size(), 1U);
  EXPECT_NE(mDirectory.Read("state/trace.log").find("to the file"), std::string::npos);
}

TEST_F(Traces, ASinkMayTraceAndThrow) {
  int depth = 0;
  SetTraceSink([&](std::string_view, int, std::string_view) {
    if (++depth < 3) {
      TraceOutput("Channel", 1, "again");
    }
    throw std::runtime_error("from the sink");
  });
  EXPECT_NO_THROW(TraceOutput("Channel", 1, "first"));
  EXPECT_EQ(depth, 3);
}

TEST_F(Traces, ManyThreadsMayTraceAtATime) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([thread] {
      for (int count = 0; count < 250; ++count) {
        SetTraceLevel(count % 7);
        (void)TraceEnabled("Channel", 6);
        (void)TraceChangeCount();
        TraceOutput("Channel", 6, "message " + std::to_string(thread));
      }
    });
  }
  threads.clear();
  const std::string log = Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1000);
}

TEST_F(Traces, AnObserverSeesMoreThanTheLogWhenItAsksForMore) {
  SetTraceLevel(1);
  const std::uint32_t before = TraceChangeCount();
  std::vector<std::string> seen;
  qelcore::host::SetTraceObserver(
      [&](std::string_view, int, std::string_view text) { seen.emplace_back(text); }, 5);
  EXPECT_NE(TraceChangeCount(), before);
  EXPECT_TRUE(TraceEnabled("a", 5));
  EXPECT_FALSE(TraceEnabled("a", 6));
  TraceOutput("a", 1, "error");
  TraceOutput("a", 5, "warning");
  EXPECT_EQ(seen, (std::vector<std::string>{"error", "warning"}));
  const std::string log = Log();
  EXPECT_NE(log.find("error"), std::string::npos);
  EXPECT_EQ(log.find("warning"), std::string::npos);
  qelcore::host::SetTraceObserver({});
  EXPECT_FALSE(TraceEnabled("a", 5));
}

// ---- Exceptions

std::exception_ptr Failure(const std::string& text) {
  return std::make_exception_ptr(std::runtime_error(text));
}

TEST_F(Traces, ExceptionsGoToTheLogAtTheFirstLevel) {
  LogException(Failure("not traced"), "a::Function");
  EXPECT_FALSE(std::filesystem::exists(mDirectory.Path() / "state"));
  SetTraceLevel(1);
  LogException(Failure("file not found"), "a::Function");
  LogException(std::make_exception_ptr(5), "b::Function");
  LogException(nullptr, "c::Function");
  const std::string log = Log();
  EXPECT_NE(log.find("[Exceptions 1] a::Function: file not found\n"), std::string::npos) << log;
  EXPECT_NE(log.find("[Exceptions 1] b::Function: unknown exception\n"), std::string::npos) << log;
  EXPECT_NE(log.find("[Exceptions 1] c::Function: unknown exception\n"), std::string::npos) << log;
  EXPECT_EQ(log.find("not traced"), std::string::npos) << log;
}

TEST_F(Traces, TheExceptionSinkSeesThemWhateverTheLevel) {
  std::vector<std::string> seen;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    seen.push_back(std::string(context) + '|' + qelcore::host::DescribeException(exception));
  });
  LogException(Failure("one"), "context  with blanks ");
  LogException(nullptr, "");
  qelcore::host::SetExceptionSink(nullptr);
  LogException(Failure("two"), "unseen");
  EXPECT_EQ(seen, (std::vector<std::string>{"context  with blanks |one", "|unknown exception"}));
}

TEST_F(Traces, AnExceptionSinkThatThrowsHarmsNobody) {
  qelcore::host::SetExceptionSink(
      [](const std::exception_ptr&, std::string_view) { throw std::runtime_error("from the sink"); });
  EXPECT_NO_THROW(LogException(Failure("one"), "context"));
}

}  // namespace
