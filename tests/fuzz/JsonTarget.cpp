// JSON texts, as bytes: which are taken, what becomes of them, and where the fault of the others is.
#include <algorithm>
#include <any>
#include <cstddef>
#include <cstdint>
#include <string>
#include <typeinfo>

#include "platform/qelcore/Json.h"
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
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
