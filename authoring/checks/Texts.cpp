// Messages and links.
#include <string>

#include "authoring/checks/Checks.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"
#include "platform/qelcore/Browser.h"
#include "platform/qelcore/Text.h"

namespace authoring {

namespace {

constexpr const char* kHowToWrite = "Write an address with \"https://\" and a host, without blanks.";

bool IsUsable(const JsonNode* link) {
  if (link == nullptr || !link->Is(JsonKind::kText) || link->mText.empty()) return true;
  return qelcore::IsWebAddress(qelcore::string::UTF8to16(link->mText));
}

std::string TellUnusable(const JsonNode& link) {
  return "the link " + Quoted(link.mText) + " is not an address of the web, and is not opened";
}

}  // namespace

void CheckTexts(Document& document) {
  if (document.Root() == nullptr) return;
  if (const JsonNode* const defaults = document.Root()->Find("default_info")) {
    for (const std::string_view kind : KindNames()) {
      const JsonNode* const entry = defaults->Find(kind);
      const JsonNode* const link = entry == nullptr ? nullptr : entry->Find("info_url");
      if (!IsUsable(link))
        document.Add(Code::kNotAWebAddress, link->mOffset, TellUnusable(*link), kHowToWrite);
    }
  }
  for (std::size_t index = 0; index < document.Rules().size(); ++index) {
    const RuleElement& rule = document.Rules()[index];
    if (!rule.mIsReadable) continue;
    const JsonNode* const link = rule.mNode->Find("info_url");
    if (!IsUsable(link))
      document.AddToRule(index, Code::kNotAWebAddress, link->mOffset, TellUnusable(*link), kHowToWrite);
    const JsonMember* const message = rule.mNode->FindMember("info_message");
    if (message == nullptr || message->mValue.mText.empty() || (link != nullptr && !link->mText.empty()))
      continue;
    document.AddToRule(
        index, Code::kMessageWithoutLink, message->mKeyOffset,
        "the rule has a message of its own and no link, so its issues have none either: the default link "
        "would not fit the message",
        "Write \"info_url\".");
  }
}

}  // namespace authoring
