// The application-support library of a host that has no features to switch and drops all events. A whole
// implementation of `platform/qelappsupport.h`.
#include <utility>

#include "platform/qelappsupport.h"

namespace qelappsupport {

bool IsFeatureEnabled(std::string_view) {
  return false;
}

namespace feature {

BetaFeature::BetaFeature(std::string, Stage, std::string, std::string) {}

}  // namespace feature

namespace analytics {

SDMEvent::SDMEvent(std::string workflow, std::string category, std::string subtype, std::string name,
                   ErrorHandlingPolicy policy)
    : mTexts{std::move(workflow), std::move(category), std::move(subtype), std::move(name)},
      mPolicy(policy) {}

SDMEvent::~SDMEvent() = default;
SDMEvent::SDMEvent(const SDMEvent&) = default;
SDMEvent& SDMEvent::operator=(const SDMEvent&) = default;

void SDMEvent::AddSDMData(std::string, std::string, std::string, Privacy) {}
void SDMEvent::AddSDMDataNone(std::string, std::string) {}
void SDMEvent::AddSDMDataUnknown(std::string, std::string) {}

void SDMUsageLogger::LogEvent(const SDMEvent&) {}

}  // namespace analytics
}  // namespace qelappsupport
