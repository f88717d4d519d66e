// A value of a JSON text that is walked through.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qelcore::json {

/// A value, followed by those that it holds, if any. The texts are those of the parser.
struct TextNode {
  enum class Type : std::uint8_t { kObject, kArray, kText, kBoolean, kInteger, kNumber, kNull };

  Type mType = Type::kNull;
  std::size_t mNodeCount = 1;  ///< with all that it holds: the next value stands so many places further
  std::string_view mKey;       ///< of a member of an object
  std::string_view mText;      ///< of a string
  std::uint64_t mInteger = 0;  ///< of an integer
};

}  // namespace qelcore::json
