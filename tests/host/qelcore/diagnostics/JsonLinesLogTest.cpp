#include "host/qelcore/diagnostics/JsonLinesLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <thread>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"

namespace {

namespace json = qelcore::json;
using qelcore::host::FileOperation;
using qelcore::host::JsonLines;
using qelcore::host::JsonLinesLog;
using testsupport::JsonLinesLogs;
using Strings = std::vector<std::string>;

TEST_F(JsonLinesLogs, EachEntryIsALineAtTheEnd) {
  mLog.Append(Entry("first"));
  EXPECT_EQ(Content("log.jsonl"), "{\"text\":\"first\"}\n");
  mLog.Append(Entry("second"));
  EXPECT_EQ(Content("log.jsonl"), "{\"text\":\"first\"}\n{\"text\":\"second\"}\n");
  EXPECT_EQ(Texts(), (Strings{"first", "second"}));
  EXPECT_EQ(mLog.GetPath(), At("log.jsonl").string());
}

TEST_F(JsonLinesLogs, AnyTextIsOneLineOfJson) {
  struct Case {
    std::string mText;
    std::string mRead;
  };
  const std::string replacement = "\xEF\xBF\xBD";
  const std::string large(1'000'000, 'x');
  const Case cases[] = {
      {"", ""},
      {"\"quoted\" and \\ and /", "\"quoted\" and \\ and /"},
      {"a\nb\r\nc\rd\n", "a\nb\r\nc\rd\n"},
      {std::string("a\0b\x01\x1F\x7F", 6), std::string("a\0b\x01\x1F\x7F", 6)},
      {"Gr\xC3\xBC\xC3\x9F\x65 \xF0\x9F\x92\xBE \xE2\x80\xA8",
       "Gr\xC3\xBC\xC3\x9F\x65 \xF0\x9F\x92\xBE \xE2\x80\xA8"},
      {"a\xFFz", "a" + replacement + "z"},
      {"\xC3", replacement},
      {"}\n{\"text\":\"forged\"}", "}\n{\"text\":\"forged\"}"},
      {large, large},
  };
  Strings expected;
  for (const Case& row : cases) {
    mLog.Append(Entry(row.mText));
    expected.push_back(row.mRead);
  }
  EXPECT_EQ(Texts(), expected);
  const std::string content = Content("log.jsonl");
  EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), static_cast<std::ptrdiff_t>(std::size(cases)));
  EXPECT_EQ(mHost.mExceptionTexts, Strings());
}

TEST_F(JsonLinesLogs, AKeyThatIsNoUtf8IsALineToo) {
  json::Dictionary entry;
  json::Set(entry, "\xFF", std::string("x"));
  mLog.Append(entry);
  EXPECT_EQ(mLog.Read().mObjects.size(), 1U);
}

TEST_F(JsonLinesLogs, AValueThatIsNoJsonIsLogged) {
  json::Dictionary entry;
  json::Set(entry, "text", std::any(1.5F));
  mLog.Append(entry);
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl")));
}

TEST_F(JsonLinesLogs, TheFileMovesAsideWhenALineNoLongerFits) {
  struct Case {
    std::size_t mFirst;
    std::size_t mSecond;
    bool mMoves;
  };
  const Case cases[] = {{1'048'476, 100, false}, {1'048'476, 101, true},    {1'048'575, 12, true},
                        {1'048'576, 12, true},   {500'000, 548'576, false}, {500'000, 548'577, true},
                        {20, 2'000'000, true},   {2'000'000, 20, true}};
  for (const Case& row : cases) {
    for (const char* const name : {"log.jsonl", "log.jsonl.1"}) std::filesystem::remove(At(name));
    mLog.Append(Entry(TextForLine(row.mFirst)));
    ASSERT_FALSE(std::filesystem::exists(At("log.jsonl.1"))) << row.mFirst;
    mLog.Append(Entry(TextForLine(row.mSecond)));
    EXPECT_EQ(std::filesystem::exists(At("log.jsonl.1")), row.mMoves) << row.mFirst << ' ' << row.mSecond;
    EXPECT_EQ(Content("log.jsonl").size(), row.mMoves ? row.mSecond : row.mFirst + row.mSecond);
    EXPECT_EQ(Texts(), (Strings{TextForLine(row.mFirst), TextForLine(row.mSecond)}));
  }
}

