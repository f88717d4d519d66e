#include "host/qelcore/files/FileOperationHook.h"

#include <memory>
#include <mutex>
#include <utility>

namespace qelcore::host {

namespace {

using Hook = std::function<void(FileOperation, const std::string&)>;

struct HookHolder {
  std::mutex mMutex;
  std::shared_ptr<const Hook> mHook;
};

HookHolder& TheHook() {
  // Never destroyed, because other libraries' static objects may still call while the process ends.
  static HookHolder& holder = *new HookHolder;
  return holder;
}

}  // namespace

void SetFileOperationHook(Hook hook) {
  HookHolder& holder = TheHook();
  const std::lock_guard lock(holder.mMutex);
  holder.mHook = hook ? std::make_shared<const Hook>(std::move(hook)) : nullptr;
}

void AnnounceFileOperation(FileOperation operation, const std::string& path) {
  std::shared_ptr<const Hook> hook;
  {
    HookHolder& holder = TheHook();
    const std::lock_guard lock(holder.mMutex);
    hook = holder.mHook;
  }
  // Outside the lock, because the hook may work with files itself.
  if (hook) {
    (*hook)(operation, path);
  }
}

}  // namespace qelcore::host
