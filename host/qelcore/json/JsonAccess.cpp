#include "platform/qelcore/Json.h"

#include <utility>

#include "host/qelcore/json/TypeName.h"

namespace qelcore::json {

namespace {

[[noreturn]] void ThrowTypeError(std::string_view what, const std::any& value, const char* expected) {
  throw TypeError(std::string(what) + " is " + TypeName(value) + ", expected is " + expected + ".");
}

std::string Quoted(std::string_view key) {
  return '"' + std::string(key) + '"';
}

/// The member's value, or null when the object lacks the key.
const std::any* FindMember(const Dictionary& object, std::string_view key) {
  static const std::any nothing;
  const auto place = object.find(key);
  if (place == object.end()) {
    return nullptr;
  }
  return place->second ? place->second.get() : &nothing;
}

template <typename Value>
const Value* FindTyped(const Dictionary& object, std::string_view key, const char* expected) {
  const std::any* const member = FindMember(object, key);
  if (member == nullptr) {
    return nullptr;
  }
  const auto* const value = std::any_cast<Value>(member);
  if (value == nullptr) {
    ThrowTypeError(Quoted(key), *member, expected);
  }
  return value;
}

}  // namespace

const char* TypeName(const std::any& value) {
  if (std::any_cast<Dictionary>(&value) != nullptr) {
    return "an object";
  }
  if (std::any_cast<Array>(&value) != nullptr) {
    return "an array";
  }
  if (std::any_cast<std::string>(&value) != nullptr) {
    return "a text";
  }
  if (std::any_cast<bool>(&value) != nullptr) {
    return "a boolean";
  }
  if (std::any_cast<std::int64_t>(&value) != nullptr || std::any_cast<std::uint64_t>(&value) != nullptr) {
    return "an integer";
  }
  if (std::any_cast<double>(&value) != nullptr) {
    return "a number";
  }
  if (std::any_cast<std::nullptr_t>(&value) != nullptr) {
    return "null";
  }
  return value.has_value() ? "no JSON value" : "nothing";
}

TypeError::TypeError(const std::string& message) : std::runtime_error(message) {}

TypeError::~TypeError() = default;

const Dictionary& AsDictionary(const std::any& value) {
  const auto* const object = std::any_cast<Dictionary>(&value);
  if (object == nullptr) {
    ThrowTypeError("The value", value, "an object");
  }
  return *object;
}

bool Has(const Dictionary& object, std::string_view key) {
  return object.find(key) != object.end();
}

const std::string* FindText(const Dictionary& object, std::string_view key) {
  return FindTyped<std::string>(object, key, "a text");
}

const Array* FindArray(const Dictionary& object, std::string_view key) {
  return FindTyped<Array>(object, key, "an array");
}

const Dictionary* FindDictionary(const Dictionary& object, std::string_view key) {
  return FindTyped<Dictionary>(object, key, "an object");
}

std::optional<bool> FindBool(const Dictionary& object, std::string_view key) {
  const bool* const value = FindTyped<bool>(object, key, "a boolean");
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<std::uint64_t> FindInteger(const Dictionary& object, std::string_view key) {
  const std::any* const member = FindMember(object, key);
  if (member == nullptr) {
    return std::nullopt;
  }
  if (const auto* const value = std::any_cast<std::int64_t>(member)) {
    return static_cast<std::uint64_t>(*value);
  }
  if (const auto* const value = std::any_cast<std::uint64_t>(member)) {
    return *value;
  }
  ThrowTypeError(Quoted(key), *member, "an integer");
}

std::optional<std::vector<std::string>> FindTexts(const Dictionary& object, std::string_view key) {
  const Array* const array = FindTyped<Array>(object, key, "an array of texts");
  if (array == nullptr) {
    return std::nullopt;
  }
  std::vector<std::string> texts;
  texts.reserve(array->size());
  for (const std::any& element : *array) {
    const auto* const text = std::any_cast<std::string>(&element);
    if (text == nullptr) {
      ThrowTypeError("An element of " + Quoted(key), element, "a text");
    }
    texts.push_back(*text);
  }
  return texts;
}

void Set(Dictionary& object, std::string_view key, std::any value) {
  object.insert_or_assign(std::string(key), std::make_shared<std::any>(std::move(value)));
}

}  // namespace qelcore::json
