// Which redirects are followed.
#pragma once

#include <string>
#include <string_view>

#include "host/qelnet/Request.h"

namespace qelnet {

/// Whether a status with a "Location" header sends the request elsewhere.
[[nodiscard]] bool IsRedirect(long status);

/// Turns the request towards `location`, an absolute address. At most 10 redirects are followed, and none
/// leaves https for http. Returns an empty text, or the reason why the redirect is not followed; then the
/// request is as before.
[[nodiscard]] std::string FollowRedirect(Request& request, std::string_view location);

}  // namespace qelnet
