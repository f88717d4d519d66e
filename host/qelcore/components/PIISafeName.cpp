#include "host/qelcore/components/PIISafeName.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "host/qelcore/components/NetworkAddress.h"

namespace qelcore::host {

namespace {

constexpr std::string_view kUserMark = "<user>";
constexpr std::string_view kHostMark = "<host>";
constexpr std::string_view kAddressMark = "<address>";
constexpr std::string_view kHomeMark = "~";

constexpr std::size_t kShortestName = 3;

/// Names of users and machines that are words of device names as well, or that many share. They tell nobody
/// apart, and a device name without them would be useless.
constexpr std::array<std::string_view, 47> kCommonWords = {
    "address",    "admin",     "administrator", "amd",       "android", "audio",    "bluetooth",  "computer",
    "controller", "debian",    "default",       "desktop",   "device",  "display",  "driver",     "ethernet",
    "fedora",     "generic",   "graphics",      "guest",     "home",    "host",     "intel",      "laptop",
    "linux",      "localhost", "mesa",          "microsoft", "network", "nvidia",   "office",     "owner",
    "public",     "realtek",   "root",          "server",    "system",  "test",     "ubuntu",     "usb",
    "user",       "video",     "virtual",       "wifi",      "windows", "wireless", "workstation"};

char LowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view beginning) {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(),
                    [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}

bool IsSeparator(char character) {
  return character == '/' || character == '\\';
}

/// Whether the name says who somebody is.
bool TellsSomething(std::string_view name) {
  const bool isCommon = std::any_of(kCommonWords.begin(), kCommonWords.end(), [name](std::string_view word) {
    return word.size() == name.size() && StartsWithIgnoringCase(name, word);
  });
  const bool hasLetters = std::any_of(name.begin(), name.end(), [](char character) {
    return IsWordCharacter(character) && !(character >= '0' && character <= '9');
  });
  return name.size() >= kShortestName && hasLetters && !isCommon;
}

/// The length of the path of a person's place that begins at `place`, 0 when none does.
std::size_t HomeLengthAt(std::string_view text, std::size_t place, std::string_view home) {
  const std::string_view rest = text.substr(place);
  const bool isOwnHome = home.size() > 1 && rest.starts_with(home) &&
                         (rest.size() == home.size() || !IsWordCharacter(rest[home.size()]));
  if (isOwnHome) {
    return home.size();
  }
  for (const std::string_view parent : {"/home/", "/Users/"}) {
    if (rest.starts_with(parent)) {
      const std::size_t end = std::min(rest.find_first_of("/ \t\"'", parent.size()), rest.size());
      return end > parent.size() ? end : 0;
    }
  }
  // The names of accounts may hold blanks there, so only a separator ends one.
  constexpr std::string_view kUsers = "X:\\Users\\";
  const bool isDrive = rest.size() > kUsers.size() && LowerCase(rest[0]) >= 'a' &&
                       LowerCase(rest[0]) <= 'z' && rest[1] == ':' && IsSeparator(rest[2]) &&
                       StartsWithIgnoringCase(rest.substr(3), "users") && IsSeparator(rest[8]);
  if (isDrive) {
    const std::size_t end = std::min(rest.find_first_of("\\/\"", kUsers.size()), rest.size());
    return end > kUsers.size() ? end : 0;
  }
  return 0;
}

/// Whether `name` stands at `place` as a whole word.
bool IsWordAt(std::string_view text, std::size_t place, std::string_view name) {
  const std::size_t end = place + name.size();
  return StartsWithIgnoringCase(text.substr(place), name) &&
         (place == 0 || !IsWordCharacter(text[place - 1]) || !IsWordCharacter(name.front())) &&
         (end >= text.size() || !IsWordCharacter(text[end]) || !IsWordCharacter(name.back()));
}

/// One thing to look for, and its mark.
struct Replacement {
  std::size_t mLength = 0;
  std::string_view mMark;
};

class Scanner {
 public:
  explicit Scanner(const PersonalNames& names) : mHome(names.mHome) {
    const std::string_view host = names.mHost;
    Add(names.mUser, kUserMark);
    Add(host, kHostMark);
    Add(host.substr(0, host.find('.')), kHostMark);
  }

  [[nodiscard]] Replacement At(std::string_view text, std::size_t place) const {
    if (const std::size_t length = HomeLengthAt(text, place, mHome); length != 0) {
      return {length, kHomeMark};
    }
    if (const std::size_t length = AddressLengthAt(text, place); length != 0) {
      return {length, kAddressMark};
    }
    for (const Word& word : mWords) {
      if (IsWordAt(text, place, word.mName)) {
        return {word.mName.size(), word.mMark};
      }
    }
    return {};
  }

 private:
  struct Word {
    std::string_view mName;
    std::string_view mMark;
  };

  void Add(std::string_view name, std::string_view mark) {
    if (TellsSomething(name)) {
      mWords.push_back({name, mark});
    }
  }

  std::string_view mHome;
  std::vector<Word> mWords;
};

}  // namespace

std::string RemovePersonalData(std::string_view name, const PersonalNames& names) {
  const Scanner scanner(names);
  std::string result;
  for (std::size_t place = 0; place < name.size();) {
    const Replacement replacement = scanner.At(name, place);
    if (replacement.mLength != 0) {
      result += replacement.mMark;
      place += replacement.mLength;
    } else {
      result += name[place++];
    }
  }
  return result;
}

}  // namespace qelcore::host
