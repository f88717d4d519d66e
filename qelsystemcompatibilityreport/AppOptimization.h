// The application optimizer: settings of the machine that the application would like to have otherwise.
//
// A module of the host registers its optimizations. Each can tell the machine's present and optimal value of
// a setting, apply the optimal one, and restore the system's default. Somebody, usually the optimizer's
// dialog, then drives all of them together through steps that take their time:
//
//   std::vector<OptimizationState> states;
//   InitOptimizationStates(states);
//   auto status = BeginDetermineOptimizations(states);
//   while (status == AppOptimizationStatus::OptimizationPending) {
//     WaitAWhile();
//     status = ContinueDetermineOptimizations(states);
//   }
//   // Then BeginAcceptOptimizations for those that are selected, and the matching Continue in the same way.
//
// Everything here is the main thread's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/qelcore/ClassRef.h"
#include "platform/qelui.h"
#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

// ---- One optimization -------------------------------------------------------------------------------------

/// What a step came to. The numbers are fixed: do not renumber.
enum class AppOptimizationStatus : std::int32_t {
  OptimizationFailed = -1,    ///< the step failed; the pass stops at once
  OptimizationNotNeeded = 0,  ///< there is nothing to do; after determine: not applicable, or optimal already
  OptimizationDone = 1,       ///< the step is finished; after determine: the optimization is recommended
  OptimizationPending = 2,    ///< the step goes on; the matching Continue function has to be called later
  OptimizationStop = 3,       ///< the pass stops at once, without a failure
};

/// An optimization. The texts are UTF-8.
class QELSCR_EXPORT IAppOptimization : public qelcore::classref::UnknownBase {
 public:
  using Ref = qelcore::classref::InterfaceRef<IAppOptimization>;

  /// The identifier under which `QueryInterface` gives this interface. It never changes.
  [[nodiscard]] static const qelcore::Guid& InterfaceId();

  ~IAppOptimization() override;

  /// Answers to this interface and to the base, with null to any other.
  [[nodiscard]] void* QueryInterface(const qelcore::Guid& interfaceId) override;

  /// The name under which users see it.
  [[nodiscard]] virtual std::string GetName() = 0;

  /// Finds out the machine's value and the optimal one. Both are filled when the result is
  /// `OptimizationDone`.
  [[nodiscard]] virtual AppOptimizationStatus Determine(std::string& current, std::string& optimal) = 0;

  /// Gives up a step that is pending.
  [[nodiscard]] virtual AppOptimizationStatus Cancel() = 0;

  /// Applies the optimal value.
  [[nodiscard]] virtual AppOptimizationStatus Accept() = 0;

  /// Restores the system's default.
  [[nodiscard]] virtual AppOptimizationStatus Default() = 0;

  /// Why the last step failed, for a human reader.
  [[nodiscard]] virtual std::string GetFailureText() = 0;

  /// A reference to this very object, which must be held by one.
  [[nodiscard]] virtual Ref GetSelf();
};

// ---- The registry -----------------------------------------------------------------------------------------

/// Adds an optimization to those of this process, at the end. Returns false when the reference is empty and
/// when the same object is registered already. They are released when the host ends the process. Does not
/// throw.
QELSCR_EXPORT bool RegisterAppOptimization(const IAppOptimization::Ref& optimization);

/// What is known about one optimization while its steps go on.
struct OptimizationState {
  IAppOptimization::Ref mOptimization;
  AppOptimizationStatus mStatus = AppOptimizationStatus::OptimizationFailed;  ///< of the last step
  std::string mCurrent{};  ///< the machine's value, from determine
  std::string mOptimal{};  ///< the recommended value, from determine
  bool mSelected = false;  ///< whether accept is for it
};

/// Makes `states` hold a fresh state for each registered optimization, in the order of registration. Does not
/// throw.
QELSCR_EXPORT void InitOptimizationStates(std::vector<OptimizationState>& states);

// ---- Steps ------------------------------------------------------------------------------------------------
//
// A Begin function starts a step over the states, in their order; a Continue function goes on with those that
// are pending. Each stores every result in its state. The result is `OptimizationPending` when at least one
// is pending, else `OptimizationDone`. One that fails or stops ends the pass at once, and its status is the
// result; the states behind it stay as they were. An empty reference raises the core library's null-pointer
// exception, and what an optimization throws passes through: these functions alone do throw.

/// Determine, for all. One that is recommended becomes selected.
QELSCR_EXPORT AppOptimizationStatus BeginDetermineOptimizations(std::vector<OptimizationState>& states);
QELSCR_EXPORT AppOptimizationStatus ContinueDetermineOptimizations(std::vector<OptimizationState>& states);

/// Accept, for those that are selected.
QELSCR_EXPORT AppOptimizationStatus BeginAcceptOptimizations(std::vector<OptimizationState>& states);
QELSCR_EXPORT AppOptimizationStatus ContinueAcceptOptimizations(std::vector<OptimizationState>& states);

/// Default, for all.
QELSCR_EXPORT AppOptimizationStatus BeginDefaultOptimizations(std::vector<OptimizationState>& states);
QELSCR_EXPORT AppOptimizationStatus ContinueDefaultOptimizations(std::vector<OptimizationState>& states);

/// Cancel, for those that are pending.
QELSCR_EXPORT AppOptimizationStatus CancelOptimizations(std::vector<OptimizationState>& states);

// ---- The dialog -------------------------------------------------------------------------------------------

/// Shows the optimizer dialog over `parent`, which may be null, and returns when it is closed. While one is
/// open, brings that one to the front instead. Without a toolkit that can draw nothing is shown. Does not
/// throw.
QELSCR_EXPORT void RunAppOptimizer(qelui::OS_Window* parent);

// ---- For the host -----------------------------------------------------------------------------------------

/// Whether the host offers the optimizer to its users; false at load. Nothing in this library asks. Does not
/// throw.
QELSCR_EXPORT void EnableAppOptimizer(bool enable);
[[nodiscard]] QELSCR_EXPORT bool AppOptimizerEnabled();

}  // namespace qelsystemcompatibilityreport
