#include "platform/qelcore/Trace.h"

#include <spdlog/details/log_msg.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileHandle.h"
#include "host/qelcore/files/FileSystem.h"

namespace qelcore {

namespace {

constexpr std::size_t kLargestFile = 1'048'576;
constexpr std::size_t kOlderFiles = 1;
constexpr const char* kFileName = "trace.log";
constexpr const char* kPattern = "%Y-%m-%d %H:%M:%S.%e %t [%n] %v";

std::atomic<int> currentLevel{0};
std::atomic<int> observerLevel{0};
std::atomic<bool> isOnStandardError{false};
std::atomic<std::uint32_t> changeCount{1};

using TraceSink = std::function<void(std::string_view, int, std::string_view)>;

struct Outputs {
  std::mutex mMutex;
  std::shared_ptr<const TraceSink> mSink;
  std::shared_ptr<const TraceSink> mObserver;
  std::optional<std::string> mDirectory;       ///< of the file; nothing before the first message
  std::unique_ptr<spdlog::sinks::sink> mFile;  ///< null when it could not be opened
  std::unique_ptr<spdlog::sinks::sink> mStandardError;
};

Outputs& TheOutputs() {
  // Never destroyed, because static objects of other libraries may trace while the process ends.
  static Outputs& outputs = *new Outputs;
  return outputs;
}

/// Makes the file for its owner only when it is not there, before it is opened to append. Throws when a
/// symbolic link has its name: it may lead to any file of the user, which is nothing to write log lines into.
void PrepareFile(const spdlog::filename_t& name) {
  const std::u8string text = std::filesystem::path(name).u8string();
  const std::string path(text.begin(), text.end());
  if (host::IsSymbolicLink(path)) {
    throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels), path);
  }
  host::FileHandle::OpenOrCreate(path, false).Close();
}

std::unique_ptr<spdlog::sinks::sink> OpenFile(const std::string& directory) {
  try {
    host::MakeDirectories(directory, host::DirectoryAccess::kOwnerOnly);
    const auto path = std::filesystem::path(std::u8string(directory.begin(), directory.end())) / kFileName;
    spdlog::file_event_handlers handlers;
    handlers.before_open = PrepareFile;
    auto file = std::make_unique<spdlog::sinks::rotating_file_sink_st>(path.native(), kLargestFile,
                                                                       kOlderFiles, false, handlers);
    file->set_pattern(kPattern);
    return file;
  } catch (const std::exception&) {
    // Tracing must never be the reason why something else fails, and has nowhere to say that it did.
    return nullptr;
  }
}

void Output(spdlog::sinks::sink& sink, std::string_view channel, int level, std::string_view text) {
  const std::string name = std::string(channel) + ' ' + std::to_string(level);
  const spdlog::details::log_msg message(spdlog::string_view_t(name.data(), name.size()), spdlog::level::info,
                                         spdlog::string_view_t(text.data(), text.size()));
  sink.log(message);
  sink.flush();
}

/// Writes to the file and to standard error. The outputs are locked.
void Write(Outputs& outputs, std::string_view channel, int level, std::string_view text) {
  std::string directory = host::StateDirectory();
  if (outputs.mDirectory != directory) {
    outputs.mFile = OpenFile(directory);
    outputs.mDirectory = std::move(directory);
  }
  if (outputs.mFile) {
    Output(*outputs.mFile, channel, level, text);
  }
  if (isOnStandardError.load()) {
    if (!outputs.mStandardError) {
      outputs.mStandardError = std::make_unique<spdlog::sinks::stderr_sink_st>();
      outputs.mStandardError->set_pattern(kPattern);
    }
    Output(*outputs.mStandardError, channel, level, text);
  }
}

}  // namespace

bool TraceEnabled(std::string_view /*channel*/, int level) {
  // The host sets one level for all channels.
  return level > 0 && (level <= currentLevel.load(std::memory_order_relaxed) ||
                       level <= observerLevel.load(std::memory_order_relaxed));
}

std::uint32_t TraceChangeCount() {
  return changeCount.load(std::memory_order_acquire);
}

void TraceOutput(std::string_view channel, int level, std::string_view text) {
  try {
    Outputs& outputs = TheOutputs();
    std::shared_ptr<const TraceSink> sink;
    std::shared_ptr<const TraceSink> observer;
    {
      const std::lock_guard lock(outputs.mMutex);
      observer = outputs.mObserver;
      // What is enabled for the observer's sake alone is no business of the log.
      const bool isForTheLog = level <= currentLevel.load() || level > observerLevel.load();
      if (isForTheLog) sink = outputs.mSink;
      if (isForTheLog && !sink) Write(outputs, channel, level, text);
    }
    // Outside the lock, because they may trace themselves.
    for (const auto& listener : {sink, observer}) {
      if (listener) {
        (*listener)(channel, level, text);
      }
    }
  } catch (...) {
    // A full disk or a sink that throws loses this message and nothing else.
    return;
  }
}

namespace host {

namespace {

void AnnounceChange() {
  // 0 stands for "never asked", so the counter passes over it when it wraps.
  if (changeCount.fetch_add(1, std::memory_order_acq_rel) + 1 == 0) {
    changeCount.fetch_add(1, std::memory_order_acq_rel);
  }
}

}  // namespace

void SetTraceLevel(int level, bool toStandardError) {
  isOnStandardError.store(toStandardError);
  currentLevel.store(level);
  AnnounceChange();
}

void SetTraceSink(TraceSink sink) {
  Outputs& outputs = TheOutputs();
  const std::lock_guard lock(outputs.mMutex);
  outputs.mSink = sink ? std::make_shared<const TraceSink>(std::move(sink)) : nullptr;
}

void SetTraceObserver(TraceSink observer, int level) {
  observerLevel.store(observer ? level : 0);
  {
    Outputs& outputs = TheOutputs();
    const std::lock_guard lock(outputs.mMutex);
    outputs.mObserver = observer ? std::make_shared<const TraceSink>(std::move(observer)) : nullptr;
  }
  AnnounceChange();
}

}  // namespace host
}  // namespace qelcore
