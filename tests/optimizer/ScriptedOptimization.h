// An optimization that answers what a test tells it to, and writes down what it was asked.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace testsupport {

class ScriptedOptimization final : public qelsystemcompatibilityreport::IAppOptimization {
 public:
  using Status = qelsystemcompatibilityreport::AppOptimizationStatus;

  /// Calls are written to `calls` as "name: step".
  ScriptedOptimization(std::string name, std::vector<std::string>& calls)
      : mName(std::move(name)), mCalls(calls) {}

  [[nodiscard]] std::string GetName() override { return mName; }
  [[nodiscard]] Status Determine(std::string& current, std::string& optimal) override {
    const Status status = Answer("determine");
    if (status == Status::OptimizationDone) {
      current = mName + " current";
      optimal = mName + " optimal";
    }
    return status;
  }
  [[nodiscard]] Status Cancel() override { return Answer("cancel"); }
  [[nodiscard]] Status Accept() override { return Answer("accept"); }
  [[nodiscard]] Status Default() override { return Answer("default"); }
  [[nodiscard]] std::string GetFailureText() override { return mFailureText; }

  /// What each step answers, call by call; the last answer stays.
  std::map<std::string, std::deque<Status>> mAnswers;
  /// Called before a step answers; may throw.
  std::function<void(const std::string& step)> mBeforeAnswer;
  std::string mFailureText = "because";

 private:
  Status Answer(const std::string& step) {
    mCalls.push_back(mName + ": " + step);
    if (mBeforeAnswer) mBeforeAnswer(step);
    auto& answers = mAnswers[step];
    if (answers.empty()) return Status::OptimizationDone;
    const Status status = answers.front();
    if (answers.size() > 1) answers.pop_front();
    return status;
  }

  std::string mName;
  std::vector<std::string>& mCalls;
};

}  // namespace testsupport
