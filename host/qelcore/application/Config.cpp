#include "platform/qelcore/Config.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <mutex>
#include <set>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/application/Application.h"
#include "host/qelcore/threads/MainThreadQueue.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

constexpr std::string_view kChannel = "Config";
constexpr int kErrorLevel = 1;

using config::ConfigurationParameters;
using ParametersCallback = std::function<void(const ConfigurationParameters&)>;

/// The registrar is remembered so that its end can take back what did not run yet.
struct ParametersRequest {
  const void* mRegistrar = nullptr;
  ParametersCallback mCallback;
};

struct Initializer {
  const void* mRegistrar = nullptr;
  std::string mName;
  std::function<bool()> mInitialize;
  std::vector<std::string> mDependencies;
  bool mIsTraced = false;  ///< that it waits was traced
};

struct TerminationAction {
  std::function<void()> mAction;
  std::string mName;
};

/// What registered itself and did not run yet. Registrars are static objects of many modules, so this must be
/// there before any of them and outlive them all.
struct Registrations {
  std::recursive_mutex mMutex;
  bool mHasBegun = false;
  bool mIsInitializing = false;
  ConfigurationParameters mParameters;
  std::vector<ParametersRequest> mParametersRequests;
  std::vector<Initializer> mInitializers;
  std::set<std::string, std::less<>> mSucceeded;
  std::set<std::string, std::less<>> mFailed;
  std::vector<TerminationAction> mTerminations;
};

Registrations& TheRegistrations() {
  static Registrations& registrations = *new Registrations;
  return registrations;
}

void TraceFailure(const std::string& text) {
  if (TraceEnabled(kChannel, kErrorLevel)) {
    TraceOutput(kChannel, kErrorLevel, text);
  }
}

void Deliver(const ParametersCallback& callback, const ConfigurationParameters& parameters) {
  try {
    callback(parameters);
  } catch (...) {
    LogException(std::current_exception(), "qelcore::config::ProcessBeginEndNotificationRegistrar");
  }
}

/// Runs one initializer; a failure is traced.
bool Initialize(const Initializer& initializer) {
  try {
    if (initializer.mInitialize()) {
      return true;
    }
    TraceFailure("The initializer \"" + initializer.mName + "\" failed.");
  } catch (...) {
    LogException(std::current_exception(), initializer.mName);
    TraceFailure("The initializer \"" + initializer.mName + "\" failed with an exception.");
  }
  return false;
}

/// The first dependency that failed; null when none did.
const std::string* FindFailedDependency(const Registrations& registrations, const Initializer& initializer) {
  const auto place =
      std::find_if(initializer.mDependencies.begin(), initializer.mDependencies.end(),
                   [&](const std::string& name) { return registrations.mFailed.contains(name); });
  return place != initializer.mDependencies.end() ? &*place : nullptr;
}

bool AreDependenciesDone(const Registrations& registrations, const Initializer& initializer) {
  return std::all_of(initializer.mDependencies.begin(), initializer.mDependencies.end(),
                     [&](const std::string& name) { return registrations.mSucceeded.contains(name); });
}

/// Runs the first initializer that can run, or gives up the first one that cannot run any more. Returns false
/// when there is none of either.
bool RunNextInitializer(Registrations& registrations, bool& hasFailure) {
  auto& initializers = registrations.mInitializers;
  for (auto place = initializers.begin(); place != initializers.end(); ++place) {
    const std::string* const failed = FindFailedDependency(registrations, *place);
    if (failed == nullptr && !AreDependenciesDone(registrations, *place)) {
      continue;
    }
    const std::string failedName = failed != nullptr ? *failed : std::string();
    // Taken out first, because an initializer may register others.
    const Initializer initializer = std::move(*place);
    initializers.erase(place);
    bool isDone = false;
    if (failed != nullptr) {
      TraceFailure("The initializer \"" + initializer.mName + "\" did not run, because \"" + failedName +
                   "\" failed.");
    } else {
      isDone = Initialize(initializer);
    }
    (isDone ? registrations.mSucceeded : registrations.mFailed).insert(initializer.mName);
    hasFailure = hasFailure || !isDone;
    return true;
  }
  return false;
}

using Initializers = std::vector<Initializer>;

/// The initializer of that name; null when none waits under it.
const Initializer* FindWaiting(const Initializers& waiting, std::string_view name) {
  const auto place = std::find_if(waiting.begin(), waiting.end(),
                                  [&](const Initializer& initializer) { return initializer.mName == name; });
  return place != waiting.end() ? &*place : nullptr;
}

/// The shortest way from an initializer along what it depends on back to itself, such as "a -> b -> a"; empty
/// when there is none.
std::string DescribeCircle(const Initializers& waiting, const std::string& start) {
  std::map<std::string_view, std::string_view> dependents;
  std::deque<std::string_view> reached{start};
  for (; !reached.empty(); reached.pop_front()) {
    const Initializer* const initializer = FindWaiting(waiting, reached.front());
    if (initializer == nullptr) {
      continue;
    }
    for (const std::string& dependency : initializer->mDependencies) {
      if (dependency == start) {
        std::string circle = start;
        for (std::string_view name = reached.front(); name != start; name = dependents.at(name)) {
          circle = std::string(name) + " -> " + circle;
        }
        return start + " -> " + circle;
      }
      if (dependents.emplace(dependency, reached.front()).second) {
        reached.push_back(dependency);
      }
    }
  }
  return {};
}

