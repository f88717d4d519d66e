// JSON texts, as bytes: which are taken, what becomes of them, and where the fault of the others is.
#include <algorithm>
#include <any>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <typeinfo>

#include "platform/qelcore/Json.h"
#include "platform/qelcore/JsonView.h"
#include "tests/fuzz/support/PlainJson.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
using fuzz::Require;

bool AreEqual(const std::any& left, const std::any& right);

bool AreEqual(const json::Dictionary& left, const json::Dictionary& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const auto& first, const auto& second) {
                      return first.first == second.first && AreEqual(*first.second, *second.second);
                    });
}

template <typename Value>
bool AreBothOf(const std::any& left, const std::any& right) {
  return std::any_cast<const Value&>(left) == std::any_cast<const Value&>(right);
}

bool AreEqual(const std::any& left, const std::any& right) {
  if (left.type() != right.type()) return false;
  if (left.type() == typeid(json::Dictionary)) {
    return AreEqual(std::any_cast<const json::Dictionary&>(left),
                    std::any_cast<const json::Dictionary&>(right));
  }
  if (left.type() == typeid(json::Array)) {
    const auto& first = std::any_cast<const json::Array&>(left);
    const auto& second = std::any_cast<const json::Array&>(right);
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const std::any& one, const std::any& other) { return AreEqual(one, other); });
  }
  if (left.type() == typeid(std::string)) return AreBothOf<std::string>(left, right);
  if (left.type() == typeid(std::int64_t)) return AreBothOf<std::int64_t>(left, right);
  if (left.type() == typeid(std::uint64_t)) return AreBothOf<std::uint64_t>(left, right);
  if (left.type() == typeid(double)) return AreBothOf<double>(left, right);
  if (left.type() == typeid(bool)) return AreBothOf<bool>(left, right);
  return left.type() == typeid(std::nullptr_t);
}

void CheckFault(const std::string& text, const json::ParseError& error) {
  Require(!error.mMessage.empty(), "a refusal says why");
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  Require((error.mLine == 0) == (error.mColumn == 0), "a place has a line and a column");
  Require(error.mLine <= lines && error.mColumn <= text.size() + 1, "the place lies in the text");
}

/// What the piece by piece reading of a text shows of an element must be what the parsed value has there.
bool ShowsTheSame(const json::View& view, const std::any& value) {
  if (const auto* const text = std::any_cast<std::string>(&value)) return view.Text() == *text;
  if (const auto* const number = std::any_cast<std::int64_t>(&value)) {
    return view.Integer() == static_cast<std::uint64_t>(*number);
  }
  if (const auto* const number = std::any_cast<std::uint64_t>(&value)) return view.Integer() == *number;
  if (const auto* const array = std::any_cast<json::Array>(&value)) {
    const auto elements = view.Elements();
    return elements &&
           std::equal(elements->begin(), elements->end(), array->begin(), array->end(), ShowsTheSame);
  }
  const auto* const object = std::any_cast<json::Dictionary>(&value);
  if (object == nullptr) return view.IsThere() && !view.IsObject();
  return view.IsObject() && std::all_of(object->begin(), object->end(), [&](const auto& member) {
           const auto [found] = view.Members(std::array<std::string_view, 1>{member.first});
           return ShowsTheSame(found, *member.second);
         });
}

/// Reads the text piece by piece, cut wherever it can be. It may be left to `Parse`, but never read
/// otherwise.
void CheckPieces(const std::string& text, const std::any& value) {
  const auto* const object = std::any_cast<json::Dictionary>(&value);
  std::string key = "list";
  const json::Array* array = nullptr;
  const json::Dictionary none;
  for (const auto& [name, member] : object != nullptr ? *object : none) {
    if (array = std::any_cast<json::Array>(member.get()); array == nullptr) continue;
    key = name;
    break;
  }
  for (const json::Cutting cutting : {json::Cutting::kByLines, json::Cutting::kSurely}) {
    const json::Document document(text, key, cutting, 1);
    std::size_t count = 0;
    try {
      document.VisitElements([&](const json::View& element) {
        // What is behind it need not be sound.
        if (value.has_value()) {
          Require(array != nullptr && count < array->size() && ShowsTheSame(element, (*array)[count]),
                  "an element is the same in a piece and in the whole");
        }
        ++count;
      });
    } catch (const json::LeftToParse&) {
      continue;
    }
    Require(object != nullptr, "what is read piece by piece is an object that is parsed as a whole, too");
    Require(count == (array != nullptr ? array->size() : 0), "every element is in some piece");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
  CheckPieces(text, value);
  Require(value.has_value() == fuzz::IsPlainJson(text), "what the grammar takes is taken, and nothing else");
  if (!value.has_value()) {
    CheckFault(text, error);
    return 0;
  }
  const std::string written = json::Serialise(value);
  Require(fuzz::IsPlainJson(written), "what is written is JSON");
  const std::any again = json::Parse(written);
  Require(AreEqual(again, value), "a written value reads back equal");
  Require(json::Serialise(again) == written, "a value is written in one way");
  return 0;
}
