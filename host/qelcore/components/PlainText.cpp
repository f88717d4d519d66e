#include "host/qelcore/components/PlainText.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "platform/qelcore/Text.h"

namespace qelcore::host::components {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::string_view kDigits = "0123456789";
constexpr std::size_t kLongestText = 256;

bool IsControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

/// Takes the run of digits that `text` begins with off it, and returns the run without leading zeros.
std::string_view TakeDigits(std::string_view& text) {
  std::string_view run = text.substr(0, text.find_first_not_of(kDigits));
  text.remove_prefix(run.size());
  const std::size_t firstSignificant = run.find_first_not_of('0');
  run.remove_prefix(firstSignificant == std::string_view::npos ? run.size() : firstSignificant);
  return run;
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string CleanText(std::string_view bytes) {
  // Four bytes make at most one or two units, so that more than this many bytes cannot matter.
  const std::string_view kept = Trim(bytes.substr(0, bytes.find('\0'))).substr(0, 4 * kLongestText);
  std::u16string units = string::UTF8to16(kept);
  for (char16_t& unit : units) {
    if (IsControl(unit)) unit = u' ';
  }
  if (units.size() > kLongestText) {
    const char16_t last = units[kLongestText - 1];
    const bool splitsPair = last >= 0xD800 && last <= 0xDBFF;
    units.resize(splitsPair ? kLongestText - 1 : kLongestText);
  }
  const std::string text = string::UTF16to8(units);
  return std::string(Trim(text));
}

std::optional<std::uint32_t> ParseHexadecimal(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  return ParseNumber<std::uint32_t>(text, 16);
}

std::optional<std::uint64_t> ParseDecimal(std::string_view text) {
  return ParseNumber<std::uint64_t>(text, 10);
}

std::string FourHexadecimalDigits(std::uint32_t number) {
  std::array<char, 8> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  const std::string text(digits.data(), result.ptr);
  return text.size() < 4 ? std::string(4 - text.size(), '0') + text : text;
}

bool NaturalLess(std::string_view left, std::string_view right) {
  const std::string_view wholeLeft = left;
  const std::string_view wholeRight = right;
  while (!left.empty() && !right.empty()) {
    if (IsDigit(left.front()) && IsDigit(right.front())) {
      const std::string_view leftRun = TakeDigits(left);
      const std::string_view rightRun = TakeDigits(right);
      if (leftRun.size() != rightRun.size()) return leftRun.size() < rightRun.size();
      if (leftRun != rightRun) return leftRun < rightRun;
    } else {
      if (left.front() != right.front()) return left.front() < right.front();
      left.remove_prefix(1);
      right.remove_prefix(1);
    }
  }
  if (left.empty() != right.empty()) return left.empty();
  // Texts that differ in leading zeros only still need an order.
  return wholeLeft < wholeRight;
}

void ForEachLine(std::string_view text, const std::function<bool(std::string_view line)>& see) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (!see(text.substr(0, end)) || end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace qelcore::host::components
