#include <simdjson.h>
#include <utf8.h>

#include <cmath>
#include <string>
#include <string_view>

#include "host/qelcore/json/JsonNumber.h"
#include "platform/qelcore/Json.h"

namespace qelcore::json {

namespace {

void WriteValue(const std::any& value, std::string& text);

void WriteControlCharacter(char character, std::string& text) {
  switch (character) {
    case '\b':
      text += "\\b";
      return;
    case '\f':
      text += "\\f";
      return;
    case '\n':
      text += "\\n";
      return;
    case '\r':
      text += "\\r";
      return;
    case '\t':
      text += "\\t";
      return;
    default:
      constexpr std::string_view kHexDigits = "0123456789abcdef";
      text += "\\u00";
      text += kHexDigits[static_cast<std::size_t>(character) >> 4];
      text += kHexDigits[static_cast<std::size_t>(character) & 0x0F];
  }
}

bool HasToBeEscaped(char character) {
  return character == '"' || character == '\\' || (character >= 0 && character < 0x20);
}

void WriteValidString(const std::string& value, std::string& text) {
  text += '"';
  auto written = value.begin();
  for (auto place = written; place != value.end(); ++place) {
    if (!HasToBeEscaped(*place)) {
      continue;
    }
    text.append(written, place);
    written = place + 1;
    if (*place == '"' || *place == '\\') {
      text += '\\';
      text += *place;
    } else {
      WriteControlCharacter(*place, text);
    }
  }
  text.append(written, value.end());
  text += '"';
}

void WriteString(const std::string& value, std::string& text) {
  if (simdjson::validate_utf8(value)) {
    WriteValidString(value, text);
  } else {
    WriteValidString(utf8::replace_invalid(value), text);
  }
}

void WriteObject(const Dictionary& object, std::string& text) {
  char separator = '{';
  for (const auto& [key, value] : object) {
    text += separator;
    separator = ',';
    WriteString(key, text);
    text += ':';
    WriteValue(value ? *value : std::any(), text);
  }
  text += object.empty() ? "{}" : "}";
}

void WriteArray(const Array& array, std::string& text) {
  char separator = '[';
  for (const std::any& value : array) {
    text += separator;
    separator = ',';
    WriteValue(value, text);
  }
  text += array.empty() ? "[]" : "]";
}

void WriteDouble(double value, std::string& text) {
  if (!std::isfinite(value)) {
    throw TypeError("JSON has no form for a number that is not finite.");
  }
  text += WriteNumber(value);
}

void WriteValue(const std::any& value, std::string& text) {
  if (const auto* string = std::any_cast<std::string>(&value)) {
    WriteString(*string, text);
  } else if (const auto* object = std::any_cast<Dictionary>(&value)) {
    WriteObject(*object, text);
  } else if (const auto* array = std::any_cast<Array>(&value)) {
    WriteArray(*array, text);
  } else if (const auto* integer = std::any_cast<std::int64_t>(&value)) {
    text += std::to_string(*integer);
  } else if (const auto* largeInteger = std::any_cast<std::uint64_t>(&value)) {
    text += std::to_string(*largeInteger);
  } else if (const auto* boolean = std::any_cast<bool>(&value)) {
    text += *boolean ? "true" : "false";
  } else if (const auto* number = std::any_cast<double>(&value)) {
    WriteDouble(*number, text);
  } else if (std::any_cast<std::nullptr_t>(&value) != nullptr) {
    text += "null";
  } else {
    throw TypeError(value.has_value() ? "JSON has no form for a value of this type."
                                      : "JSON has no form for an empty value.");
  }
}

}  // namespace

std::string Serialise(const std::any& value) {
  std::string text;
  WriteValue(value, text);
  return text;
}

}  // namespace qelcore::json
