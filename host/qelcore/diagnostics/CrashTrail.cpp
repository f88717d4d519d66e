#include "host/qelcore/CrashTrail.h"

#include <exception>
#include <mutex>

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
};

Trails& ProcessTrails() {
  static Trails trails;
  return trails;
}

}  // namespace

namespace debug::brindle {

void LeaveTrail(const TrailDictionary& dictionary, const TrailList& list) {
  try {
    const std::lock_guard lock(ProcessTrails().mMutex);
    ProcessTrails().mTrails.push_back({dictionary, list});
  } catch (...) {
    LogException(std::current_exception(), "qelcore::debug::brindle::LeaveTrail");
  }
}

void TrailMarker(const ImmutableString& name, const TrailValue& value) {
  try {
    const std::lock_guard lock(ProcessTrails().mMutex);
    ProcessTrails().mMarkers.insert_or_assign(std::string(name.View()), value);
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
