// A trace that a test sets by hand and that remembers what it was asked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace testsupport {

struct RecordingTrace {
  // What the trace answers.
  std::uint32_t mChangeCount = 1;
  bool mIsEnabled = true;

  // What it was asked and told.
  std::vector<std::string> mQuestioned;  ///< "<channel> <level>" of each question
  std::vector<std::string> mOutput;      ///< "<channel> <level> <text>" of each message
  std::vector<std::string> mLogged;      ///< "<context>: <what>" of each exception

  [[nodiscard]] static RecordingTrace& Instance();
};

}  // namespace testsupport