TEST_F(JsonLinesLogs, OneOlderFileIsKept) {
  for (const char letter : {'a', 'b', 'c'}) {
    mLog.Append(Entry(std::string(1'000'000, letter)));
  }
  EXPECT_EQ(Texts(), (Strings{std::string(1'000'000, 'b'), std::string(1'000'000, 'c')}));
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(mHost.Preferences())) {
    names.insert(entry.path().filename().string());
  }
  EXPECT_EQ(names, (std::set<std::string>{"log.jsonl", "log.jsonl.1", "log.jsonl.lock"}));
}

TEST_F(JsonLinesLogs, DamagedLinesAreCounted) {
  const std::string preferences = "preferences/";
  mHost.Files().Write(preferences + "log.jsonl.1", "{\"text\":\"oldest\"}\n{\"text\":\"torn");
  mHost.Files().Write(
      preferences + "log.jsonl",
      "\n[\"text\"]\n{\"text\":\"kept\"}\r\n\"text\"\n\r\nplain\n{\"text\":\"a\"}{\"text\":\"b\"}\n" +
          std::string("{\"text\":\"\0\"}\n", 13) + "{\"text\":\"\xFF\"}\n{\"text\":\"no line feed\"}");
  const JsonLines lines = mLog.Read();
  EXPECT_EQ(lines.mDamagedLines, 7U);
  EXPECT_EQ(Texts(), (Strings{"oldest", "kept", "no line feed"}));
}

TEST_F(JsonLinesLogs, WhatFollowsABegunLineStandsOnALineOfItsOwn) {
  for (const char* const begun : {"{\"text\":\"torn", "{\"text\":\"whole\"}"}) {
    mHost.Files().Write("preferences/log.jsonl", begun);
    mLog.Append(Entry("next"));
    EXPECT_EQ(Content("log.jsonl"), begun + std::string("\n{\"text\":\"next\"}\n"));
  }
  // The line feed that ends the begun line counts for the file's size.
  mHost.Files().Write("preferences/log.jsonl", std::string(1'048'476, 'x'));
  mLog.Append(Entry(TextForLine(100)));
  EXPECT_TRUE(std::filesystem::exists(At("log.jsonl.1")));
}

TEST_F(JsonLinesLogs, ReadingMakesNothing) {
  EXPECT_TRUE(mLog.Read().mObjects.empty());
  EXPECT_TRUE(std::filesystem::is_empty(mHost.Preferences()));
  std::filesystem::remove(mHost.Preferences());
  EXPECT_TRUE(mLog.Read().mObjects.empty());
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences()));
}

TEST_F(JsonLinesLogs, ReadingThrowsWhatTheDiskThrows) {
  mLog.Append(Entry("x"));
  for (const FileOperation failing : {FileOperation::kOpenForReading, FileOperation::kRead}) {
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
      if (operation == failing) {
        throw std::system_error(std::make_error_code(std::errc::io_error), path);
      }
    });
    EXPECT_THROW(static_cast<void>(mLog.Read()), std::system_error) << static_cast<int>(failing);
  }
  qelcore::host::SetFileOperationHook({});
  EXPECT_EQ(Texts(), Strings{"x"});
}

TEST_F(JsonLinesLogs, AMissingDirectoryIsMade) {
  std::filesystem::remove(mHost.Preferences());
  mLog.Append(Entry("x"));
  EXPECT_EQ(Texts(), Strings{"x"});
}

TEST_F(JsonLinesLogs, AnEntryThatCannotBeWrittenIsLoggedOnce) {
  std::filesystem::remove(mHost.Preferences());
  mHost.Files().Write("preferences", "a file where the directory should be");
  for (int count = 0; count < 3; ++count) {
    EXPECT_NO_THROW(mLog.Append(Entry("lost")));
  }
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  std::filesystem::remove(mHost.Preferences());
  mLog.Append(Entry("kept"));
  EXPECT_EQ(Texts(), Strings{"kept"});
}

