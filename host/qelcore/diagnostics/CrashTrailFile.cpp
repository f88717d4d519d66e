#include "host/qelcore/diagnostics/CrashTrailFile.h"

#include <any>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileSystem.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"

namespace qelcore::host {

using debug::brindle::TrailValue;
using filesupport::Dir;
using filesupport::File;

namespace {

constexpr std::u16string_view kFileName = u"crash-trail.json";
constexpr std::string_view kTime = "time";
constexpr std::string_view kTrails = "trails";
constexpr std::string_view kValues = "values";
constexpr std::string_view kList = "list";
constexpr std::string_view kMarkers = "markers";

File TrailFile() {
  return {Dir(string::UTF8to16(PreferencesDirectory())), kFileName};
}

std::any ToJSON(const TrailValue& value) {
  return std::visit([](const auto& held) { return std::any(held); }, value);
}

template <typename Map>
json::Dictionary ToJSON(const Map& values) {
  json::Dictionary object;
  for (const auto& [key, value] : values) {
    json::Set(object, key, ToJSON(value));
  }
  return object;
}

json::Dictionary ToJSON(const Trail& trail) {
  json::Array list;
  for (const TrailValue& value : trail.mList) {
    list.push_back(ToJSON(value));
  }
  json::Dictionary object;
  json::Set(object, kValues, ToJSON(trail.mDictionary));
  json::Set(object, kList, std::move(list));
  return object;
}

TrailValue ValueFromJSON(const std::any& value) {
  if (const auto* const text = std::any_cast<std::string>(&value)) {
    return *text;
  }
  if (const auto* const boolean = std::any_cast<bool>(&value)) {
    return *boolean;
  }
  throw json::TypeError("A value is neither a text nor a truth value");
}

template <typename Map>
Map ValuesFromJSON(const json::Dictionary& object) {
  Map values;
  for (const auto& [key, value] : object) {
    values.emplace(key, ValueFromJSON(*value));
  }
  return values;
}

/// What a typed read found; throws when it found nothing.
template <typename Value>
const Value& Require(const Value* value, std::string_view key) {
  if (value == nullptr) {
    throw json::TypeError("\"" + std::string(key) + "\" is missing");
  }
  return *value;
}

Trail TrailFromJSON(const std::any& value) {
  const json::Dictionary& object = json::AsDictionary(value);
  Trail trail;
  trail.mDictionary = ValuesFromJSON<debug::brindle::TrailDictionary>(
      Require(json::FindDictionary(object, kValues), kValues));
  for (const std::any& element : Require(json::FindArray(object, kList), kList)) {
    trail.mList.push_back(ValueFromJSON(element));
  }
  return trail;
}

LastTrail LastTrailFromJSON(const std::any& value) {
  const json::Dictionary& object = json::AsDictionary(value);
  LastTrail last;
  last.mTime = Require(json::FindText(object, kTime), kTime);
  for (const std::any& trail : Require(json::FindArray(object, kTrails), kTrails)) {
    last.mTrails.push_back(TrailFromJSON(trail));
  }
  last.mMarkers = ValuesFromJSON<std::map<std::string, TrailValue>>(
      Require(json::FindDictionary(object, kMarkers), kMarkers));
  return last;
}

/// A sentence as a part of a longer message.
std::string WithoutFullStop(std::string sentence) {
  if (sentence.ends_with('.')) {
    sentence.pop_back();
  }
  return sentence;
}

}  // namespace

void SaveTrailFile(const LastTrail& trail) {
  json::Array trails;
  for (const Trail& one : trail.mTrails) {
    trails.emplace_back(ToJSON(one));
  }
  json::Dictionary object;
  json::Set(object, kTime, trail.mTime);
  json::Set(object, kTrails, std::move(trails));
  json::Set(object, kMarkers, ToJSON(trail.mMarkers));
  filesupport::SafeSave save(File(Dir::PrefDir(), kFileName));
  save.Write(json::Serialise(object));
  save.Commit();
}

std::optional<LastTrail> ReadLastTrail() {
  const std::string path = GetTrailFile();
  if (!HasRegularFile(path)) {
    return std::nullopt;
  }
  const std::string text = filesupport::IPlatformByteStream(TrailFile()).ReadAll();
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
  if (!value.has_value()) {
    throw std::runtime_error(path + ':' + std::to_string(error.mLine) + ':' + std::to_string(error.mColumn) +
                             ": " + WithoutFullStop(error.mMessage));
  }
  try {
    return LastTrailFromJSON(value);
  } catch (const json::TypeError& typeError) {
    throw std::runtime_error(path + ": " + WithoutFullStop(typeError.what()));
  }
}

std::string GetTrailFile() {
  return string::UTF16to8(TrailFile().GetFullPath());
}

}  // namespace qelcore::host
