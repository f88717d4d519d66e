// A 128-bit identifier.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// Sixteen bytes that identify something: a match job, a request, the result of a hash. A plain value.
class QELCORE_EXPORT Guid {
 public:
  /// The null identifier: sixteen zero bytes.
  Guid() = default;

  /// An identifier made of these bytes, in text order.
  explicit Guid(const std::array<std::uint8_t, 16>& bytes) : mBytes(bytes) {}

  /// Reads the text form: 36 characters, hexadecimal digits of either case in groups of 8-4-4-4-12 joined by
  /// hyphens. Any other text, also one that is longer, gives the null identifier; nothing is thrown.
  [[nodiscard]] static Guid FromUTF8String(std::string_view text);

  /// A fresh random identifier, never null. Any thread may call.
  [[nodiscard]] static Guid CreateUnique();

  /// The text form: 36 characters, lower-case hexadecimal digits in groups of 8-4-4-4-12 joined by hyphens.
  /// `FromUTF8String` reads it back. Example: "00000000-0000-0000-0000-000000000000" for the null identifier.
  [[nodiscard]] std::string AsUTF8String() const;

  [[nodiscard]] const std::array<std::uint8_t, 16>& Bytes() const { return mBytes; }

  friend bool operator==(const Guid&, const Guid&) = default;

 private:
  std::array<std::uint8_t, 16> mBytes{};
};

}  // namespace qelcore
