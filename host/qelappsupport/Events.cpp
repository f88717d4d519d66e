#include <exception>
#include <memory>
#include <mutex>
#include <utility>

#include "host/qelappsupport/EventsFile.h"
#include "host/qelappsupport/HostSetup.h"
#include "platform/qelappsupport.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Trace.h"

namespace qelappsupport {

namespace {

struct SinkHolder {
  std::mutex mMutex;
  std::shared_ptr<const host::EventSink> mSink;
};

SinkHolder& TheSink() {
  // Never destroyed, because static objects of other libraries may log while the process ends.
  static SinkHolder& holder = *new SinkHolder;
  return holder;
}

bool AreEventsRecorded() {
  return qelcore::DebugDatabase::Instance().GetEntry(host::kRecordAnalyticsSetting, "true") != "false";
}

}  // namespace

namespace analytics {

SDMEvent::SDMEvent(std::string workflow, std::string category, std::string subtype, std::string name,
                   ErrorHandlingPolicy policy)
    : mTexts{std::move(workflow), std::move(category), std::move(subtype), std::move(name)},
      mPolicy(policy) {}

SDMEvent::~SDMEvent() = default;
SDMEvent::SDMEvent(const SDMEvent&) = default;
SDMEvent& SDMEvent::operator=(const SDMEvent&) = default;

void SDMEvent::AddSDMData(std::string group, std::string key, std::string value, Privacy privacy) {
  mItems.push_back({std::move(group), std::move(key), ItemKind::kValue, std::move(value), privacy});
}

void SDMEvent::AddSDMDataNone(std::string group, std::string key) {
  mItems.push_back({std::move(group), std::move(key), ItemKind::kNone, {}, Privacy::kDefault});
}

void SDMEvent::AddSDMDataUnknown(std::string group, std::string key) {
  mItems.push_back({std::move(group), std::move(key), ItemKind::kUnknown, {}, Privacy::kDefault});
}

void SDMUsageLogger::LogEvent(const SDMEvent& event) {
  try {
    std::shared_ptr<const host::EventSink> sink;
    {
      SinkHolder& holder = TheSink();
      const std::lock_guard lock(holder.mMutex);
      sink = holder.mSink;
    }
    if (sink) {
      (*sink)(event);
    } else if (AreEventsRecorded()) {
      host::AppendToEventsFile(event);
    }
  } catch (...) {
    qelcore::LogException(std::current_exception(), "qelappsupport::analytics::SDMUsageLogger::LogEvent");
  }
}

}  // namespace analytics

namespace host {

void SetEventSink(EventSink sink) {
  SinkHolder& holder = TheSink();
  const std::lock_guard lock(holder.mMutex);
  holder.mSink = sink ? std::make_shared<const EventSink>(std::move(sink)) : nullptr;
}

}  // namespace host
}  // namespace qelappsupport
