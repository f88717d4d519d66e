#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "host/qelcore/System.h"
#include "host/qelcore/linux/UserAccount.h"

namespace qelcore::host {

namespace {

// Results of `ExpandEnvironment`.
constexpr int kExpanded = 0;
constexpr int kNotSet = 1;
constexpr int kNotClosed = 2;

bool IsNameCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_';
}

/// One placeholder: the name between its marks, and how many characters all of it has.
struct Placeholder {
  std::string mName;
  std::size_t mLength = 0;
};

/// The placeholder that `text` begins with. Without a name the "$" stands for itself; nothing when a "${" is
/// not closed or holds something else than a name.
std::optional<Placeholder> ReadPlaceholder(std::string_view text) {
  const bool hasBraces = text.starts_with("${");
  const std::string_view rest = text.substr(hasBraces ? 2 : 1);
  const auto nameEnd = std::find_if_not(rest.begin(), rest.end(), IsNameCharacter);
  Placeholder placeholder{.mName = std::string(rest.begin(), nameEnd), .mLength = 0};
  if (!hasBraces) {
    placeholder.mLength = 1 + placeholder.mName.size();
    return placeholder;
  }
  if (placeholder.mName.empty() || nameEnd == rest.end() || *nameEnd != '}') {
    return std::nullopt;
  }
  placeholder.mLength = 3 + placeholder.mName.size();
  return placeholder;
}

}  // namespace

std::string EnvironmentLanguage() {
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string value = EnvironmentValue(name);
    if (!value.empty()) {
      // The first variable that is set decides; encoding and variant play no part.
      const std::string language = value.substr(0, value.find_first_of(".@"));
      return language == "C" || language == "POSIX" ? std::string() : language;
    }
  }
  return {};
}

PersonalNames ReadPersonalNames() {
  constexpr std::size_t kLongestHostName = 256;
  PersonalNames names;
  const UserAccount account = ReadUserAccount();
  names.mUser = account.mName.empty() ? EnvironmentValue("USER") : account.mName;
  names.mHome = HomeDirectory();
  while (names.mHome.size() > 1 && names.mHome.back() == '/') {
    names.mHome.pop_back();
  }
  std::array<char, kLongestHostName + 1> host{};
  // The last byte stays null, whatever the system writes.
  if (::gethostname(host.data(), kLongestHostName) == 0) {
    names.mHost = host.data();
  }
  return names;
}

int ExpandEnvironment(std::string& path) {
  std::string result;
  std::string_view rest = path;
  if (rest.starts_with('~') && (rest.size() == 1 || rest[1] == '/')) {
    result = HomeDirectory();
    if (result.empty()) {
      return kNotSet;
    }
    rest.remove_prefix(1);
  }
  while (!rest.empty()) {
    if (rest.front() != '$') {
      result += rest.front();
      rest.remove_prefix(1);
      continue;
    }
    const std::optional<Placeholder> placeholder = ReadPlaceholder(rest);
    if (!placeholder) {
      return kNotClosed;
    }
    if (placeholder->mName.empty()) {
      result += '$';
    } else if (const char* const value = std::getenv(placeholder->mName.c_str())) {
      result += value;
    } else {
      return kNotSet;
    }
    rest.remove_prefix(placeholder->mLength);
  }
  path = std::move(result);
  return kExpanded;
}

}  // namespace qelcore::host
