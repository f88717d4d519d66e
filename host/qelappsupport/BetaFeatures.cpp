#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>

#include "host/qelappsupport/HostSetup.h"
#include "platform/qelappsupport.h"
#include "platform/qelcore/Trace.h"

namespace qelappsupport {

namespace {

struct Store {
  std::mutex mMutex;
  std::vector<host::BetaFeatureDescription> mFeatures;
};

Store& TheStore() {
  // Made by the first declaration, because those are static objects of libraries that may come before this
  // one; never destroyed, because they may ask while the process ends.
  static Store& store = *new Store;
  return store;
}

}  // namespace

namespace feature {

BetaFeature::BetaFeature(std::string name, Stage stage, std::string description, std::string ticket) {
  // Nobody could catch what a static object throws.
  try {
    Store& store = TheStore();
    const std::lock_guard lock(store.mMutex);
    const bool isKnown = std::any_of(store.mFeatures.begin(), store.mFeatures.end(),
                                     [&](const auto& known) { return known.mName == name; });
    if (!isKnown) {
      store.mFeatures.push_back({.mName = std::move(name),
                                 .mStage = stage,
                                 .mDescription = std::move(description),
                                 .mTicket = std::move(ticket)});
    }
  } catch (...) {
    qelcore::LogException(std::current_exception(), "qelappsupport::feature::BetaFeature");
  }
}

}  // namespace feature

namespace host {

std::vector<BetaFeatureDescription> GetBetaFeatures() {
  Store& store = TheStore();
  const std::lock_guard lock(store.mMutex);
  return store.mFeatures;
}

}  // namespace host
}  // namespace qelappsupport
