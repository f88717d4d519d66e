#include "platform/qelcore/JsonView.h"

#include <algorithm>

#include "host/qelcore/json/TextNode.h"
#include "host/qelcore/json/TypeName.h"
#include "platform/qelcore/Json.h"

namespace qelcore::json {

namespace {

const char* TypeName(TextNode::Type type) {
  switch (type) {
    case TextNode::Type::kObject:
      return "an object";
    case TextNode::Type::kArray:
      return "an array";
    case TextNode::Type::kText:
      return "a text";
    case TextNode::Type::kBoolean:
      return "a boolean";
    case TextNode::Type::kInteger:
      return "an integer";
    case TextNode::Type::kNumber:
      return "a number";
    case TextNode::Type::kNull:
      break;
  }
  return "null";
}

/// Calls `each` for every value that an array or object of a text holds.
template <typename Each>
void ForEachChild(const TextNode& parent, Each&& each) {
  const TextNode* const end = &parent + parent.mNodeCount;
  for (const TextNode* child = &parent + 1; child != end; child += child->mNodeCount) each(*child);
}

}  // namespace

TextVisitor::~TextVisitor() = default;

void View::ThrowTypeError(const std::string& what, const char* expected) const {
  static const std::any nothing;
  const char* const found =
      mNode != nullptr ? TypeName(mNode->mType) : TypeName(mValue != nullptr ? *mValue : nothing);
  throw TypeError(what + " is " + found + ", expected is " + expected + ".");
}

void View::ThrowTypeError(const char* expected) const {
  ThrowTypeError(mKey.empty() ? "The value" : '"' + std::string(mKey) + '"', expected);
}

void View::FindMembers(const std::string_view* keys, View* members, std::size_t count) const {
  if (mNode != nullptr && mNode->mType == TextNode::Type::kObject) {
    ForEachChild(*mNode, [&](const TextNode& child) {
      const std::string_view* const key = std::find(keys, keys + count, child.mKey);
      if (key != keys + count) members[key - keys].mNode = &child;
    });
  } else if (const auto* const object = mValue != nullptr ? std::any_cast<Dictionary>(mValue) : nullptr) {
    static const std::any nothing;
    for (std::size_t index = 0; index < count; ++index) {
      const auto place = object->find(keys[index]);
      if (place != object->end()) members[index].mValue = place->second ? place->second.get() : &nothing;
    }
  } else {
    ThrowTypeError("an object");
  }
  for (std::size_t index = 0; index < count; ++index) members[index].mKey = keys[index];
}

std::optional<std::string_view> View::Text() const {
  if (mNode != nullptr && mNode->mType == TextNode::Type::kText) return mNode->mText;
  if (!IsThere()) return std::nullopt;
  const auto* const text = mValue != nullptr ? std::any_cast<std::string>(mValue) : nullptr;
  if (text == nullptr) ThrowTypeError("a text");
  return *text;
}

std::optional<std::uint64_t> View::Integer() const {
  if (mNode != nullptr && mNode->mType == TextNode::Type::kInteger) return mNode->mInteger;
  if (!IsThere()) return std::nullopt;
  if (mValue != nullptr) {
    if (const auto* const value = std::any_cast<std::int64_t>(mValue))
      return static_cast<std::uint64_t>(*value);
    if (const auto* const value = std::any_cast<std::uint64_t>(mValue)) return *value;
  }
  ThrowTypeError("an integer");
}

std::optional<std::vector<View>> View::Elements() const {
  if (!IsThere()) return std::nullopt;
  std::vector<View> elements;
  if (mNode != nullptr && mNode->mType == TextNode::Type::kArray) {
    ForEachChild(*mNode, [&](const TextNode& child) { elements.emplace_back(child); });
    return elements;
  }
  const auto* const array = mValue != nullptr ? std::any_cast<Array>(mValue) : nullptr;
  if (array == nullptr) ThrowTypeError("an array");
  elements.reserve(array->size());
  for (const std::any& element : *array) elements.emplace_back(element);
  return elements;
}

std::optional<std::vector<std::string_view>> View::Texts() const {
  const bool isOtherNode = mNode != nullptr && mNode->mType != TextNode::Type::kArray;
  if (isOtherNode || (mValue != nullptr && std::any_cast<Array>(mValue) == nullptr)) {
    ThrowTypeError("an array of texts");
  }
  const std::optional<std::vector<View>> elements = Elements();
  if (!elements) return std::nullopt;
  std::vector<std::string_view> texts;
  texts.reserve(elements->size());
  for (const View& element : *elements) {
    const bool isText = element.mNode != nullptr ? element.mNode->mType == TextNode::Type::kText
                                                 : std::any_cast<std::string>(element.mValue) != nullptr;
    if (!isText) element.ThrowTypeError("An element of \"" + std::string(mKey) + '"', "a text");
    texts.push_back(*element.Text());
  }
  return texts;
}

}  // namespace qelcore::json
