// A JSON document with the places of its values.
//
// The libraries read JSON into dictionaries, which forget where a value stood and that a key stood twice. Who
// tells an author what to mend needs both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace authoring {

enum class JsonKind { kNull, kBoolean, kInteger, kNumber, kText, kArray, kObject };

/// "a text", "an object" and so on, for messages.
[[nodiscard]] const char* Describe(JsonKind kind);

struct JsonMember;

/// One value. Offsets count bytes from the beginning of the document's text.
struct JsonNode {
  JsonKind mKind = JsonKind::kNull;
  std::size_t mOffset = 0;
  std::string mText;                 ///< of a text, unescaped
  std::uint64_t mInteger = 0;        ///< of an integer; a negative one in two's complement
  std::vector<JsonNode> mElements;   ///< of an array
  std::vector<JsonMember> mMembers;  ///< of an object, in document order, equal keys included

  [[nodiscard]] bool Is(JsonKind kind) const { return mKind == kind; }

  /// The member of this key that counts: the last one. Null when there is none or this is no object.
  [[nodiscard]] const JsonMember* FindMember(std::string_view key) const;

  /// Its value; null likewise.
  [[nodiscard]] const JsonNode* Find(std::string_view key) const;

  /// The text under a key; null when there is none or it is of another type.
  [[nodiscard]] const std::string* FindText(std::string_view key) const;
};

struct JsonMember {
  std::string mKey;
  std::size_t mKeyOffset = 0;
  JsonNode mValue;
};

/// The tree of a text that `qelcore::json::Parse` accepts; whether it does is for the caller to ask first.
[[nodiscard]] JsonNode ReadJsonTree(std::string_view text);

}  // namespace authoring
