// The user's browser.
#pragma once

#include <string>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// Whether the text is an address that may be opened: of the scheme http or https, with a host, and without
/// white space or control characters.
[[nodiscard]] QELCORE_EXPORT bool IsWebAddress(const std::u16string& url);

/// Opens a page in the user's browser, and returns at once whether the system took the address. Only what
/// `IsWebAddress` is passed on. Does not throw: a failure is logged.
QELCORE_EXPORT bool OpenURLInDefaultBrowser(const std::u16string& url);

}  // namespace qelcore
