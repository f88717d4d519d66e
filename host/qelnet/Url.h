// The addresses that may be asked.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qelnet {

/// An address of the scheme http or https. A plain value.
struct Url {
  std::string mText;
  bool mIsEncrypted = false;
  std::string mOrigin;  ///< scheme, host and port in lower case: where credentials may go
  std::string mForLog;  ///< without user, password and query
};

/// Reads an absolute address. Returns nothing when it is empty or malformed or of another scheme.
[[nodiscard]] std::optional<Url> ParseUrl(std::string_view text);

}  // namespace qelnet
