#include "authoring/model/InformedRule.h"

#include <utility>

#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRRule;

SCRRule InformedRule(const std::any& element, const DefaultTexts& defaults) {
  const auto isEmpty = [&](const char* key) {
    const std::string* const text = json::FindText(json::AsDictionary(element), key);
    return text == nullptr || text->empty();
  };
  if (!isEmpty("info_message")) return SCRRule(element);
  json::Dictionary object = json::AsDictionary(element);
  json::Set(object, "info_message", defaults.mMessage);
  if (isEmpty("info_url")) json::Set(object, "info_url", defaults.mURL);
  return SCRRule(std::any(std::move(object)));
}

}  // namespace authoring
