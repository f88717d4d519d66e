// The account of the user who runs the process, from the system's list of accounts.
#pragma once

#include <string>

namespace qelcore::host {

/// An account's entries; empty what is not known.
struct UserAccount {
  std::string mName;
  std::string mHome;
};

[[nodiscard]] UserAccount ReadUserAccount();

/// The value of an environment variable; empty when it is not set.
[[nodiscard]] std::string EnvironmentValue(const char* name);

/// The user's home directory, absolute: of the environment, else of the account; empty when neither has one.
[[nodiscard]] std::string HomeDirectory();

}  // namespace qelcore::host
