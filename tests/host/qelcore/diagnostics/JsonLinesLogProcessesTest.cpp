// Processes that append to one file.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "tests/host/qelcore/diagnostics/JsonLinesLogFixture.h"
#include "tests/support/ProgramRun.h"

namespace {

using testsupport::JsonLinesLogs;
using Strings = std::vector<std::string>;

class JsonLinesLogProcesses : public JsonLinesLogs {
 protected:
  /// Runs one process for each list of arguments, all at a time, and expects that nothing goes wrong in any.
  void RunWriters(const std::vector<Strings>& arguments) {
    std::vector<std::thread> threads;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
      threads.emplace_back([this, index, &own = arguments[index]] {
        const std::filesystem::path scratch = mHost.Files().Path() / std::to_string(index);
        std::filesystem::create_directories(scratch);
        Strings all = {mHost.Preferences().string()};
        all.insert(all.end(), own.begin(), own.end());
        const auto result = testsupport::RunProgram(QELSCR_LOG_WRITER, all, {}, scratch, scratch);
        EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
};

TEST_F(JsonLinesLogProcesses, AppendAtATime) {
  RunWriters({{"a", "150", "4000"}, {"b", "150", "4000"}, {"c", "150", "4000"}});
  const Strings texts = Texts();
  EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()).size(), 450U);
  EXPECT_EQ(texts.size(), 450U);
  EXPECT_EQ(mLog.Read().mDamagedLines, 0U);
  EXPECT_LE(Content("log.jsonl.1").size(), 1'048'576U);
  EXPECT_LE(Content("log.jsonl").size(), 1'048'576U);
}

TEST_F(JsonLinesLogProcesses, ThatFindTheFileFullMoveItAsideOnce) {
  // Whoever moves the file aside a second time would put a short new file in the place of the full one.
  for (int round = 0; round < 5; ++round) {
    for (const char* const name : {"log.jsonl", "log.jsonl.1"}) std::filesystem::remove(At(name));
    mLog.Append(Entry(TextForLine(1'048'576)));
    RunWriters({{"a", "1", "0"}, {"b", "1", "0"}, {"c", "1", "0"}, {"d", "1", "0"}});
    ASSERT_EQ(Content("log.jsonl.1").size(), 1'048'576U) << round;
    ASSERT_EQ(Texts().size(), 5U) << round;
  }
}

TEST_F(JsonLinesLogProcesses, ThatDieLeaveTheLogUsable) {
  const std::filesystem::path scratch = mHost.Files().Path();
  const auto result = testsupport::RunProgram(
      QELSCR_LOG_WRITER, {mHost.Preferences().string(), "first", "1", "0", "die"}, {}, scratch, scratch);
  EXPECT_EQ(result.mExitCode, 9) << result.mErrors;
  mLog.Append(Entry("second"));
  EXPECT_EQ(Texts(), (Strings{"first0", "second"}));
}

TEST_F(JsonLinesLogs, ALogWithoutALockCanBeRead) {
  mHost.Files().Write("preferences/log.jsonl", "{\"text\":\"x\"}\n");
  std::filesystem::create_directory(At("log.jsonl.lock"));
  EXPECT_EQ(Texts(), Strings{"x"});
}

}  // namespace
