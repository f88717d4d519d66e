#include "host/qelcore/diagnostics/UsageFile.h"

#include <any>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/qelcore/diagnostics/JsonLinesLog.h"
#include "platform/qelcore/Json.h"

namespace qelcore::host {

namespace {

constexpr std::string_view kTime = "time";
constexpr std::string_view kGroup = "group";
constexpr std::string_view kEvent = "event";
constexpr std::string_view kFigures = "figures";
constexpr std::string_view kKey = "key";
constexpr std::string_view kValue = "value";
constexpr std::string_view kSecondValue = "second_value";

const JsonLinesLog& UsageFile() {
  // Never destroyed, because static objects of other libraries may record while the process ends.
  static const JsonLinesLog& log =
      *new JsonLinesLog("usage-statistics.jsonl", "qelcore::config::UsageLogger");
  return log;
}

json::Array ToJSON(const std::vector<UsageFigure>& figures) {
  json::Array array;
  for (const UsageFigure& figure : figures) {
    json::Dictionary object;
    json::Set(object, kKey, figure.mKey);
    std::visit([&](const auto& value) { json::Set(object, kValue, value); }, figure.mValue);
    array.emplace_back(std::move(object));
  }
  return array;
}

std::string RequireText(const json::Dictionary& object, std::string_view key) {
  const std::string* const text = json::FindText(object, key);
  if (text == nullptr) {
    throw std::runtime_error("\"" + std::string(key) + "\" is missing");
  }
  return *text;
}

UsageFigure FigureFromJSON(const std::any& value) {
  const json::Dictionary& object = json::AsDictionary(value);
  const auto place = object.find(kValue);
  if (place != object.end() && std::any_cast<bool>(place->second.get()) != nullptr) {
    return {RequireText(object, kKey), *std::any_cast<bool>(place->second.get())};
  }
  return {RequireText(object, kKey), RequireText(object, kValue)};
}

/// Throws when the object is not an entry.
UsageEntry EntryFromJSON(const json::Dictionary& object) {
  UsageEntry entry;
  entry.mTime = RequireText(object, kTime);
  entry.mGroup = RequireText(object, kGroup);
  entry.mEvent = RequireText(object, kEvent);
  if (const json::Array* const figures = json::FindArray(object, kFigures)) {
    entry.mFigures.emplace();
    for (const std::any& figure : *figures) {
      entry.mFigures->push_back(FigureFromJSON(figure));
    }
  } else {
    entry.mValue = RequireText(object, kValue);
    entry.mSecondValue = RequireText(object, kSecondValue);
  }
  return entry;
}

}  // namespace

void AppendToUsageFile(const UsageEntry& entry) {
  json::Dictionary object;
  json::Set(object, kTime, entry.mTime);
  json::Set(object, kGroup, entry.mGroup);
  json::Set(object, kEvent, entry.mEvent);
  if (entry.mFigures) {
    json::Set(object, kFigures, ToJSON(*entry.mFigures));
  } else {
    json::Set(object, kValue, entry.mValue);
    json::Set(object, kSecondValue, entry.mSecondValue);
  }
  UsageFile().Append(object);
}

UsageEntries ReadUsageEntries() {
  JsonLines lines = UsageFile().Read();
  UsageEntries entries;
  entries.mDamagedLines = lines.mDamagedLines;
  for (const json::Dictionary& object : lines.mObjects) {
    try {
      entries.mEntries.push_back(EntryFromJSON(object));
    } catch (const std::runtime_error&) {
      ++entries.mDamagedLines;
    }
  }
  return entries;
}

std::string GetUsageFile() {
  return UsageFile().GetPath();
}

}  // namespace qelcore::host