/// Says of each initializer that waits, and of which that was not said yet, what it waits for.
void TraceWaiting(Registrations& registrations) {
  Initializers& waiting = registrations.mInitializers;
  for (Initializer& initializer : waiting) {
    if (std::exchange(initializer.mIsTraced, true)) {
      continue;
    }
    const std::string beginning = "The initializer \"" + initializer.mName + "\" did not run, because ";
    const std::string circle = DescribeCircle(waiting, initializer.mName);
    if (!circle.empty()) {
      TraceFailure(beginning + "it waits for itself: " + circle + '.');
    }
    for (const std::string& name : initializer.mDependencies) {
      if (registrations.mSucceeded.contains(name)) {
        continue;
      }
      if (FindWaiting(waiting, name) == nullptr) {
        TraceFailure(beginning + '"' + name + "\", which it depends on, is not known.");
      } else if (circle.empty()) {
        TraceFailure(beginning + '"' + name + "\" did not run.");
      }
    }
  }
}

/// Runs what can run and says what waits. An initializer that registers another one comes here once more;
/// what that one waits for may just be the end of the first.
bool RunInitializers(Registrations& registrations) {
  const bool isOutermost = !std::exchange(registrations.mIsInitializing, true);
  bool hasFailure = false;
  while (RunNextInitializer(registrations, hasFailure)) {
  }
  if (isOutermost) {
    registrations.mIsInitializing = false;
    TraceWaiting(registrations);
  }
  return !hasFailure;
}

ConfigurationParameters MakeParameters() {
  std::map<std::string, ConfigurationParameters::Value, std::less<>> values;
  if (const auto version = host::GetApplicationVersion()) {
    values.emplace(config::kAppMajorVersion, version->mMajor);
    values.emplace(config::kAppMinorVersion, version->mMinor);
  }
  return ConfigurationParameters(std::move(values));
}

}  // namespace

namespace config {

ConfigurationParameters::ConfigurationParameters() = default;

ConfigurationParameters::ConfigurationParameters(std::map<std::string, Value, std::less<>> values)
    : mValues(std::move(values)) {}

ConfigurationParameters::~ConfigurationParameters() = default;
ConfigurationParameters::ConfigurationParameters(const ConfigurationParameters&) = default;
ConfigurationParameters& ConfigurationParameters::operator=(const ConfigurationParameters&) = default;

std::optional<std::int32_t> ConfigurationParameters::FindInteger(std::string_view name) const {
  const auto place = mValues.find(name);
  if (place == mValues.end()) {
    return std::nullopt;
  }
  const auto* const value = std::get_if<std::int32_t>(&place->second);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

ProcessBeginEndNotificationRegistrar::ProcessBeginEndNotificationRegistrar(
    ParametersCallback onProcessBegin) {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  if (registrations.mHasBegun) {
    Deliver(onProcessBegin, registrations.mParameters);
  } else {
    registrations.mParametersRequests.push_back({this, std::move(onProcessBegin)});
  }
}

ProcessBeginEndNotificationRegistrar::~ProcessBeginEndNotificationRegistrar() {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  std::erase_if(registrations.mParametersRequests,
                [&](const ParametersRequest& request) { return request.mRegistrar == this; });
}

InitializerRegistrar::InitializerRegistrar(std::string name, std::function<bool()> initialize,
                                           std::vector<std::string> dependencies,
                                           EInitializerContextFlags /*flags*/) {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  registrations.mInitializers.push_back({.mRegistrar = this,
                                         .mName = std::move(name),
                                         .mInitialize = std::move(initialize),
                                         .mDependencies = std::move(dependencies)});
  // A module that is loaded later still gets its initializers run, as soon as what they depend on is there.
  if (registrations.mHasBegun) {
    RunInitializers(registrations);
  }
}

InitializerRegistrar::~InitializerRegistrar() {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  std::erase_if(registrations.mInitializers,
                [&](const Initializer& initializer) { return initializer.mRegistrar == this; });
}

void AddTerminationForSingleton(std::function<void()> action, std::string name) {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  registrations.mTerminations.push_back({std::move(action), std::move(name)});
}

}  // namespace config

namespace host {

bool BeginProcess() {
  Registrations& registrations = TheRegistrations();
  const std::lock_guard lock(registrations.mMutex);
  if (!registrations.mHasBegun) {
    registrations.mHasBegun = true;
    registrations.mParameters = MakeParameters();
    for (const ParametersRequest& request : std::exchange(registrations.mParametersRequests, {})) {
      Deliver(request.mCallback, registrations.mParameters);
    }
  }
  const bool haveAllSucceeded = RunInitializers(registrations);
  return haveAllSucceeded && registrations.mInitializers.empty();
}

void EndProcess() {
  Registrations& registrations = TheRegistrations();
  for (;;) {
    TerminationAction termination;
    {
      const std::lock_guard lock(registrations.mMutex);
      if (registrations.mTerminations.empty()) {
        break;
      }
      termination = std::move(registrations.mTerminations.back());
      registrations.mTerminations.pop_back();
    }
    try {
      termination.mAction();
    } catch (...) {
      LogException(std::current_exception(), termination.mName);
    }
  }
  // Whoever posted them may be unloaded now.
  DropMainThreadTasks();
}

}  // namespace host
}  // namespace qelcore
