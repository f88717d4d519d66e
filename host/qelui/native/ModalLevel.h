// The stack of what is open modally, and the main thread's tasks, which run meanwhile.
#pragma once

#include <wx/timer.h>

#include <functional>

namespace qelui::native {

/// Lives while a modal event loop of the toolkit runs. The main thread's tasks run in the uppermost loop
/// alone: a task that itself opens a dialog does not keep the others from running, and no task runs twice at
/// a time in one loop.
class ModalLevel {
 public:
  /// `onUncovered` runs when a level above this one is gone.
  explicit ModalLevel(std::function<void()> onUncovered = {});
  ~ModalLevel();
  ModalLevel(const ModalLevel&) = delete;
  ModalLevel& operator=(const ModalLevel&) = delete;

  [[nodiscard]] bool IsUppermost() const;

 private:
  class TaskTimer final : public wxTimer {
   public:
    explicit TaskTimer(ModalLevel& level) : mLevel(level) {}
    void Notify() override;

   private:
    ModalLevel& mLevel;
    bool mIsRunningTasks = false;
  };

  ModalLevel* mBelow;
  std::function<void()> mOnUncovered;
  TaskTimer mTimer;
};

}  // namespace qelui::native
