// An optimization of the program itself: how many files it may have open.
#pragma once

#include <cstdint>
#include <string>

#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace app {

/// Recommends the largest limit that the system grants without asking for rights. It holds for this process
/// alone.
class OpenFilesOptimization final : public qelsystemcompatibilityreport::IAppOptimization {
 public:
  using Status = qelsystemcompatibilityreport::AppOptimizationStatus;

  /// What is in force now is the default to come back to. Throws when the system does not tell it.
  OpenFilesOptimization();

  [[nodiscard]] std::string GetName() override;
  [[nodiscard]] Status Determine(std::string& current, std::string& optimal) override;
  [[nodiscard]] Status Cancel() override;
  [[nodiscard]] Status Accept() override;
  [[nodiscard]] Status Default() override;
  [[nodiscard]] std::string GetFailureText() override;

 private:
  [[nodiscard]] Status Set(std::uint64_t limit);

  std::uint64_t mDefault;
  std::string mFailureText;
};

}  // namespace app
