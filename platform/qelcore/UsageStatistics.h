// Usage statistics: named figures about a process, gathered in groups, and single happenings.
#pragma once

#include <memory>
#include <string_view>

#include "platform/qelcore/Export.h"

namespace qelcore::config {

/// The figures of one group. What was added is recorded as one entry, in the order of adding, when the last
/// reference to the group goes. One thread at a time.
class QELCORE_EXPORT UsageLoggerGroup {
 public:
  UsageLoggerGroup() = default;
  virtual ~UsageLoggerGroup();
  UsageLoggerGroup(const UsageLoggerGroup&) = delete;
  UsageLoggerGroup& operator=(const UsageLoggerGroup&) = delete;

  /// Adds a figure. The texts are UTF-8.
  virtual void AddText(std::string_view key, std::string_view value) = 0;
  virtual void Add(std::string_view key, bool value) = 0;
};

/// Records usage statistics. Any thread may call. Nothing here throws.
class QELCORE_EXPORT UsageLogger {
 public:
  UsageLogger() = default;
  virtual ~UsageLogger();
  UsageLogger(const UsageLogger&) = delete;
  UsageLogger& operator=(const UsageLogger&) = delete;

  /// The process's logger; null when the application records no statistics.
  [[nodiscard]] static std::shared_ptr<UsageLogger> Get();

  /// A new group. `name` is the group's name and `eventName` the name of the entry that it becomes. Null when
  /// the group cannot be recorded.
  [[nodiscard]] virtual std::shared_ptr<UsageLoggerGroup> CreateGroup(std::string_view name,
                                                                      std::string_view eventName) = 0;

  /// Records a single happening: the group that it belongs to, its name, and two values, which may be empty.
  /// UTF-8.
  virtual void LogEvent(std::string_view group, std::string_view eventName, std::string_view value,
                        std::string_view secondValue) = 0;
};

}  // namespace qelcore::config
