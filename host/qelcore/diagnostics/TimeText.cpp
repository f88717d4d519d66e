#include "host/qelcore/diagnostics/TimeText.h"

#include <string_view>

namespace qelcore::host {

namespace {

/// Appends a number with leading zeros, and what follows it.
template <typename Number>
void Append(std::string& text, Number number, std::size_t digits, std::string_view following) {
  const std::string plain = std::to_string(number);
  if (plain.size() < digits) {
    text.append(digits - plain.size(), '0');
  }
  text += plain;
  text += following;
}

}  // namespace

std::string TimeText(std::chrono::system_clock::time_point time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::milliseconds>(time - day));
  std::string text;
  Append(text, static_cast<int>(date.year()), 4, "-");
  Append(text, static_cast<unsigned>(date.month()), 2, "-");
  Append(text, static_cast<unsigned>(date.day()), 2, "T");
  Append(text, clock.hours().count(), 2, ":");
  Append(text, clock.minutes().count(), 2, ":");
  Append(text, clock.seconds().count(), 2, ".");
  Append(text, clock.subseconds().count(), 3, "Z");
  return text;
}

}  // namespace qelcore::host
