// The blocklist as a document: reading, verifying, hashing.
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;
using qelcore::utility::kOSComponentTypeCount;

namespace {

constexpr std::string_view kBlocklistVersion = "blocklist_version";
constexpr std::string_view kBlocklist = "blocklist";
constexpr std::string_view kDefaultInfo = "default_info";
constexpr std::string_view kSecondWarning = "second_warning";
constexpr std::string_view kInfoMessage = "info_message";
constexpr std::string_view kInfoURL = "info_url";

void ReadTextIfPresent(const json::Dictionary& object, std::string_view key, std::string& text) {
  if (const std::string* const found = json::FindText(object, key)) text = *found;
}

std::string DescribeInvalidRule(std::size_t index, const SCRRule& rule) {
  const std::string beginning =
      "element " + std::to_string(index) + " of \"blocklist\" is not a valid rule: ";
  if (rule.GetType() == OSComponentType::kInvalid) {
    return beginning + "\"name\" or \"type\" is missing or wrong, or \"version\" is not a text";
  }
  return beginning + "\"osblc_version\" is 0, or a key has the wrong type; its name is \"" + rule.GetName() +
         "\"";
}

void MixText(qelcore::MixHashGuidT<qelcore::HashValueMixerState>& state, const std::string& text) {
  qelcore::UpdateHashState(state, text.data(), text.size());
}

}  // namespace

SCRBlocklist::SCRBlocklist(const std::string& json) {
  AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist", [&] {
    mDefaults.resize(kOSComponentTypeCount);
    Read(json);
  });
}

SCRBlocklist::SCRBlocklist(const SCRBlocklist&) = default;
SCRBlocklist::SCRBlocklist(SCRBlocklist&&) noexcept = default;
SCRBlocklist& SCRBlocklist::operator=(const SCRBlocklist&) = default;
SCRBlocklist& SCRBlocklist::operator=(SCRBlocklist&&) noexcept = default;
SCRBlocklist::~SCRBlocklist() = default;

void SCRBlocklist::Read(const std::string& json) {
  json::ParseError error;
  const std::any root = json::Parse(json, &error);
  if (!root.has_value()) {
    const std::string place = error.mLine == 0 ? std::string()
                                               : ", line " + std::to_string(error.mLine) + ", column " +
                                                     std::to_string(error.mColumn);
    throw std::runtime_error("the blocklist is not JSON" + place + ": " + error.mMessage);
  }
  const json::Dictionary& document = json::AsDictionary(root);

  // The version is a gate and is not kept. Any number but 0 passes.
  const auto version = json::FindInteger(document, kBlocklistVersion);
  if (!version || static_cast<std::uint32_t>(*version) == 0) return;

  ReadRules(document);
  ReadDefaults(document);
  ReadTextIfPresent(document, kSecondWarning, mSecondWarning);
}

void SCRBlocklist::ReadRules(const json::Dictionary& document) {
  const json::Array* const elements = json::FindArray(document, kBlocklist);
  if (elements == nullptr) return;
  // All or nothing: a list that was damaged in one place is not trusted in the others.
  std::vector<SCRRule> rules;
  rules.reserve(elements->size());
  for (const std::any& element : *elements) {
    SCRRule rule;
    if (!rule.FromJSON(element)) throw std::runtime_error(DescribeInvalidRule(rules.size(), rule));
    rules.push_back(std::move(rule));
  }
  mRules = std::move(rules);
}

void SCRBlocklist::ReadDefaults(const json::Dictionary& document) {
  static const json::Dictionary nothing;
  const json::Dictionary* const found = json::FindDictionary(document, kDefaultInfo);
  const json::Dictionary& defaults = found == nullptr ? nothing : *found;
  for (std::int32_t kind = 0; kind < kOSComponentTypeCount; ++kind) {
    const json::Dictionary* const entry =
        json::FindDictionary(defaults, ComponentTypeToString(OSComponentType{kind}));
    if (entry == nullptr) continue;
    DefaultInfoAndURL& texts = mDefaults[static_cast<std::size_t>(kind)];
    ReadTextIfPresent(*entry, kInfoMessage, texts.info_message);
    ReadTextIfPresent(*entry, kInfoURL, texts.info_url);
  }
}

const SCRBlocklist::DefaultInfoAndURL& SCRBlocklist::GetDefaultInfoAndURL(OSComponentType kind) const {
  const auto index = static_cast<std::int32_t>(kind);
  if (index < 0 || index >= kOSComponentTypeCount || static_cast<std::size_t>(index) >= mDefaults.size()) {
    return mFallback;
  }
  return mDefaults[static_cast<std::size_t>(index)];
}

bool SCRBlocklist::Verify() const {
  return mDefaults.size() == kOSComponentTypeCount &&
         std::all_of(mDefaults.begin(), mDefaults.end(), [](const DefaultInfoAndURL& texts) {
           return !texts.info_message.empty() && !texts.info_url.empty();
         });
}

qelcore::MixHashGuidT<qelcore::HashValueMixerState> SCRBlocklist::Hash() const {
  qelcore::MixHashGuidT<qelcore::HashValueMixerState> state;
  for (const DefaultInfoAndURL& texts : mDefaults) {
    MixText(state, texts.info_message);
    MixText(state, texts.info_url);
  }
  for (const SCRRule& rule : mRules) {
    Guid ruleHash;
    qelcore::GetHashResult(rule.Hash(), ruleHash);
    qelcore::UpdateHashState(state, ruleHash.Bytes().data(), ruleHash.Bytes().size());
  }
  MixText(state, mSecondWarning);
  return state;
}

}  // namespace qelsystemcompatibilityreport
