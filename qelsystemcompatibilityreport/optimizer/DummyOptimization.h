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
    std::uint64_t mStepMilliseconds = 0;  ///< how long each step is pending
    AppOptimizationStatus mAcceptResult = AppOptimizationStatus::OptimizationDone;  ///< what accept comes to
    bool mIsApplicable = true;  ///< whether determine recommends it
  };

  explicit DummyOptimization(Settings settings);

  [[nodiscard]] std::string GetName() override;
  [[nodiscard]] AppOptimizationStatus Determine(std::string& current, std::string& optimal) override;
  [[nodiscard]] AppOptimizationStatus Cancel() override;
  [[nodiscard]] AppOptimizationStatus Accept() override;
  [[nodiscard]] AppOptimizationStatus Default() override;
  [[nodiscard]] std::string GetFailureText() override;

 private:
  enum class Step { kDetermine, kAccept, kDefault };

  struct UnderWay {
    Step mStep;
    qelcore::Timer mTimer;
  };

  /// Goes on with the step, which begins unless it is the one under way. Returns whether it is pending.
  [[nodiscard]] bool GoOn(Step step);

  Settings mSettings;
  std::optional<UnderWay> mUnderWay;  ///< empty between steps
};

}  // namespace qelsystemcompatibilityreport
