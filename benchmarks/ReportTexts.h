// The English texts of the text report, for the programs that write it on their own.
#pragma once

#include <string_view>

#include "platform/qelcore/Components.h"

namespace benchmarks {

inline constexpr std::string_view kHeading = "System Components:\n\n";
inline constexpr std::string_view kVersionPrefix = " v.";
inline constexpr std::string_view kValueSeparator = " : ";
inline constexpr std::string_view kIssuesLabel = "ISSUES:\n";
inline constexpr std::string_view kURL = "URL:";
inline constexpr std::string_view kID = "ID:";
inline constexpr std::string_view kDebugSettings =
    "    Debug database settings:\n        All settings default value\n";

[[nodiscard]] constexpr std::string_view LabelOf(qelcore::utility::OSComponentType kind) {
  using qelcore::utility::OSComponentType;
  switch (kind) {
    case OSComponentType::kOS:
      return "Operating System";
    case OSComponentType::kVideo:
      return "Video";
    case OSComponentType::kAudio:
      return "Audio";
    case OSComponentType::kNetwork:
      return "Network";
    case OSComponentType::kFile:
      return "File System";
    case OSComponentType::kProperty:
      return "Property";
    case OSComponentType::kInvalid:
      break;
  }
  return "Unknown";
}

}  // namespace benchmarks
