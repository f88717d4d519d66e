// The blocklist as a document: reading, verifying, hashing.
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/qelcore/Json.h"
#include "platform/qelcore/JsonView.h"
#include "qelsystemcompatibilityreport/blocklist/RuleList.h"
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

constexpr std::array kDocumentKeys{kBlocklistVersion, kBlocklist, kDefaultInfo, kSecondWarning};
constexpr std::array kTextKeys{kInfoMessage, kInfoURL};

std::array<std::string, kOSComponentTypeCount> KindNames() {
  std::array<std::string, kOSComponentTypeCount> names;
  for (std::size_t kind = 0; kind < names.size(); ++kind) {
    names[kind] = ComponentTypeToString(OSComponentType{static_cast<std::int32_t>(kind)});
  }
  return names;
}

void MixText(qelcore::MixHashGuidT<qelcore::HashValueMixerState>& state, const std::string& text) {
  qelcore::UpdateHashState(state, text.data(), text.size());
}

}  // namespace

SCRBlocklist::SCRBlocklist(const std::string& json) {
  AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist", [&] { Read(json); });
}

SCRBlocklist::SCRBlocklist(std::string&& json) {
  AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist", [&] { Read(std::move(json)); });
}

SCRBlocklist::SCRBlocklist(const SCRBlocklist&) = default;
SCRBlocklist::SCRBlocklist(SCRBlocklist&&) noexcept = default;
SCRBlocklist& SCRBlocklist::operator=(const SCRBlocklist&) = default;
SCRBlocklist& SCRBlocklist::operator=(SCRBlocklist&&) noexcept = default;
SCRBlocklist::~SCRBlocklist() = default;

const RuleList& SCRBlocklist::Rules() const {
  static const RuleList none;
  return mRules ? *mRules : none;
}

void SCRBlocklist::Read(std::string json) {
  mDefaults.resize(kOSComponentTypeCount);
  // Why the first way failed is not asked: a list that no cutting helps is rare, and is only read once more.
  for (const json::Cutting cutting : {json::Cutting::kByLines, json::Cutting::kSurely}) {
    const auto document = std::make_shared<json::Document>(std::move(json), kBlocklist, cutting);
    if (ReadDirectly(document)) return;
    json = document->TakeText();
  }
  // What is wrong with a document is told as if all of it had been parsed first.
  ReadFromDictionary(json);
}

bool SCRBlocklist::ReadDirectly(const std::shared_ptr<const json::Document>& document) {
  try {
    return document->Root().IsThere() && ReadDocument(document->Root(), document);
  } catch (const json::LeftToParse&) {
    mRules.reset();
  } catch (const json::TypeError&) {
    mRules.reset();
  }
  return false;
}

void SCRBlocklist::ReadFromDictionary(const std::string& json) {
  mRules.reset();
  mDefaults.assign(kOSComponentTypeCount, {});
  json::ParseError error;
  const std::any root = json::Parse(json, &error);
  if (!root.has_value()) {
    const std::string place = error.mLine == 0 ? std::string()
                                               : ", line " + std::to_string(error.mLine) + ", column " +
                                                     std::to_string(error.mColumn);
    throw std::runtime_error("the blocklist is not JSON" + place + ": " + error.mMessage);
  }
  ReadDocument(json::View(root), nullptr);
}

bool SCRBlocklist::ReadDocument(const json::View& root,
                                const std::shared_ptr<const json::Document>& document) {
  const auto [version, rules, defaults, secondWarning] = root.Members(kDocumentKeys);
  // The version is a gate and is not kept. Any number but 0 passes.
  const std::optional<std::uint64_t> number = version.Integer();
  if (!number || static_cast<std::uint32_t>(*number) == 0) return false;
  // All or nothing: a list that was damaged in one place is not trusted in the others. Nor is anything that
  // stands around the rules before they were read.
  mRules = std::make_shared<const RuleList>(rules, document);
  ReadDefaults(defaults);
  mSecondWarning = secondWarning.Text().value_or(std::string_view());
  return true;
}

void SCRBlocklist::ReadDefaults(const json::View& defaults) {
  if (!defaults.IsThere()) return;
  const std::array<std::string, kOSComponentTypeCount> kindNames = KindNames();
  std::array<std::string_view, kOSComponentTypeCount> keys;
  std::copy(kindNames.begin(), kindNames.end(), keys.begin());
  const auto entries = defaults.Members(keys);
  for (std::size_t kind = 0; kind < entries.size(); ++kind) {
    if (!entries[kind].IsThere()) continue;
    const auto [message, url] = entries[kind].Members(kTextKeys);
    if (const auto text = message.Text()) mDefaults[kind].info_message = *text;
    if (const auto text = url.Text()) mDefaults[kind].info_url = *text;
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
  for (const Guid& hash : Rules().Hashes()) {
    qelcore::UpdateHashState(state, hash.Bytes().data(), hash.Bytes().size());
  }
  MixText(state, mSecondWarning);
  return state;
}

}  // namespace qelsystemcompatibilityreport
