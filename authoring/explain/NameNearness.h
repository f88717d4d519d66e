// Whether the name of a rule nearly fits a component.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace authoring {

/// How a name that does not match is near all the same. The less, the nearer.
struct NameNearness {
  enum class Kind {
    kCase,        ///< equal but for capital and small letters
    kWithin,      ///< the rule's name is a part of the component's
    kAround,      ///< the component's is a part of the rule's
    kCharacters,  ///< a few characters differ
  };

  Kind mKind = Kind::kCase;
  std::size_t mCharacters = 0;  ///< how many characters are to be changed, put in or left out

  friend auto operator<=>(const NameNearness&, const NameNearness&) = default;
};

/// The name of one rule, held against one component after another.
class RuleName {
 public:
  explicit RuleName(const std::string& name);

  /// Nothing when the name is not near. A part has at least three characters; at most a quarter of the
  /// characters of the longer name differ. Of an expression the text without its signs is compared.
  [[nodiscard]] std::optional<NameNearness> NearnessTo(std::string_view component) const;

  /// Whether another rule's name is near in the same way.
  [[nodiscard]] bool IsNearTo(const RuleName& other) const { return NearnessTo(other.mText).has_value(); }

  /// What to write for a name that is near, so that it matches: a sentence.
  [[nodiscard]] std::string Advice(const std::string& component) const;

 private:
  std::string mText;  ///< in small letters
};

/// How many characters are to be changed, put in or left out to make one text of the other; nothing when they
/// are more than `most`.
[[nodiscard]] std::optional<std::size_t> CountDifferences(std::string_view left, std::string_view right,
                                                          std::size_t most);

/// The text with the letters A to Z made small.
[[nodiscard]] std::string ToSmallLetters(std::string_view text);

}  // namespace authoring
