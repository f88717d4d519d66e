#include "host/qelcore/components/NetworkAddress.h"

#include <algorithm>

namespace qelcore::host {

namespace {

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsHexDigit(char character) {
  return IsDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

/// The length of the run of characters of a kind that begins at `place`.
template <typename Kind>
std::size_t RunLength(std::string_view text, std::size_t place, Kind isOfKind) {
  std::size_t end = place;
  while (end < text.size() && isOfKind(text[end])) {
    ++end;
  }
  return end - place;
}

bool Joins(char character, std::string_view joiners) {
  return joiners.find(character) != std::string_view::npos;
}

/// Whether what begins at `place` is the beginning of a token: no word runs into it, and no joined part
/// stands before it.
bool BeginsToken(std::string_view text, std::size_t place, std::string_view joiners) {
  if (place == 0) {
    return true;
  }
  const char before = text[place - 1];
  return !IsWordCharacter(before) && before != '_' && !Joins(before, joiners);
}

/// Whether a token ends at `end`: no word runs on, and no joined part follows. A joiner with nothing behind
/// it, such as the point that ends a sentence, does not go on.
bool EndsToken(std::string_view text, std::size_t end, std::string_view joiners) {
  if (end >= text.size()) {
    return true;
  }
  const char after = text[end];
  if (IsWordCharacter(after) || after == '_') {
    return false;
  }
  return !Joins(after, joiners) || end + 1 == text.size() || !IsWordCharacter(text[end + 1]);
}

std::size_t HardwareAddressLength(std::string_view text, std::size_t place) {
  constexpr std::size_t kFewestPairs = 6;
  if (!BeginsToken(text, place, ":-")) {
    return 0;
  }
  std::size_t pairCount = 0;
  std::size_t end = place;
  char joiner = '\0';
  while (RunLength(text, end, IsHexDigit) == 2) {
    end += 2;
    ++pairCount;
    if (end >= text.size() || !Joins(text[end], ":-") || (joiner != '\0' && text[end] != joiner)) {
      break;
    }
    joiner = text[end];
    ++end;
  }
  if (pairCount >= kFewestPairs && Joins(text[end - 1], ":-")) {
    --end;
  }
  return pairCount >= kFewestPairs && EndsToken(text, end, ":-") ? end - place : 0;
}

/// The length of four decimal numbers up to 255 joined by points, whatever stands round them.
std::size_t FourNumbersLength(std::string_view text, std::size_t place) {
  std::size_t end = place;
  for (int index = 0; index < 4; ++index) {
    if (index > 0) {
      if (end >= text.size() || text[end] != '.') {
        return 0;
      }
      ++end;
    }
    const std::size_t digitCount = RunLength(text, end, IsDigit);
    if (digitCount == 0 || digitCount > 3) {
      return 0;
    }
    int number = 0;
    for (const char digit : text.substr(end, digitCount)) {
      number = number * 10 + (digit - '0');
    }
    if (number > 255) {
      return 0;
    }
    end += digitCount;
  }
  return end - place;
}

std::size_t IPv4Length(std::string_view text, std::size_t place) {
  if (!BeginsToken(text, place, ".-")) {
    return 0;
  }
  const std::size_t length = FourNumbersLength(text, place);
  return length != 0 && EndsToken(text, place + length, ".-") ? length : 0;
}

std::size_t IPv6Length(std::string_view text, std::size_t place) {
  constexpr int kGroups = 8;
  if (!BeginsToken(text, place, ":.")) {
    return 0;
  }
  int groupCount = 0;
  bool hasGap = false;
  std::size_t end = place;
  while (end < text.size() && groupCount < kGroups) {
    if (text.substr(end).starts_with("::")) {
      if (hasGap) {
        return 0;
      }
      hasGap = true;
      end += 2;
    } else if (groupCount > 0 && text[end] == ':' && text[end - 1] != ':') {
      ++end;
    }
    if (const std::size_t embedded = FourNumbersLength(text, end); embedded != 0 && groupCount > 0) {
      groupCount += 2;
      end += embedded;
      break;
    }
    const std::size_t digitCount = RunLength(text, end, IsHexDigit);
    if (digitCount == 0 || digitCount > 4) {
      break;
    }
    ++groupCount;
    end += digitCount;
    if (end >= text.size() || text[end] != ':') {
      break;
    }
  }
  const bool isComplete = hasGap ? groupCount > 0 && groupCount < kGroups : groupCount == kGroups;
  if (!isComplete || !EndsToken(text, end, ":.")) {
    return 0;
  }
  if (end < text.size() && text[end] == '%') {
    end += 1 + RunLength(text, end + 1, [](char character) { return IsWordCharacter(character); });
  }
  return end - place;
}

std::size_t MailAddressLength(std::string_view text, std::size_t place) {
  const auto isLocalPart = [](char character) {
    return IsWordCharacter(character) || Joins(character, "._%+-");
  };
  const auto isDomainPart = [](char character) { return IsWordCharacter(character) || character == '-'; };
  if (place > 0 && isLocalPart(text[place - 1])) {
    return 0;
  }
  const std::size_t localLength = RunLength(text, place, isLocalPart);
  std::size_t end = place + localLength;
  if (localLength == 0 || end >= text.size() || text[end] != '@') {
    return 0;
  }
  ++end;
  std::size_t labelCount = 0;
  std::string_view lastLabel;
  while (const std::size_t labelLength = RunLength(text, end, isDomainPart)) {
    lastLabel = text.substr(end, labelLength);
    ++labelCount;
    end += labelLength;
    if (end + 1 >= text.size() || text[end] != '.' || !isDomainPart(text[end + 1])) {
      break;
    }
    ++end;
  }
  const bool endsInLetters = std::all_of(lastLabel.begin(), lastLabel.end(), IsLetter);
  return labelCount >= 2 && endsInLetters ? end - place : 0;
}

}  // namespace

std::size_t AddressLengthAt(std::string_view text, std::size_t place) {
  for (const auto lengthOf : {MailAddressLength, HardwareAddressLength, IPv6Length, IPv4Length}) {
    if (const std::size_t length = lengthOf(text, place); length != 0) {
      return length;
    }
  }
  return 0;
}

bool IsWordCharacter(char character) {
  return IsLetter(character) || IsDigit(character) || static_cast<unsigned char>(character) >= 0x80;
}

}  // namespace qelcore::host
