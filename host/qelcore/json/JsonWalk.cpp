#include <simdjson.h>

#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "host/qelcore/json/JsonNumber.h"
#include "host/qelcore/json/JsonText.h"
#include "host/qelcore/json/TextNode.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/JsonView.h"

namespace qelcore::json {

namespace {

namespace ondemand = simdjson::ondemand;

/// A string as it stands in the text, from behind its opening quotation mark; nothing when it holds escapes.
/// The parser has made sure that the string ends.
std::optional<std::string_view> PlainString(const char* begin, const char* textEnd) {
  const auto room = static_cast<std::size_t>(textEnd - begin);
  const auto* const end = static_cast<const char*>(std::memchr(begin, '"', room));
  if (end == nullptr) return std::nullopt;
  const auto length = static_cast<std::size_t>(end - begin);
  if (std::memchr(begin, '\\', length) != nullptr) return std::nullopt;
  return std::string_view(begin, length);
}

/// Walks the parser's tokens. Every token is looked at, as `Parse` does, so that both accept the same texts.
class Walk {
 public:
  Walk(simdjson::padded_string_view text, std::string_view arrayKey, TextVisitor& visitor)
      : mText(text), mTextEnd(text.data() + text.size()), mArrayKey(arrayKey), mVisitor(visitor) {}

  bool ThroughObject() {
    ondemand::document document;
    ondemand::object members;
    if (mParser.iterate(mText).get(document) != simdjson::SUCCESS ||
        document.get_object().get(members) != simdjson::SUCCESS) {
      return false;
    }
    for (auto next : members) {
      ondemand::field field;
      std::string_view key;
      if (std::move(next).get(field) != simdjson::SUCCESS || !ReadKey(field, key)) return false;
      if (!ShowMember(key, field.value())) return false;
    }
    const char* place = nullptr;
    return document.current_location().get(place) == simdjson::OUT_OF_BOUNDS;
  }

 private:
  bool ShowMember(std::string_view key, ondemand::value value) {
    ondemand::json_type type{};
    if (value.type().get(type) != simdjson::SUCCESS) return false;
    if (key == mArrayKey && type == ondemand::json_type::array) return ShowElements(value);
    mNodes.clear();
    return Read(value, 1, {}) && mVisitor.OnMember(key, View(mNodes.front()));
  }

  bool ShowElements(ondemand::value value) {
    ondemand::array elements;
    std::size_t count = 0;
    if (value.get_array().get(elements) != simdjson::SUCCESS ||
        elements.count_elements().get(count) != simdjson::SUCCESS) {
      return false;
    }
    if (++mValueCount + count > kMostValues || !mVisitor.OnArray(count)) return false;
    for (auto next : elements) {
      ondemand::value element;
      mNodes.clear();
      if (std::move(next).get(element) != simdjson::SUCCESS || !Read(element, 2, {}) ||
          !mVisitor.OnElement(View(mNodes.front()))) {
        return false;
      }
    }
    return true;
  }

  /// Appends the nodes of a value, which stands inside so many arrays and objects.
  bool Read(ondemand::value value, int level, std::string_view key) {
    if (++mValueCount > kMostValues) return false;
    const std::size_t place = mNodes.size();
    mNodes.emplace_back().mKey = key;
    ondemand::json_type type{};
    if (value.type().get(type) != simdjson::SUCCESS) return false;
    bool isRead = false;
    switch (type) {
      case ondemand::json_type::object:
        mNodes[place].mType = TextNode::Type::kObject;
        isRead = ReadMembers(value, level + 1);
        break;
      case ondemand::json_type::array:
        mNodes[place].mType = TextNode::Type::kArray;
        isRead = ReadElements(value, level + 1);
        break;
      case ondemand::json_type::string:
        mNodes[place].mType = TextNode::Type::kText;
        isRead = ReadString(value, mNodes[place].mText);
        break;
      default:
        isRead = ReadAtom(type, Trim(value.raw_json_token()), mNodes[place]);
    }
    mNodes[place].mNodeCount = mNodes.size() - place;
    return isRead;
  }

  bool ReadMembers(ondemand::value& value, int level) {
    ondemand::object members;
    if (level > kDeepestLevel || value.get_object().get(members) != simdjson::SUCCESS) return false;
    for (auto next : members) {
      ondemand::field field;
      std::string_view key;
      if (std::move(next).get(field) != simdjson::SUCCESS || !ReadKey(field, key)) return false;
      if (!Read(field.value(), level, key)) return false;
    }
    return true;
  }

  bool ReadElements(ondemand::value& value, int level) {
    ondemand::array elements;
    if (level > kDeepestLevel || value.get_array().get(elements) != simdjson::SUCCESS) return false;
    for (auto next : elements) {
      ondemand::value element;
      if (std::move(next).get(element) != simdjson::SUCCESS || !Read(element, level, {})) return false;
    }
    return true;
  }

  bool ReadKey(ondemand::field& field, std::string_view& key) const {
    if (const auto plain = PlainString(field.key().raw(), mTextEnd)) {
      key = *plain;
      return true;
    }
    return field.unescaped_key().get(key) == simdjson::SUCCESS;
  }

  bool ReadString(ondemand::value& value, std::string_view& text) const {
    if (const auto plain = PlainString(value.raw_json_token().data() + 1, mTextEnd)) {
      text = *plain;
      ondemand::raw_json_string passedOver;
      return value.get_raw_json_string().get(passedOver) == simdjson::SUCCESS;
    }
    return value.get_string().get(text) == simdjson::SUCCESS;
  }

  static bool ReadAtom(ondemand::json_type type, std::string_view token, TextNode& node) {
    if (type == ondemand::json_type::number) {
      const std::any number = ReadNumber(token);
      node.mType = TextNode::Type::kInteger;
      if (const auto* const integer = std::any_cast<std::int64_t>(&number)) {
        node.mInteger = static_cast<std::uint64_t>(*integer);
      } else if (const auto* const large = std::any_cast<std::uint64_t>(&number)) {
        node.mInteger = *large;
      } else {
        node.mType = TextNode::Type::kNumber;
      }
      return number.has_value();
    }
    node.mType = token == "null" ? TextNode::Type::kNull : TextNode::Type::kBoolean;
    return token == "null" || token == "true" || token == "false";
  }

  simdjson::padded_string_view mText;
  const char* mTextEnd;
  std::string_view mArrayKey;
  TextVisitor& mVisitor;
  ondemand::parser mParser;
  std::size_t mValueCount = 1;   ///< the whole text's value is the first
  std::vector<TextNode> mNodes;  ///< of the value that is shown
};

}  // namespace

bool WalkThroughObject(const std::string& text, std::string_view arrayKey, TextVisitor& visitor) {
  const std::string_view content = WithoutByteOrderMark(text);
  if (content.size() > kLongestText) return false;
  const std::size_t room = text.capacity() - text.size();
  if (room >= simdjson::SIMDJSON_PADDING) {
    const simdjson::padded_string_view inPlace(content.data(), content.size(), content.size() + room);
    return Walk(inPlace, arrayKey, visitor).ThroughObject();
  }
  const simdjson::padded_string copy(content);
  return Walk(copy, arrayKey, visitor).ThroughObject();
}

}  // namespace qelcore::json
