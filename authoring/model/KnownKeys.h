// The keys that a blocklist may have, and what an unknown one may have been meant to be.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace authoring {

/// Of the document.
[[nodiscard]] std::span<const std::string_view> DocumentKeys();

/// Of an entry of "default_info".
[[nodiscard]] std::span<const std::string_view> DefaultKeys();

/// Of a rule of any kind.
[[nodiscard]] std::span<const std::string_view> RuleKeys();

/// Those that only property rules read.
[[nodiscard]] std::span<const std::string_view> TextComparisonKeys();
[[nodiscard]] std::span<const std::string_view> IntegerComparisonKeys();

/// Those that property rules do not read.
[[nodiscard]] std::span<const std::string_view> VersionKeys();

/// The six kinds.
[[nodiscard]] std::span<const std::string_view> KindNames();

/// The four levels, the least grave first.
[[nodiscard]] std::span<const std::string_view> LevelNames();

[[nodiscard]] bool Contains(std::span<const std::string_view> words, std::string_view word);

/// The word that `word` is a slip of the pen away from; nothing when none is near. Upper and lower case count
/// as equal.
[[nodiscard]] std::optional<std::string_view> NearestWord(std::span<const std::string_view> words,
                                                          std::string_view word);

/// "Did you mean "Video"?", or what is known when nothing is near.
[[nodiscard]] std::string DidYouMean(std::span<const std::string_view> words, std::string_view word);

/// The words, each in quotation marks, with commas and an "or" between them.
[[nodiscard]] std::string ListOf(std::span<const std::string_view> words);

}  // namespace authoring
