#include "authoring/json/JsonTree.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace authoring {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void AppendAsUTF8(std::uint32_t character, std::string& text) {
  const auto append = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

/// Walks a sound text. It never reads beyond the end, whatever the text, but the tree of a text that is not
/// sound means nothing.
class TreeReader {
 public:
  explicit TreeReader(std::string_view text) : mText(text) {
    if (text.starts_with(kByteOrderMark)) mPlace = kByteOrderMark.size();
  }

  JsonNode ReadValue() {
    SkipWhiteSpace();
    JsonNode node;
    node.mOffset = mPlace;
    switch (Peek()) {
      case '{':
        ReadObject(node);
        break;
      case '[':
        ReadArray(node);
        break;
      case '"':
        node.mKind = JsonKind::kText;
        node.mText = ReadText();
        break;
      default:
        ReadAtom(node);
    }
    return node;
  }

 private:
  [[nodiscard]] char Peek() const { return mPlace < mText.size() ? mText[mPlace] : '\0'; }

  void SkipWhiteSpace() { mPlace = std::min(mText.find_first_not_of(" \t\n\r", mPlace), mText.size()); }

  /// Steps over a comma; false at the closing bracket or at the end, which it steps over too.
  bool HasNext(char closing) {
    SkipWhiteSpace();
    if (Peek() == ',') ++mPlace;
    SkipWhiteSpace();
    if (Peek() != closing && mPlace < mText.size()) return true;
    ++mPlace;
    return false;
  }

  void ReadObject(JsonNode& node) {
    node.mKind = JsonKind::kObject;
    ++mPlace;
    while (HasNext('}')) {
      JsonMember member;
      member.mKeyOffset = mPlace;
      member.mKey = ReadText();
      SkipWhiteSpace();
      if (Peek() == ':') ++mPlace;
      member.mValue = ReadValue();
      node.mMembers.push_back(std::move(member));
    }
  }

  void ReadArray(JsonNode& node) {
    node.mKind = JsonKind::kArray;
    ++mPlace;
    while (HasNext(']')) node.mElements.push_back(ReadValue());
  }

  void ReadAtom(JsonNode& node) {
    const std::size_t end = std::min(mText.find_first_of(" \t\n\r,]}", mPlace), mText.size());
    const std::string_view token = mText.substr(mPlace, end - mPlace);
    mPlace = std::max(end, mPlace + 1);
    if (token == "true" || token == "false") {
      node.mKind = JsonKind::kBoolean;
    } else if (token != "null") {
      node.mKind = ReadInteger(token, node.mInteger) ? JsonKind::kInteger : JsonKind::kNumber;
    }
  }

  static bool ReadInteger(std::string_view token, std::uint64_t& integer) {
    const char* const end = token.data() + token.size();
    std::int64_t small = 0;
    if (const auto result = std::from_chars(token.data(), end, small);
        result.ec == std::errc() && result.ptr == end) {
      integer = static_cast<std::uint64_t>(small);
      return true;
    }
    const auto result = std::from_chars(token.data(), end, integer);
    return result.ec == std::errc() && result.ptr == end;
  }

  std::string ReadText() {
    std::string text;
    ++mPlace;
    while (mPlace < mText.size() && Peek() != '"') {
      if (Peek() == '\\') {
        ReadEscape(text);
      } else {
        text += mText[mPlace++];
      }
    }
    ++mPlace;
    return text;
  }

  void ReadEscape(std::string& text) {
    constexpr std::string_view kSigns = "bfnrt";
    constexpr std::string_view kCharacters = "\b\f\n\r\t";
    ++mPlace;
    const char sign = Peek();
    ++mPlace;
    if (sign == 'u') {
      std::uint32_t character = ReadFourDigits();
      if (character >= 0xD800 && character < 0xDC00 &&
          mText.substr(std::min(mPlace, mText.size())).starts_with("\\u")) {
        mPlace += 2;
        character = 0x10000 + ((character - 0xD800) << 10) + (ReadFourDigits() - 0xDC00);
      }
      AppendAsUTF8(character, text);
      return;
    }
    const std::size_t index = kSigns.find(sign);
    text += index == std::string_view::npos ? sign : kCharacters[index];
  }

  std::uint32_t ReadFourDigits() {
    std::uint32_t value = 0;
    const std::string_view digits = mText.substr(std::min(mPlace, mText.size()), 4);
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    mPlace += 4;
    return value;
  }

  std::string_view mText;
  std::size_t mPlace = 0;
};

}  // namespace

const char* Describe(JsonKind kind) {
  switch (kind) {
    case JsonKind::kNull:
      return "null";
    case JsonKind::kBoolean:
      return "a boolean";
    case JsonKind::kInteger:
      return "an integer";
    case JsonKind::kNumber:
      return "a number with a point or an exponent, or too large";
    case JsonKind::kText:
      return "a text";
    case JsonKind::kArray:
      return "an array";
    case JsonKind::kObject:
      break;
  }
  return "an object";
}

const JsonMember* JsonNode::FindMember(std::string_view key) const {
  const auto found = std::find_if(mMembers.rbegin(), mMembers.rend(),
                                  [&](const JsonMember& member) { return member.mKey == key; });
  return found == mMembers.rend() ? nullptr : &*found;
}

const JsonNode* JsonNode::Find(std::string_view key) const {
  const JsonMember* const member = FindMember(key);
  return member == nullptr ? nullptr : &member->mValue;
}

const std::string* JsonNode::FindText(std::string_view key) const {
  const JsonNode* const value = Find(key);
  return value == nullptr || !value->Is(JsonKind::kText) ? nullptr : &value->mText;
}

JsonNode ReadJsonTree(std::string_view text) {
  return TreeReader(text).ReadValue();
}

}  // namespace authoring
