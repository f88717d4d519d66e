// An optimization of nothing, for demonstrations: it shows every answer that a real one can give.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/qelcore/Timer.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace qelsystemcompatibilityreport {

class DummyOptimization final : public IAppOptimization {
 public:
  struct Settings {
    std::string mName;
    std::string mCurrent{};
    std::string mOptimal{};
    std::string mDefault{};
    bool mIsApplicable = true;            ///< whether determine recommends it
    std::uint64_t mStepMilliseconds = 0;  ///< how long each step is pending
    AppOptimizationStatus mAcceptResult = AppOptimizationStatus::OptimizationDone;  ///< what accept comes to
  };

  explicit DummyOptimization(Settings settings);

  [[nodiscard]] std::string GetName() override;
  [[nodiscard]] AppOptimizationStatus Determine(std::string& current, std::string& optimal) override;
  [[nodiscard]] AppOptimizationStatus Cancel() override;
  [[nodiscard]] AppOptimizationStatus Accept() override;
  [[nodiscard]] AppOptimizationStatus Default() override;
  [[nodiscard]] std::string GetFailureText() override;

 private:
  /// Whether the step under way, which begins with the first call, goes on.
  [[nodiscard]] bool IsStepPending();

  Settings mSettings;
  std::optional<qelcore::Timer> mStep;  ///< of the step under way; empty between steps
};

}  // namespace qelsystemcompatibilityreport
