// Paths as text: their last name, what is above, and joining. Nothing here touches the disk.
#pragma once

#include <string>
#include <string_view>

namespace qelcore::host {

/// The last name of a path; empty for a root and for an empty path. Separators at the end do not count.
[[nodiscard]] std::u16string LastName(std::u16string_view path);

/// The path above; a root's is the root itself, and an empty path's and a single name's is empty.
[[nodiscard]] std::u16string ParentPath(std::u16string_view path);

/// Whether there is nothing above the path: a root, or an empty path.
[[nodiscard]] bool IsRootPath(std::u16string_view path);

/// The path of a name inside a directory; the name alone when the directory is empty.
[[nodiscard]] std::u16string JoinPath(std::u16string_view directory, std::u16string_view name);

}  // namespace qelcore::host
