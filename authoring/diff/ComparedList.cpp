#include "authoring/diff/ComparedList.h"

#include <algorithm>
#include <array>
#include <utility>

#include "authoring/model/InformedRule.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::array<std::string_view, 2> kFormatKeys = {"osc_version", "osblc_version"};

const std::any& Member(const json::Dictionary& object, std::string_view key) {
  static const std::any none;
  const auto found = object.find(key);
  return found == object.end() ? none : *found->second;
}

ListFields FieldsOf(const SCRRule& rule) {
  const std::any value = rule.ToJSON();
  ListFields fields;
  for (const auto& [key, member] : json::AsDictionary(value)) {
    if (std::find(kFormatKeys.begin(), kFormatKeys.end(), key) != kFormatKeys.end()) continue;
    fields.push_back({key, json::Serialise(*member)});
  }
  return fields;
}

ComparedRule ReadRule(const std::any& element, const DefaultTextsOfKinds& defaults) {
  const SCRRule rule(element);
  ComparedRule compared;
  compared.mKind = ComponentTypeToString(rule.GetType());
  compared.mName = rule.GetName();
  compared.mFields = FieldsOf(rule);
  for (const auto& [key, value] : compared.mFields) compared.mText += key + ' ' + value + '\n';
  compared.mOwnID = rule.GetID();
  compared.mID = InformedRule(element, defaults.at(static_cast<std::size_t>(rule.GetType()))).GetID();
  return compared;
}

}  // namespace

std::string_view ValueOf(const ListFields& fields, std::string_view key) {
  const auto found =
      std::find_if(fields.begin(), fields.end(), [&](const ListField& field) { return field.mKey == key; });
  return found == fields.end() ? std::string_view() : std::string_view(found->mValue);
}

ComparedList::ComparedList(const std::any& document,
                           const qelsystemcompatibilityreport::SCRBlocklist& blocklist)
    : mIsAcceptedAsDownload(blocklist.Verify()) {
  const json::Dictionary& root = json::AsDictionary(document);
  mVersion = json::Serialise(Member(root, "blocklist_version"));
  const auto defaults = ReadDefaultTexts(root);
  for (std::size_t kind = 0; kind < defaults.size(); ++kind) {
    const std::string entry =
        "default_info." + ComponentTypeToString(OSComponentType{static_cast<std::int32_t>(kind)});
    mTexts.push_back({entry + ".info_message", json::Serialise(defaults[kind].mMessage)});
    mTexts.push_back({entry + ".info_url", json::Serialise(defaults[kind].mURL)});
  }
  mTexts.push_back({"second_warning", json::Serialise(blocklist.GetSecondWarning())});
  if (const json::Array* const elements = json::FindArray(root, "blocklist")) {
    mRules.reserve(elements->size());
    for (const std::any& element : *elements) mRules.push_back(ReadRule(element, defaults));
  }
  for (std::size_t index = 0; index < mRules.size(); ++index) {
    mRuleByID.emplace(mRules[index].mID, index);
    mHasFileRules |= mRules[index].IsFileRule();
  }
  qelcore::GetHashResult(blocklist.Hash(), mContentHash);
}

std::size_t ComparedList::FindRule(const std::string& id) const {
  const auto found = mRuleByID.find(id);
  return found == mRuleByID.end() ? mRules.size() : found->second;
}

}  // namespace authoring
