#include "authoring/model/Document.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;

namespace {

constexpr std::size_t kMostFindings = 10'000;

/// The backslash of the first escape that JSON does not know, in the string that begins here; nothing when no
/// string begins here or all its escapes are known.
std::optional<std::size_t> FindUnknownEscape(std::string_view text, std::size_t begin) {
  if (begin >= text.size() || text[begin] != '"') return std::nullopt;
  for (std::size_t index = begin + 1; index + 1 < text.size() && text[index] != '"'; ++index) {
    if (text[index] != '\\') continue;
    const char letter = text[index + 1];
    constexpr std::string_view kHexadecimal = "0123456789abcdefABCDEF";
    const bool isNumber =
        letter == 'u' && text.substr(index + 2, 4).find_first_not_of(kHexadecimal) == std::string_view::npos;
    if (!isNumber && std::string_view("\"\\/bfnrt").find(letter) == std::string_view::npos) return index;
    ++index;
  }
  return std::nullopt;
}

}  // namespace

Document::Document(std::string path, std::string text)
    : mPath(std::move(path)), mText(std::move(text)), mPlaces(mText) {
  json::ParseError error;
  mValue = json::Parse(mText, &error);
  if (!mValue.has_value()) {
    AddNotJson(error);
    return;
  }
  JsonNode root = ReadJsonTree(mText);
  if (!root.Is(JsonKind::kObject)) {
    Add(Code::kNotAnObject, root.mOffset,
        std::string("the document is ") + Describe(root.mKind) + ", not an object",
        "Nothing is read of the list. Put the rules into {\"blocklist_version\": 1, \"blocklist\": [...]}.");
    return;
  }
  mRoot = std::move(root);
  ReadDefaults();
}

void Document::AddNotJson(const json::ParseError& error) {
  const auto offset = mPlaces.OffsetOf(error.mLine, error.mColumn);
  constexpr std::size_t kNone = std::string::npos;
  const std::size_t escape = offset ? FindUnknownEscape(mText, *offset).value_or(kNone) : kNone;
  std::string mend = "Nothing is read of the list. ";
  if (escape != kNone) {
    const bool isLetter = static_cast<unsigned char>(mText[escape + 1]) < 0x80;
    const std::string written = mText.substr(escape, isLetter ? 2 : 1);
    mend += "A backslash that stands for itself is written twice in JSON: \"\\" + written +
            "\" instead of \"" + written + "\".";
  } else {
    mend +=
        "Look at the end of what stands before this place: a comma, a quotation mark or a bracket may be "
        "missing or one too many.";
  }
  Add(Code::kNotJson, 0,
      "the file is not JSON: " + error.mMessage.substr(0, error.mMessage.find_last_not_of('.') + 1),
      std::move(mend));
  mFindings.back().mPlace = offset ? mPlaces.At(escape != kNone ? escape : *offset) : Place{};
}

void Document::ReadDefaults() {
  const JsonNode* const entries = mRoot->Find("default_info");
  if (entries == nullptr) return;
  const auto read = [](const JsonNode& entry, std::string_view key) {
    const std::string* const text = entry.FindText(key);
    return text == nullptr ? std::string() : *text;
  };
  for (std::size_t kind = 0; kind < mDefaults.size(); ++kind) {
    const JsonNode* const entry = entries->Find(
        qelcore::utility::ComponentTypeToString(OSComponentType{static_cast<std::int32_t>(kind)}));
    if (entry != nullptr) mDefaults[kind] = {read(*entry, "info_message"), read(*entry, "info_url")};
  }
}

bool Document::HasReadableRules() const {
  return std::all_of(mRules.begin(), mRules.end(), [](const RuleElement& rule) { return rule.mIsReadable; });
}

const std::any& Document::RuleValue(std::size_t index) const {
  return json::FindArray(json::AsDictionary(mValue), "blocklist")->at(index);
}

void Document::Add(Code code, std::size_t offset, std::string what, std::string mend) {
  Add(std::nullopt, code, offset, std::move(what), std::move(mend));
}

void Document::AddToRule(std::size_t rule, Code code, std::size_t offset, std::string what,
                         std::string mend) {
  Add(rule, code, offset, std::move(what), std::move(mend));
}

void Document::Add(std::optional<std::size_t> rule, Code code, std::size_t offset, std::string what,
                   std::string mend) {
  // The first error is told of in any case: it decides whether the list is fit for use.
  const bool isFirstError = DescriptionOf(code).mSeverity == Severity::kError && !mHasErrors;
  mHasErrors |= isFirstError;
  if (mFindings.size() >= kMostFindings && !isFirstError) {
    ++mUntold;
    return;
  }
  mFindings.push_back({code, mPath, mPlaces.At(offset), rule, {}, std::move(what), std::move(mend)});
}

Findings Document::SortedFindings() const {
  Findings sorted = mFindings;
  // Those of the form are made before there are rules.
  for (Finding& finding : sorted) {
    if (finding.mRule && *finding.mRule < mRules.size()) finding.mRuleName = mRules[*finding.mRule].mName;
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Finding& left, const Finding& right) { return left.mPlace < right.mPlace; });
  if (mUntold > 0) {
    sorted.push_back({Code::kTooManyFindings,
                      mPath,
                      mPlaces.At(0),
                      std::nullopt,
                      {},
                      std::to_string(mUntold) + " more findings are not told",
                      "Mend these first."});
  }
  return sorted;
}

}  // namespace authoring
