#include "host/qelcore/CrashTrail.h"

#include <chrono>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "host/qelcore/diagnostics/CrashTrailFile.h"
#include "host/qelcore/diagnostics/TimeText.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

using debug::brindle::TrailDictionary;
using debug::brindle::TrailList;
using debug::brindle::TrailValue;

struct Trails {
  std::mutex mMutex;
  std::vector<host::Trail> mTrails;
  std::map<std::string, TrailValue> mMarkers;
  std::thread::id mSaver;    ///< the thread that saves at the moment; none without
  bool mIsOutdated = false;  ///< another thread changed something after the saver began
};

Trails& ProcessTrails() {
  // Never destroyed, because static objects of other libraries may leave a trail while the process ends.
  static Trails& trails = *new Trails;
  return trails;
}

/// Saves the trails as they are now. `lock` is let go while the file is written, and held again afterwards.
/// What fails is logged.
void SaveOnce(const Trails& trails, std::unique_lock<std::mutex>& lock) {
  try {
    const host::LastTrail copy{.mTime = host::TimeText(std::chrono::system_clock::now()),
                               .mTrails = trails.mTrails,
                               .mMarkers = trails.mMarkers};
    lock.unlock();
    host::SaveTrailFile(copy);
  } catch (...) {
    if (lock.owns_lock()) {
      lock.unlock();
    }
    LogException(std::current_exception(), "qelcore::debug::brindle");
  }
  lock.lock();
}

/// Changes the trails and brings the file up to date. No lock is held while the file is written or a failure
/// is logged: whoever hears of either may leave a trail itself. Such a trail waits for the next save, or one
/// that fails could go on for ever; one of another thread makes the saver save again.
template <typename Change>
void ChangeAndSave(Change change) {
  Trails& trails = ProcessTrails();
  std::unique_lock lock(trails.mMutex);
  change(trails);
  if (trails.mSaver != std::thread::id()) {
    trails.mIsOutdated = trails.mIsOutdated || trails.mSaver != std::this_thread::get_id();
    return;
  }
  trails.mSaver = std::this_thread::get_id();
  do {
    trails.mIsOutdated = false;
    SaveOnce(trails, lock);
  } while (trails.mIsOutdated);
  trails.mSaver = {};
}

}  // namespace

namespace debug::brindle {

void LeaveTrail(const TrailDictionary& dictionary, const TrailList& list) {
  try {
    ChangeAndSave([&](Trails& trails) { trails.mTrails.push_back({dictionary, list}); });
  } catch (...) {
    LogException(std::current_exception(), "qelcore::debug::brindle::LeaveTrail");
  }
}

void TrailMarker(const ImmutableString& name, const TrailValue& value) {
  try {
    ChangeAndSave([&](Trails& trails) { trails.mMarkers.insert_or_assign(std::string(name.View()), value); });
  } catch (...) {
    LogException(std::current_exception(), "qelcore::debug::brindle::TrailMarker");
  }
}

}  // namespace debug::brindle

namespace host {

std::vector<Trail> GetTrails() {
  const std::lock_guard lock(ProcessTrails().mMutex);
  return ProcessTrails().mTrails;
}

std::map<std::string, debug::brindle::TrailValue> GetTrailMarkers() {
  const std::lock_guard lock(ProcessTrails().mMutex);
  return ProcessTrails().mMarkers;
}

}  // namespace host
}  // namespace qelcore
