// Who may use a file.
#pragma once

#include <string>

namespace qelcore::host {

/// Gives the file `to` the access rights of the file `from`: the entries of its own, and those that it has
/// from its directory as far as the two share one. Does nothing when those of `from` cannot be read, and on a
/// disk that knows no rights. Throws `std::system_error` that names `to` when they cannot be given.
void CopyAccessRights(const std::string& from, const std::string& to);

}  // namespace qelcore::host
