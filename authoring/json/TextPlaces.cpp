#include "authoring/json/TextPlaces.h"

#include <algorithm>

namespace authoring {

namespace {

constexpr std::size_t kBlock = 4096;

/// A character of several bytes has one that begins it.
std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

TextPlaces::TextPlaces(std::string_view text) : mText(text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  mLineStarts.push_back(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
  for (std::size_t place = text.find('\n'); place != std::string_view::npos;
       place = text.find('\n', place + 1)) {
    mLineStarts.push_back(place + 1);
  }
  std::size_t characters = 0;
  for (std::size_t begin = 0; begin <= text.size(); begin += kBlock) {
    mCharactersBeforeBlock.push_back(characters);
    characters += CountCharacters(text.substr(begin, kBlock));
  }
}

std::size_t TextPlaces::CharactersBefore(std::size_t offset) const {
  const std::size_t block = offset / kBlock;
  return mCharactersBeforeBlock[block] + CountCharacters(mText.substr(block * kBlock, offset % kBlock));
}

Place TextPlaces::At(std::size_t offset) const {
  const std::size_t end = std::min(offset, mText.size());
  const auto next = std::upper_bound(mLineStarts.begin() + 1, mLineStarts.end(), end);
  const std::size_t start = *(next - 1);
  const std::size_t before = end < start ? 0 : CharactersBefore(end) - CharactersBefore(start);
  return {static_cast<std::size_t>(next - mLineStarts.begin()), before + 1};
}

std::optional<std::size_t> TextPlaces::OffsetOf(std::size_t line, std::size_t byteColumn) const {
  if (line == 0 || line > mLineStarts.size()) return std::nullopt;
  return mLineStarts[line - 1] + byteColumn - 1;
}

}  // namespace authoring
