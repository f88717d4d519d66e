// Names without what tells who somebody is.
#pragma once

#include <string>
#include <string_view>

namespace qelcore::host {

/// The names that tell who uses this machine, UTF-8; an unknown one is empty.
struct PersonalNames {
  std::string mUser;
  std::string mHost;
  std::string mHome;  ///< the home directory's path
};

/// Replaces what is personal in a component's name.
///
/// - The home directory, and everybody's place below "/home", "/Users" and "C:\Users" (any drive): "~".
/// - E-mail addresses, and network addresses (MAC, IPv4, IPv6) that stand alone: "<address>".
/// - The names of the user and the machine, as whole words in any case of letters: "<user>" and "<host>".
///   One of fewer than three letters, one without letters, and one that is a common word of device names,
///   such as "admin" or "intel", tells nothing and stays.
[[nodiscard]] std::string RemovePersonalData(std::string_view name, const PersonalNames& names);

}  // namespace qelcore::host
