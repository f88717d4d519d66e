#include "host/qelappsupport/EventsFile.h"

#include <any>
#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/diagnostics/JsonLinesLog.h"
#include "host/qelcore/diagnostics/TimeText.h"
#include "platform/qelcore/Json.h"

namespace qelappsupport::host {

namespace json = qelcore::json;
using analytics::SDMEvent;
using qelcore::host::JsonLinesLog;

namespace {

constexpr std::string_view kTime = "time";
constexpr std::string_view kPolicy = "policy";
constexpr std::string_view kItems = "items";
constexpr std::string_view kGroup = "group";
constexpr std::string_view kKey = "key";
constexpr std::string_view kValue = "value";
constexpr std::string_view kNone = "none";
constexpr std::string_view kUnknown = "unknown";
constexpr std::string_view kPrivacy = "privacy";

/// The keys of an event's four texts, in the event's order.
constexpr std::array<std::string_view, 4> kTexts = {"workflow", "category", "subtype", "name"};

const JsonLinesLog& EventsFile() {
  // Never destroyed, because static objects of other libraries may log while the process ends.
  static const JsonLinesLog& log =
      *new JsonLinesLog("analytics-events.jsonl", "qelappsupport::analytics::SDMUsageLogger::LogEvent");
  return log;
}

template <typename Enumeration>
std::any NumberOf(Enumeration enumerator) {
  return static_cast<std::int64_t>(enumerator);
}

json::Dictionary ToJSON(const SDMEvent::Item& item) {
  json::Dictionary object;
  json::Set(object, kGroup, item.mGroup);
  json::Set(object, kKey, item.mKey);
  json::Set(object, kPrivacy, NumberOf(item.mPrivacy));
  switch (item.mKind) {
    case SDMEvent::ItemKind::kValue:
      json::Set(object, kValue, item.mValue);
      break;
    case SDMEvent::ItemKind::kNone:
      json::Set(object, kNone, true);
      break;
    case SDMEvent::ItemKind::kUnknown:
      json::Set(object, kUnknown, true);
      break;
  }
  return object;
}

/// An object that is JSON but no event.
class ShapeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

template <typename Value>
Value Require(Value value, std::string_view key) {
  if (!value) {
    throw ShapeError("\"" + std::string(key) + "\" is missing");
  }
  return value;
}

std::string RequireText(const json::Dictionary& object, std::string_view key) {
  return *Require(json::FindText(object, key), key);
}

template <typename Enumeration>
Enumeration RequireNumber(const json::Dictionary& object, std::string_view key) {
  const std::uint64_t number = *Require(json::FindInteger(object, key), key);
  if (number > std::numeric_limits<std::uint32_t>::max()) {
    throw ShapeError("\"" + std::string(key) + "\" is out of range");
  }
  return static_cast<Enumeration>(static_cast<std::uint32_t>(number));
}

void AddItem(SDMEvent& event, const std::any& value) {
  const json::Dictionary& object = json::AsDictionary(value);
  std::string group = RequireText(object, kGroup);
  std::string key = RequireText(object, kKey);
  const auto privacy = RequireNumber<analytics::Privacy>(object, kPrivacy);
  const std::string* const text = json::FindText(object, kValue);
  const bool isNone = json::FindBool(object, kNone).value_or(false);
  const bool isUnknown = json::FindBool(object, kUnknown).value_or(false);
  if ((text != nullptr ? 1 : 0) + (isNone ? 1 : 0) + (isUnknown ? 1 : 0) != 1) {
    throw ShapeError("An item has one of a value, \"none\" and \"unknown\"");
  }
  if (text != nullptr) {
    event.AddSDMData(std::move(group), std::move(key), *text, privacy);
  } else if (isNone) {
    event.AddSDMDataNone(std::move(group), std::move(key));
  } else {
    event.AddSDMDataUnknown(std::move(group), std::move(key));
  }
}

RecordedEvent FromJSON(const json::Dictionary& object) {
  RecordedEvent recorded{RequireText(object, kTime),
                         SDMEvent(RequireText(object, kTexts[0]), RequireText(object, kTexts[1]),
                                  RequireText(object, kTexts[2]), RequireText(object, kTexts[3]),
                                  RequireNumber<analytics::ErrorHandlingPolicy>(object, kPolicy))};
  for (const std::any& item : *Require(json::FindArray(object, kItems), kItems)) {
    AddItem(recorded.mEvent, item);
  }
  return recorded;
}

}  // namespace

void AppendToEventsFile(const SDMEvent& event) {
  json::Dictionary object;
  json::Set(object, kTime, qelcore::host::TimeText(std::chrono::system_clock::now()));
  for (std::size_t index = 0; index < kTexts.size(); ++index) {
    json::Set(object, kTexts[index], event.GetTexts().at(index));
  }
  json::Set(object, kPolicy, NumberOf(event.GetPolicy()));
  json::Array items;
  for (const SDMEvent::Item& item : event.GetItems()) {
    items.emplace_back(ToJSON(item));
  }
  json::Set(object, kItems, std::move(items));
  EventsFile().Append(object);
}

RecordedEvents ReadEvents() {
  const qelcore::host::JsonLines lines = EventsFile().Read();
  RecordedEvents events;
  events.mDamagedLines = lines.mDamagedLines;
  for (const json::Dictionary& object : lines.mObjects) {
    try {
      events.mEvents.push_back(FromJSON(object));
    } catch (const ShapeError&) {
      ++events.mDamagedLines;
    } catch (const json::TypeError&) {
      ++events.mDamagedLines;
    }
  }
  return events;
}

std::string GetEventsFile() {
  return EventsFile().GetPath();
}

}  // namespace qelappsupport::host
