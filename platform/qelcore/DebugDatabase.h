// Debug settings: string entries under dotted keys, set by developers and support staff.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// The process's debug settings. Values stand in the preferences directory; a value given on the command line
/// holds for this process and is not saved. All operations may be called from any thread and none throws.
class QELCORE_EXPORT DebugDatabase {
 public:
  [[nodiscard]] static DebugDatabase& Instance();

  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;

  /// The entry's value, or `defaultValue` when it was never set. The database remembers the default.
  [[nodiscard]] std::string GetEntry(std::string_view key, std::string_view defaultValue);

  /// Whether the entry's value is exactly "true"; false when it was never set.
  [[nodiscard]] bool GetBoolEntry(std::string_view key);

  /// The keys whose value differs from their default, in sorted order. An entry that was set and never asked
  /// for has an empty default.
  [[nodiscard]] std::vector<std::string> GetNonDefaultDebugKeys() const;

  [[nodiscard]] std::string GetCurrentValue(std::string_view key) const;
  [[nodiscard]] std::string GetDefaultValue(std::string_view key) const;

 private:
  DebugDatabase() = default;
  ~DebugDatabase() = default;
};

}  // namespace qelcore
