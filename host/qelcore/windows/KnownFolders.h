// The folders that the system knows by what they are for.
#pragma once

#include <string>

namespace qelcore::host {

enum class KnownFolder { kProfile, kRoamingData, kLocalData, kDocuments };

/// The folder's UTF-8 path; empty when the user has none. Nothing is created.
[[nodiscard]] std::string PathOf(KnownFolder folder);

}  // namespace qelcore::host