TEST_F(JsonLinesLogs, AFailureAnywhereLosesTheEntryAndNothingElse) {
  mLog.Append(Entry(TextForLine(1'000'000)));
  for (const FileOperation failing :
       {FileOperation::kOpenForWriting, FileOperation::kWrite, FileOperation::kReplace}) {
    int failures = 0;
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string& path) {
      if (operation == failing) {
        ++failures;
        throw std::system_error(std::make_error_code(std::errc::no_space_on_device), path);
      }
    });
    mLog.Append(Entry(TextForLine(100'000)));
    EXPECT_EQ(failures, 1) << static_cast<int>(failing);
    EXPECT_EQ(Texts(), Strings{TextForLine(1'000'000)}) << static_cast<int>(failing);
  }
  EXPECT_EQ(mHost.mExceptionContexts.size(), 1U);
}

TEST_F(JsonLinesLogs, WhatIsNoFileIsLeftAlone) {
  std::filesystem::create_directory(At("log.jsonl"));
  mLog.Append(Entry("x"));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_TRUE(std::filesystem::is_empty(At("log.jsonl")));
}

TEST_F(JsonLinesLogs, AnOlderNameThatIsTakenByADirectoryLosesTheEntry) {
  mLog.Append(Entry(TextForLine(1'000'000)));
  mHost.Files().Write("preferences/log.jsonl.1/file", "x");
  mLog.Append(Entry(TextForLine(100'000)));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_EQ(Content("log.jsonl").size(), 1'000'000U);
}

TEST_F(JsonLinesLogs, WhoeverHearsOfAFailureOrAnOperationMayAppend) {
  const JsonLinesLog other("other.jsonl", "the other log");
  qelcore::host::SetFileOperationHook([&, isInside = false](FileOperation, const std::string&) mutable {
    if (!isInside) {
      isInside = true;
      mLog.Append(Entry("from the hook"));
      static_cast<void>(mLog.Read());
      isInside = false;
    }
  });
  mLog.Append(Entry(TextForLine(1'000'000)));
  mLog.Append(Entry(TextForLine(100'000)));
  qelcore::host::SetFileOperationHook({});
  const Strings texts = Texts();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), TextForLine(1'000'000)), 1);
  EXPECT_EQ(std::count(texts.begin(), texts.end(), TextForLine(100'000)), 1);
  EXPECT_GE(std::count(texts.begin(), texts.end(), "from the hook"), 4);

  std::filesystem::create_directory(At("other.jsonl"));
  int heard = 0;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr&, std::string_view) {
    ++heard;
    mLog.Append(Entry("from the sink"));
    other.Append(Entry("lost"));
  });
  other.Append(Entry("lost"));
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(Texts().back(), "from the sink");
}

TEST_F(JsonLinesLogs, ThreadsAppendAtATime) {
  constexpr int kThreads = 4;
  constexpr int kEntries = 100;
  const std::string filling(4'000, 'x');
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      const JsonLinesLog own("log.jsonl", "a thread's log");
      for (int count = 0; count < kEntries; ++count) {
        // Two of them share an object.
        (number < 2 ? mLog : own).Append(Entry(std::to_string(number * kEntries + count) + filling));
      }
    });
  }
  std::size_t damagedMeanwhile = 0;
  std::size_t readMeanwhile = 0;
  for (int count = 0; count < 20; ++count) {
    const JsonLines lines = mLog.Read();
    damagedMeanwhile += lines.mDamagedLines;
    EXPECT_GE(lines.mObjects.size(), readMeanwhile);
    readMeanwhile = lines.mObjects.size();
  }
  for (std::thread& thread : threads) thread.join();

  std::set<std::string> texts;
  for (const std::string& text : Texts()) texts.insert(text);
  // 1.6 MB: one file has moved aside, and nothing is lost.
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(kThreads * kEntries));
  EXPECT_EQ(damagedMeanwhile + mLog.Read().mDamagedLines, 0U);
  EXPECT_TRUE(std::filesystem::exists(At("log.jsonl.1")));
  EXPECT_LE(Content("log.jsonl.1").size(), 1'048'576U);
  EXPECT_LE(Content("log.jsonl").size(), 1'048'576U);
  EXPECT_EQ(mHost.mExceptionTexts, Strings());
}

}  // namespace
