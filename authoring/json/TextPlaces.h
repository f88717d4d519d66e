// Lines and columns of a text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace authoring {

/// Counted from 1; columns count characters, as editors do. 0 when the place is not known.
struct Place {
  std::size_t mLine = 0;
  std::size_t mColumn = 0;

  friend auto operator<=>(const Place&, const Place&) = default;
};

/// Turns offsets into places. The text must outlive it. A byte-order mark takes no column.
class TextPlaces {
 public:
  explicit TextPlaces(std::string_view text);

  /// The place of the byte at an offset; an offset beyond the end counts as the end.
  [[nodiscard]] Place At(std::size_t offset) const;

  /// The offset of a byte that is given by its line and its column in bytes, as `qelcore::json::Parse` does;
  /// nothing when there is no such line.
  [[nodiscard]] std::optional<std::size_t> OffsetOf(std::size_t line, std::size_t byteColumn) const;

 private:
  [[nodiscard]] std::size_t CharactersBefore(std::size_t offset) const;

  std::string_view mText;
  /// How many characters begin before each block of the text, so that a column of a long line is found at
  /// once.
  std::vector<std::size_t> mCharactersBeforeBlock;
  std::vector<std::size_t> mLineStarts;
};

}  // namespace authoring
