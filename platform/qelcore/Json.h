// JSON over `std::any`.
//
// A JSON value in memory is a `std::any` that holds one of
//
//   object    `json::Dictionary`      (keys in sorted order, byte by byte)
//   array     `json::Array`
//   string    `std::string`           (UTF-8)
//   integer   `std::int64_t`, or `std::uint64_t` when it is above the former's range
//   number    `double`                (whatever is written with a point or an exponent, or is too large)
//   boolean   `bool`
//   null      `std::nullptr_t`
//
// Example:
//
//   const std::any value = json::Parse(R"({"name": "Windows", "osc_version": 1})");
//   const json::Dictionary& object = json::AsDictionary(value);
//   const std::string* name = json::FindText(object, "name");
//
// All functions may be called from any thread, each on its own values.
#pragma once

#include <any>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Export.h"

namespace qelcore::json {

using Dictionary = std::map<std::string, std::shared_ptr<std::any>, std::less<>>;
using Array = std::vector<std::any>;

/// A value of another JSON type than the reader asked for. The message names the key and both types.
class QELCORE_EXPORT TypeError : public std::runtime_error {
 public:
  explicit TypeError(const std::string& message);
  ~TypeError() override;
};

/// Where and why a text is not JSON. Line and column count from 1, columns in bytes; both are 0 when the
/// place is not known.
struct ParseError {
  std::string mMessage;
  std::size_t mLine = 0;
  std::size_t mColumn = 0;
};

/// Parses a whole UTF-8 text, one JSON value with optional white space round it. A leading byte-order mark is
/// skipped. Returns an empty `std::any` when the text is not JSON, is not UTF-8, holds an unpaired surrogate
/// escape, is nested deeper than 256 levels, is longer than 64 MiB, or holds more than 2,097,152 values;
/// `error`, when given, then says where and why. Never throws for bad text. Of two members with the same key
/// the later one wins.
[[nodiscard]] QELCORE_EXPORT std::any Parse(std::string_view text, ParseError* error = nullptr);

/// Writes a value compactly as UTF-8: no white space, object keys in sorted order. `Parse` reads it back to
/// an equal value. Throws `TypeError` for a `std::any` that holds something else than the types above, an
/// empty one included.
[[nodiscard]] QELCORE_EXPORT std::string Serialise(const std::any& value);

/// The object that `value` holds. Throws `TypeError` when it holds anything else.
[[nodiscard]] QELCORE_EXPORT const Dictionary& AsDictionary(const std::any& value);

/// Whether the object has the key, whatever its value's type.
[[nodiscard]] QELCORE_EXPORT bool Has(const Dictionary& object, std::string_view key);

// ---- Typed reads ------------------------------------------------------------------------------------------
//
// Each returns null (or nothing) when the key is absent and throws `TypeError` when its value is of another
// type. The pointers stay valid as long as the object does.

[[nodiscard]] QELCORE_EXPORT const std::string* FindText(const Dictionary& object, std::string_view key);
[[nodiscard]] QELCORE_EXPORT const Array* FindArray(const Dictionary& object, std::string_view key);
[[nodiscard]] QELCORE_EXPORT const Dictionary* FindDictionary(const Dictionary& object, std::string_view key);
[[nodiscard]] QELCORE_EXPORT std::optional<bool> FindBool(const Dictionary& object, std::string_view key);

/// An integer's 64 bits: a negative one comes in two's complement, as a conversion to unsigned gives it. A
/// floating-point number is another type, even when it is written 1.0; so is a boolean.
[[nodiscard]] QELCORE_EXPORT std::optional<std::uint64_t> FindInteger(const Dictionary& object,
                                                                      std::string_view key);

/// An array whose elements must all be strings.
[[nodiscard]] QELCORE_EXPORT std::optional<std::vector<std::string>> FindTexts(const Dictionary& object,
                                                                               std::string_view key);

/// Puts a value under a key, in place of what stood there.
QELCORE_EXPORT void Set(Dictionary& object, std::string_view key, std::any value);

}  // namespace qelcore::json
