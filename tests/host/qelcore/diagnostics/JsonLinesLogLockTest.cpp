// Another process that keeps the log's lock, because it was stopped for example.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"
#include "tests/support/HeldLock.h"

namespace {

using testsupport::HeldLock;
using testsupport::JsonLinesLogs;
using Strings = std::vector<std::string>;

TEST_F(JsonLinesLogs, AnEntryIsLostWhenAnotherProcessKeepsTheLock) {
  HeldLock holder(At("log.jsonl.lock"));
  EXPECT_NO_THROW(mLog.Append(Entry("lost")));
  EXPECT_NO_THROW(mLog.Append(Entry("lost")));
  EXPECT_EQ(mHost.mExceptionContexts, Strings{"the log"});
  EXPECT_EQ(mHost.mExceptionTexts, Strings{At("log.jsonl.lock").string() + ": Device or resource busy"});
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl")));
  holder.Release();
  mLog.Append(Entry("kept"));
  EXPECT_EQ(Texts(), Strings{"kept"});
}

TEST_F(JsonLinesLogs, TheLogIsReadWhileAnotherProcessKeepsTheLock) {
  mHost.Files().Write("preferences/log.jsonl.1", "{\"text\":\"older\"}\n");
  mLog.Append(Entry("newer"));
  const HeldLock holder(At("log.jsonl.lock"));
  EXPECT_EQ(Texts(), (Strings{"older", "newer"}));
  EXPECT_EQ(mHost.mExceptionTexts, Strings());
}

TEST_F(JsonLinesLogs, AFullFileStaysWhileAnotherProcessKeepsTheLock) {
  mLog.Append(Entry(TextForLine(1'048'576)));
  const HeldLock holder(At("log.jsonl.lock"));
  mLog.Append(Entry("lost"));
  EXPECT_EQ(Content("log.jsonl").size(), 1'048'576U);
  EXPECT_FALSE(std::filesystem::exists(At("log.jsonl.1")));
}

TEST_F(JsonLinesLogs, WhoeverKeepsTheLockIsNotWaitedForWithEachEntry) {
  const HeldLock holder(At("log.jsonl.lock"));
  const auto begin = std::chrono::steady_clock::now();
  for (int count = 0; count < 100; ++count) mLog.Append(Entry("lost"));
  // To wait for each would take 20 seconds.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

}  // namespace
