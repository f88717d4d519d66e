#include "authoring/model/InformedRule.h"

#include <string_view>
#include <utility>

namespace authoring {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;

namespace {

std::string TextOrEmpty(const json::Dictionary& object, std::string_view key) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? std::string() : *text;
}

}  // namespace

DefaultTextsOfKinds ReadDefaultTexts(const json::Dictionary& document) {
  DefaultTextsOfKinds defaults;
  const json::Dictionary* const entries = json::FindDictionary(document, "default_info");
  if (entries == nullptr) return defaults;
  for (std::size_t kind = 0; kind < defaults.size(); ++kind) {
    const std::string key = ComponentTypeToString(OSComponentType{static_cast<std::int32_t>(kind)});
    const json::Dictionary* const entry = json::FindDictionary(*entries, key);
    if (entry == nullptr) continue;
    defaults[kind] = {TextOrEmpty(*entry, "info_message"), TextOrEmpty(*entry, "info_url")};
  }
  return defaults;
}

SCRRule InformedRule(const std::any& element, const DefaultTexts& defaults) {
  const auto isEmpty = [&](const char* key) { return TextOrEmpty(json::AsDictionary(element), key).empty(); };
  if (!isEmpty("info_message")) return SCRRule(element);
  json::Dictionary object = json::AsDictionary(element);
  json::Set(object, "info_message", defaults.mMessage);
  if (isEmpty("info_url")) json::Set(object, "info_url", defaults.mURL);
  return SCRRule(std::any(std::move(object)));
}

}  // namespace authoring
