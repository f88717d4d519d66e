#include "qelsystemcompatibilityreport/report/text/DebugSettingsSection.h"

#include <chrono>
#include <utility>

#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/TextReport.h"

namespace qelsystemcompatibilityreport {

namespace {

/// The longest wait for the registration's mutex.
constexpr std::chrono::milliseconds kLockTimeOut{60000};

}  // namespace

void RegisterDebugSettingsSection() {
  static qelcore::threads::RecursiveTimedMutex mutex;
  static bool isRegistered = false;
  const qelcore::threads::TimedLock lock(mutex, kLockTimeOut);
  if (std::exchange(isRegistered, true)) return;
  RegisterTextReportCallback(
      [](qelcore::UTF8StringStream& stream, qelcore::filesupport::File&) { WriteDebugSettings(stream); },
      DisplayPriority::kDebugSettings);
}

void WriteDebugSettings(qelcore::UTF8StringStream& stream) {
  const qelcore::DebugDatabase& settings = qelcore::DebugDatabase::Instance();
  const auto endLine = [&] {
    stream << '\n';
    stream.flush();
  };
  stream << "    Debug database settings:";
  endLine();
  const std::vector<std::string> keys = settings.GetNonDefaultDebugKeys();
  for (const std::string& key : keys) {
    stream << "        " << key << ": \t\t\t Current: " << settings.GetCurrentValue(key)
           << " Default: " << settings.GetDefaultValue(key);
    endLine();
  }
  if (keys.empty()) {
    stream << "        All settings default value";
    endLine();
  }
}

}  // namespace qelsystemcompatibilityreport
