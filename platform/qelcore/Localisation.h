// Localised texts, and what the library asks about the application.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// The text for a whole localisation key, "$$$/path=English default", in the application's language. Where
/// there is no translation the result is what follows the first "=", byte for byte, line feeds included. Any
/// thread may call. Does not throw.
///
///   Localise("$$$/qel/scr/kOKButtonText=OK")
[[nodiscard]] QELCORE_EXPORT std::u16string Localise(std::string_view key);

/// Replaces "@0", "@1" ... in a localised text by the values of that place. A value is put in as it is: a
/// "@1" inside it is not replaced. A place without a value stays.
[[nodiscard]] QELCORE_EXPORT std::u16string ReplacePlaceholders(
    std::u16string_view text, std::initializer_list<std::u16string_view> values);

namespace Locale {

/// The application's language, an ASCII code such as "en_US".
[[nodiscard]] QELCORE_EXPORT std::string ApplicationLanguage();

}  // namespace Locale

/// The application's name as its users know it.
[[nodiscard]] QELCORE_EXPORT std::u16string GetApplicationName();

}  // namespace qelcore
