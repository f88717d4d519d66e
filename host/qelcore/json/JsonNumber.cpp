#include "host/qelcore/json/JsonNumber.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <system_error>

namespace qelcore::json {

namespace {

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// The parts of a number's text.
struct Parts {
  bool mIsNegative = false;
  std::string_view mWhole;
  std::string_view mFraction;
  std::string_view mExponent;  ///< with its sign
  bool mIsInteger = true;      ///< neither point nor exponent
};

/// Takes the run of digits at the beginning of `text`.
std::string_view TakeDigits(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && IsDigit(text[length])) {
    ++length;
  }
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

bool TakeOne(std::string_view& text, std::string_view anyOf) {
  if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

std::optional<Parts> Split(std::string_view text) {
  Parts parts;
  parts.mIsNegative = TakeOne(text, "-");
  parts.mWhole = TakeDigits(text);
  if (parts.mWhole.empty() || (parts.mWhole.size() > 1 && parts.mWhole.front() == '0')) {
    return std::nullopt;
  }
  if (TakeOne(text, ".")) {
    parts.mIsInteger = false;
    parts.mFraction = TakeDigits(text);
    if (parts.mFraction.empty()) {
      return std::nullopt;
    }
  }
  const std::string_view exponentText = text;
  if (TakeOne(text, "eE")) {
    parts.mIsInteger = false;
    TakeOne(text, "+-");
    if (TakeDigits(text).empty()) {
      return std::nullopt;
    }
    parts.mExponent = exponentText.substr(1);
  }
  return text.empty() ? std::optional(parts) : std::nullopt;
}

template <typename Integer>
std::optional<Integer> ReadInteger(std::string_view text) {
  Integer value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() ? std::optional(value) : std::nullopt;
}

/// The power of ten of the first digit that is not 0, bounded; for a number whose digits are all 0, a low
/// one.
std::int64_t Magnitude(const Parts& parts) {
  constexpr std::int64_t kBound = 1'000'000'000'000'000'000;
  std::int64_t exponent = 0;
  if (!parts.mExponent.empty()) {
    std::string_view text = parts.mExponent;
    const bool isNegative = text.front() == '-';
    TakeOne(text, "+-");
    exponent = ReadInteger<std::int64_t>(text).value_or(kBound);
    exponent = isNegative ? -exponent : exponent;
  }
  const std::size_t inWhole = parts.mWhole.find_first_not_of('0');
  if (inWhole != std::string_view::npos) {
    return exponent + static_cast<std::int64_t>(parts.mWhole.size() - inWhole);
  }
  const std::size_t inFraction = parts.mFraction.find_first_not_of('0');
  if (inFraction != std::string_view::npos) {
    return exponent - static_cast<std::int64_t>(inFraction);
  }
  return -kBound;
}

std::any ReadDouble(std::string_view text, const Parts& parts) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc()) {
    return value;
  }
  // The conversion says "out of range" for both ends of the range; at the lower one the nearest is zero.
  if (error == std::errc::result_out_of_range && Magnitude(parts) < 0) {
    return parts.mIsNegative ? -0.0 : 0.0;
  }
  return {};
}

}  // namespace

std::any ReadNumber(std::string_view text) {
  const std::optional<Parts> parts = Split(text);
  if (!parts) {
    return {};
  }
  if (parts->mIsInteger) {
    if (const std::optional<std::int64_t> value = ReadInteger<std::int64_t>(text)) {
      return *value;
    }
    if (!parts->mIsNegative) {
      if (const std::optional<std::uint64_t> value = ReadInteger<std::uint64_t>(text)) {
        return *value;
      }
    }
  }
  return ReadDouble(text, *parts);
}

std::string WriteNumber(double value) {
  // The longest shortest form has 24 characters: "-2.2250738585072014e-308".
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string text(buffer.data(), end);
  if (text.find_first_of(".e") == std::string::npos) {
    text += ".0";
  }
  return text;
}

}  // namespace qelcore::json
