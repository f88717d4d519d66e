// Keys, types and default texts of the document.
#include <cstdint>

#include "authoring/checks/Checks.h"
#include "authoring/checks/Keys.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

constexpr const char* kNothingIsRead = "Nothing is read of the list";

void CheckVersion(Document& document, const JsonNode& root) {
  const JsonMember* const version = root.FindMember("blocklist_version");
  if (version == nullptr) {
    document.Add(Code::kVersionRefused, root.mOffset, "\"blocklist_version\" is missing",
                 std::string(kNothingIsRead) + ". Write \"blocklist_version\": 1.");
  } else if (!version->mValue.Is(JsonKind::kInteger)) {
    document.Add(
        Code::kWrongType, version->mValue.mOffset,
        "\"blocklist_version\" is " + std::string(Describe(version->mValue.mKind)) + ", not an integer",
        std::string(kNothingIsRead) + ". Write 1.");
  } else if (static_cast<std::uint32_t>(version->mValue.mInteger) == 0) {
    document.Add(Code::kVersionRefused, version->mValue.mOffset,
                 "\"blocklist_version\" is 0 in its lower 32 bits",
                 std::string(kNothingIsRead) + ". Write 1.");
  }
}

/// Whether the member, when there is one, has the type; adds a finding when not.
bool RequireKind(Document& document, const JsonMember* member, JsonKind kind,
                 const std::string& consequence) {
  if (member == nullptr || member->mValue.Is(kind)) return true;
  document.Add(Code::kWrongType, member->mValue.mOffset,
               Quoted(member->mKey) + " is " + Describe(member->mValue.mKind) + ", not " + Describe(kind),
               consequence);
  return false;
}

void CheckDefault(Document& document, const JsonNode& place, const JsonNode* entry, const std::string& kind) {
  std::string missing;
  for (const char* const key : {"info_message", "info_url"}) {
    const JsonMember* const member = entry == nullptr ? nullptr : entry->FindMember(key);
    if (!RequireKind(document, member, JsonKind::kText, "What follows it is not read. Write a text."))
      continue;
    if (member == nullptr || member->mValue.mText.empty())
      missing += (missing.empty() ? "\"" : " and \"") + std::string(key) + '"';
  }
  if (missing.empty()) return;
  document.Add(
      Code::kDefaultMissing, entry == nullptr ? place.mOffset : entry->mOffset,
      "\"default_info\" has no " + missing + " for \"" + kind + '"',
      "A download of the list would be refused as a whole. Write it, even if no rule of this kind needs it.");
}

void CheckDefaults(Document& document, const JsonNode& root) {
  const JsonMember* const defaults = root.FindMember("default_info");
  if (!RequireKind(document, defaults, JsonKind::kObject, "No default text is read. Write an object."))
    return;
  if (defaults == nullptr) {
    document.Add(Code::kDefaultMissing, root.mOffset, "\"default_info\" is missing",
                 "A download of the list would be refused as a whole. Write \"info_message\" and "
                 "\"info_url\" for each "
                 "of " +
                     ListOf(KindNames()) + '.');
    return;
  }
  const JsonNode& place = defaults->mValue;
  CheckKeys(document, std::nullopt, place, KindNames());
  for (const std::string_view kind : KindNames()) {
    const JsonMember* const entry = place.FindMember(kind);
    if (!RequireKind(document, entry, JsonKind::kObject, "What follows it is not read. Write an object."))
      continue;
    if (entry != nullptr) CheckKeys(document, std::nullopt, entry->mValue, DefaultKeys());
    CheckDefault(document, place, entry == nullptr ? nullptr : &entry->mValue, std::string(kind));
  }
}

}  // namespace

void CheckDocumentForm(Document& document) {
  if (document.Root() == nullptr) return;
  const JsonNode& root = *document.Root();
  CheckKeys(document, std::nullopt, root, DocumentKeys());
  CheckVersion(document, root);
  const JsonMember* const rules = root.FindMember("blocklist");
  RequireKind(document, rules, JsonKind::kArray,
              "No rule of the list is kept, and no default text. Write an array.");
  if (rules == nullptr || (rules->mValue.Is(JsonKind::kArray) && rules->mValue.mElements.empty())) {
    document.Add(Code::kNoRules, rules == nullptr ? root.mOffset : rules->mValue.mOffset,
                 "the list has no rules", "");
  }
  CheckDefaults(document, root);
  RequireKind(document, root.FindMember("second_warning"), JsonKind::kText, "It is not read. Write a text.");
}

}  // namespace authoring
