#include "platform/qelcore/UsageStatistics.h"

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/diagnostics/TimeText.h"
#include "host/qelcore/diagnostics/UsageFile.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::config {

namespace {

constexpr std::string_view kContext = "qelcore::config::UsageLogger";

using UsageSink = std::function<void(const host::UsageEntry&)>;

struct SinkHolder {
  std::mutex mMutex;
  std::shared_ptr<const UsageSink> mSink;
};

SinkHolder& TheSink() {
  // Never destroyed, because a group may live until the process ends.
  static SinkHolder& holder = *new SinkHolder;
  return holder;
}

bool AreStatisticsRecorded() {
  return DebugDatabase::Instance().GetEntry(host::kRecordStatisticsSetting, "true") != "false";
}

/// Runs `body` and logs what it throws.
template <typename Body>
void Guarded(Body body) {
  try {
    body();
  } catch (...) {
    LogException(std::current_exception(), kContext);
  }
}

void Record(host::UsageEntry entry) {
  // The user may have turned recording off after the logger was handed out.
  if (!AreStatisticsRecorded()) {
    return;
  }
  entry.mTime = host::TimeText(std::chrono::system_clock::now());
  std::shared_ptr<const UsageSink> sink;
  {
    SinkHolder& holder = TheSink();
    const std::lock_guard lock(holder.mMutex);
    sink = holder.mSink;
  }
  if (sink) {
    (*sink)(entry);
  } else {
    host::AppendToUsageFile(entry);
  }
}

class RecordingGroup final : public UsageLoggerGroup {
 public:
  RecordingGroup(std::string_view name, std::string_view eventName) {
    mEntry.mGroup = name;
    mEntry.mEvent = eventName;
    mEntry.mFigures.emplace();
  }
  ~RecordingGroup() override {
    Guarded([this] { Record(std::move(mEntry)); });
  }
  RecordingGroup(const RecordingGroup&) = delete;
  RecordingGroup& operator=(const RecordingGroup&) = delete;

  void AddText(std::string_view key, std::string_view value) override {
    Guarded([&] { mEntry.mFigures->push_back({std::string(key), std::string(value)}); });
  }
  void Add(std::string_view key, bool value) override {
    Guarded([&] { mEntry.mFigures->push_back({std::string(key), value}); });
  }

 private:
  host::UsageEntry mEntry;
};

class RecordingLogger final : public UsageLogger {
 public:
  std::shared_ptr<UsageLoggerGroup> CreateGroup(std::string_view name, std::string_view eventName) override {
    std::shared_ptr<UsageLoggerGroup> group;
    Guarded([&] { group = std::make_shared<RecordingGroup>(name, eventName); });
    return group;
  }

  void LogEvent(std::string_view group, std::string_view eventName, std::string_view value,
                std::string_view secondValue) override {
    Guarded([&] {
      host::UsageEntry entry;
      entry.mGroup = group;
      entry.mEvent = eventName;
      entry.mValue = value;
      entry.mSecondValue = secondValue;
      Record(std::move(entry));
    });
  }
};

}  // namespace

UsageLoggerGroup::~UsageLoggerGroup() = default;
UsageLogger::~UsageLogger() = default;

std::shared_ptr<UsageLogger> UsageLogger::Get() {
  std::shared_ptr<UsageLogger> logger;
  Guarded([&] {
    if (AreStatisticsRecorded()) {
      // Never destroyed, because static objects of other libraries may ask while the process ends.
      static const auto& recordingLogger =
          *new std::shared_ptr<UsageLogger>(std::make_shared<RecordingLogger>());
      logger = recordingLogger;
    }
  });
  return logger;
}

}  // namespace qelcore::config

namespace qelcore::host {

void SetUsageSink(std::function<void(const UsageEntry&)> sink) {
  config::SinkHolder& holder = config::TheSink();
  const std::lock_guard lock(holder.mMutex);
  holder.mSink = sink ? std::make_shared<const config::UsageSink>(std::move(sink)) : nullptr;
}

}  // namespace qelcore::host
