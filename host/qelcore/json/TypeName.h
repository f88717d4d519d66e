// What error messages call the JSON types.
#pragma once

#include <any>

namespace qelcore::json {

/// "an object", "an array" and so on; "nothing" for an empty value.
[[nodiscard]] const char* TypeName(const std::any& value);

}  // namespace qelcore::json
