#include "platform/qelcore/JsonView.h"

#include <simdjson.h>

#include <algorithm>
#include <bit>

#include "host/qelcore/json/TypeName.h"
#include "platform/qelcore/Json.h"

namespace qelcore::json {

namespace {

namespace dom = simdjson::dom;

const char* TypeName(dom::element_type type) {
  switch (type) {
    case dom::element_type::OBJECT:
      return "an object";
    case dom::element_type::ARRAY:
      return "an array";
    case dom::element_type::STRING:
      return "a text";
    case dom::element_type::BOOL:
      return "a boolean";
    case dom::element_type::INT64:
    case dom::element_type::UINT64:
      return "an integer";
    case dom::element_type::DOUBLE:
      return "a number";
    case dom::element_type::NULL_VALUE:
      break;
  }
  return "null";
}

/// The value of a document at a place; nothing when the view is not of a document, or of another type.
template <typename Value, typename Place>
std::optional<Value> Read(const Place& place) {
  Value value{};
  if (place.mDocument == nullptr || std::bit_cast<dom::element>(place).get(value) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  return value;
}

/// The value in memory, when it is of this type.
template <typename Value>
const Value* Read(const std::any* value) {
  return value != nullptr ? std::any_cast<Value>(value) : nullptr;
}

}  // namespace

const char* View::Type() const {
  static const std::any nothing;
  return mPlace.mDocument != nullptr ? TypeName(std::bit_cast<dom::element>(mPlace).type())
                                     : TypeName(mValue != nullptr ? *mValue : nothing);
}

bool View::IsObject() const {
  return mPlace.mDocument != nullptr ? std::bit_cast<dom::element>(mPlace).is_object()
                                     : Read<Dictionary>(mValue) != nullptr;
}

void View::ThrowTypeError(const std::string& what, const char* expected) const {
  throw TypeError(what + " is " + Type() + ", expected is " + expected + ".");
}

void View::ThrowTypeError(const char* expected) const {
  ThrowTypeError(mKey.empty() ? "The value" : '"' + std::string(mKey) + '"', expected);
}

void View::FindMembers(const std::string_view* keys, View* members, std::size_t count) const {
  if (const auto fields = Read<dom::object>(mPlace)) {
    // Most documents are sorted by their keys, and callers ask in that order.
    std::size_t likely = 0;
    for (const auto& field : *fields) {
      const std::string_view key = field.key;
      std::size_t index = likely;
      std::size_t left = count;
      while (left > 0 && keys[index] != key) {
        index = index + 1 < count ? index + 1 : 0;
        --left;
      }
      if (left == 0) continue;
      members[index].mPlace = std::bit_cast<Place>(field.value);
      members[index].mKey = keys[index];
      likely = index + 1 < count ? index + 1 : 0;
    }
  } else if (const auto* const object = Read<Dictionary>(mValue)) {
    static const std::any nothing;
    for (std::size_t index = 0; index < count; ++index) {
      const auto member = object->find(keys[index]);
      if (member == object->end()) continue;
      members[index].mValue = member->second ? member->second.get() : &nothing;
      members[index].mKey = keys[index];
    }
  } else {
    ThrowTypeError("an object");
  }
}

std::optional<std::string_view> View::Text() const {
  if (!IsThere()) return std::nullopt;
  if (const auto text = Read<std::string_view>(mPlace)) return text;
  if (const auto* const text = Read<std::string>(mValue)) return *text;
  ThrowTypeError("a text");
}

std::optional<std::uint64_t> View::Integer() const {
  if (!IsThere()) return std::nullopt;
  if (const auto value = Read<std::int64_t>(mPlace)) return static_cast<std::uint64_t>(*value);
  if (const auto value = Read<std::uint64_t>(mPlace)) return value;
  if (const auto* const value = Read<std::int64_t>(mValue)) return static_cast<std::uint64_t>(*value);
  if (const auto* const value = Read<std::uint64_t>(mValue)) return *value;
  ThrowTypeError("an integer");
}

std::optional<std::vector<View>> View::Elements() const {
  if (!IsThere()) return std::nullopt;
  std::vector<View> views;
  if (const auto elements = Read<dom::array>(mPlace)) {
    views.reserve(elements->size());
    for (const dom::element element : *elements) {
      views.push_back(View(std::bit_cast<Place>(element)));
    }
  } else if (const auto* const array = Read<Array>(mValue)) {
    views.reserve(array->size());
    for (const std::any& element : *array) views.emplace_back(element);
  } else {
    ThrowTypeError("an array");
  }
  return views;
}

std::optional<std::vector<std::string_view>> View::Texts() const {
  if (!IsThere()) return std::nullopt;
  std::vector<std::string_view> texts;
  const auto append = [&](const View& element) {
    if (const auto text = Read<std::string_view>(element.mPlace)) {
      texts.push_back(*text);
    } else if (const auto* const string = Read<std::string>(element.mValue)) {
      texts.push_back(*string);
    } else {
      element.ThrowTypeError("An element of \"" + std::string(mKey) + '"', "a text");
    }
  };
  if (const auto elements = Read<dom::array>(mPlace)) {
    texts.reserve(elements->size());
    for (const dom::element element : *elements) append(View(std::bit_cast<Place>(element)));
  } else if (const auto* const array = Read<Array>(mValue)) {
    texts.reserve(array->size());
    for (const std::any& element : *array) append(View(element));
  } else {
    ThrowTypeError("an array of texts");
  }
  return texts;
}

}  // namespace qelcore::json
