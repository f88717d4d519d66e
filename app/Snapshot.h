// Machine snapshots: the components, and perhaps the files, of one machine as a JSON document.
//
// docs/formats/snapshot.md describes the form.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/qelcore/Components.h"

namespace app {

struct Snapshot {
  std::string mName;  ///< what it says it is called, under "machine"; empty when it does not
  std::shared_ptr<const qelcore::utility::OSComponentRegistry> mRegistry;
  /// The whole file system of the machine as file rules see it: versions by path.
  std::map<std::string, std::string, std::less<>> mFileVersions;
  bool mHasFiles = false;  ///< whether it says anything of files; else none exists
};

/// Reads a snapshot's text; `name` is what messages call it. Throws `UserError` that says what is wrong and
/// where.
[[nodiscard]] Snapshot ParseSnapshot(const std::string& name, const std::string& text);

/// Reads a snapshot's file. Throws `UserError` that says what is wrong and where.
[[nodiscard]] Snapshot ReadSnapshot(const std::string& path);

/// The snapshot of these components, one on each line.
[[nodiscard]] std::string WriteSnapshot(const qelcore::utility::OSComponentRegistry& registry);

}  // namespace app
