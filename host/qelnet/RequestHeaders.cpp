#include "host/qelnet/RequestHeaders.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

namespace qelnet {

namespace {

constexpr std::string_view kSignsOfNames = "!#$%&'*+-.^_`|~";

constexpr std::array<std::string_view, 4> kHeadersOfOneServer = {"authorization", "cookie", "host",
                                                                 "proxy-authorization"};

bool IsLetterOrDigit(char sign) {
  return (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') || (sign >= '0' && sign <= '9');
}

bool IsName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char sign) {
    return IsLetterOrDigit(sign) || kSignsOfNames.find(sign) != std::string_view::npos;
  });
}

/// Line ends would let a value bring headers of its own.
bool IsOnOneLine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool EqualsInAnyCase(std::string_view text, std::string_view lowerCaseText) {
  return std::equal(
      text.begin(), text.end(), lowerCaseText.begin(), lowerCaseText.end(), [](char left, char right) {
        return (left >= 'A' && left <= 'Z' ? static_cast<char>(left - 'A' + 'a') : left) == right;
      });
}

}  // namespace

bool CanBeSent(const Headers& headers) {
  return std::all_of(headers.begin(), headers.end(),
                     [](const auto& header) { return IsName(header.first) && IsOnOneLine(header.second); });
}

HeaderList MakeHeaderList(const Headers& headers) {
  HeaderList list;
  for (const auto& [name, value] : headers) {
    // "Name:" would take one of libcurl's own headers away; "Name;" sends an empty one.
    const bool isEmpty = value.find_first_not_of(" \t") == std::string::npos;
    const std::string line = isEmpty ? name + ';' : name + ": " + value;
    curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    // The first element stays the list's head, and owns the rest.
    if (!list) list.reset(longer);
  }
  return list;
}

void RemoveHeadersOfOneServer(Headers& headers) {
  std::erase_if(headers, [](const auto& header) {
    return std::any_of(kHeadersOfOneServer.begin(), kHeadersOfOneServer.end(),
                       [&](std::string_view name) { return EqualsInAnyCase(header.first, name); });
  });
}

}  // namespace qelnet
