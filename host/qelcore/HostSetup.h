// The reference host's own interface: what an application sets up before it calls the libraries.
//
// The libraries never include this header; `app/` and the tests do. Everything here is process-wide. Set up
// on the main thread, before the first call into a library, unless a function says otherwise.
//
//   qelcore::host::SetDirectories({.mPreferences = "/home/a/.config/scr", .mApplication = "/usr/share/scr"});
//   qelcore::host::SetApplicationVersion(1, 0);
//   qelcore::host::BeginProcess();
//   ... calls into the libraries ...
//   qelcore::host::EndProcess();
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Export.h"

namespace qelcore::host {

// ---- Application ------------------------------------------------------------------------------------------

/// Directories as UTF-8 paths. An empty one stands for the platform's usual place: on Linux
/// `$XDG_CONFIG_HOME/scr`, the data directory beside or below the program (`../share/scr`, or the source
/// tree's `data`), `xdg-user-dir`'s documents directory, and `$XDG_STATE_HOME/scr` for logs; on Windows `scr`
/// in the roaming application data, `data` beside the program, the documents folder, and `scr` in the local
/// application data.
struct Directories {
  std::string mPreferences{};
  std::string mApplication{};
  std::string mDocuments{};
  std::string mState{};
};

QELCORE_EXPORT void SetDirectories(const Directories& directories);

/// The directories in force, with the usual places filled in. Nothing is created.
[[nodiscard]] QELCORE_EXPORT Directories GetDirectories();

/// The application's name; "System Compatibility Report" until set.
QELCORE_EXPORT void SetApplicationName(std::u16string name);

/// The application's language, such as "de_DE"; the environment's language until set, "en_US" when it has
/// none. Loads the catalogue `translations/<language>.json` of the application directory, or of the first
/// installed language with the same letters before the "_"; a missing catalogue leaves the English texts.
QELCORE_EXPORT void SetApplicationLanguage(std::string language);

/// The version delivered in the configuration parameters by `BeginProcess`. Without it none is delivered.
QELCORE_EXPORT void SetApplicationVersion(std::int32_t major, std::int32_t minor);

/// Sets the application's state and then announces it: each call, also one that repeats the present state,
/// sends an `AppStateMessage` on the station `appstatemanager::GetStationID()`, on the calling thread, and
/// returns when all listeners have received it. Any thread may call, a listener too.
QELCORE_EXPORT void SetAppState(appstatemanager::AppState state);

/// Starts the process: delivers the configuration parameters, then runs the initializers. Returns false when
/// an initializer failed; each failure is traced.
QELCORE_EXPORT bool BeginProcess();

/// Runs the termination actions, the last registered first, and then drops the tasks that still wait for the
/// main thread. Called once, before the program ends or a library is unloaded.
QELCORE_EXPORT void EndProcess();

// ---- Machine ----------------------------------------------------------------------------------------------

using ComponentSource = std::function<std::shared_ptr<const utility::OSComponentRegistry>(bool explicitRun)>;

/// Makes `OSComponentRegistry::Get` hand out what `source` returns instead of the running machine; an empty
/// function brings the machine back.
QELCORE_EXPORT void SetComponentSource(ComponentSource source);

/// This machine's registry, or the component source's, read anew without leaving a trace: nothing is saved in
/// the preferences directory, which need not exist. Null, and logged, when the machine cannot be enumerated.
[[nodiscard]] QELCORE_EXPORT std::shared_ptr<const utility::OSComponentRegistry> ReadMachineWithoutKeeping();

/// While it lives, the files of a recorded machine stand for the file system wherever the libraries ask
/// whether a file or directory exists, what version a file has, or how a path's placeholders expand: a path
/// exists when it is a key of the map, compared as written, and has the version that is its value; no
/// directory exists; no placeholder is expanded. Reading and writing files is not affected. It holds for the
/// thread that made it, which has at most one at a time.
class QELCORE_EXPORT RecordedFilesScope {
 public:
  explicit RecordedFilesScope(std::map<std::string, std::string, std::less<>> versionsByPath);
  ~RecordedFilesScope();
  RecordedFilesScope(const RecordedFilesScope&) = delete;
  RecordedFilesScope& operator=(const RecordedFilesScope&) = delete;

 private:
  const std::map<std::string, std::string, std::less<>> mVersionsByPath;
};

/// The operations on files that `SetFileOperationHook` sees.
enum class FileOperation {
  kCreate,
  kOpenForReading,
  kRead,
  kOpenForWriting,
  kWrite,
  kFlush,
  kReplace,
  kDelete,
  kCreateDirectory
};

/// Called before each operation on a file or directory, with the operation and the UTF-8 path. What it
/// throws, the operation throws: so a disk can be made to fail on demand. An empty function takes the hook
/// away.
QELCORE_EXPORT void SetFileOperationHook(std::function<void(FileOperation, const std::string& path)> hook);

/// How many files the process may have open: now, and at most.
struct OpenFileLimits {
  std::uint64_t mCurrent = 0;
  std::uint64_t mLargest = 0;
};

/// Throws `std::system_error` when the system does not tell.
[[nodiscard]] QELCORE_EXPORT OpenFileLimits GetOpenFileLimits();

/// Sets the current limit of this process. Throws `std::system_error` when the system refuses.
QELCORE_EXPORT void SetOpenFileLimit(std::uint64_t limit);

// ---- Diagnostics ------------------------------------------------------------------------------------------

/// Records messages of all channels up to `level` (0 none, the default), and moves the change counter.
/// Messages go to `trace.log` in the state directory, at most 1 MiB and one older file, and to standard error
/// when `toStandardError` is set. Any thread may call.
QELCORE_EXPORT void SetTraceLevel(int level, bool toStandardError = false);

/// Sees every recorded message; with a sink nothing is written to the file or to standard error. An empty
/// function takes it away.
QELCORE_EXPORT void SetTraceSink(
    std::function<void(std::string_view channel, int level, std::string_view)> sink);

/// Sees every recorded message, in addition to the file, to standard error and to a sink, and those up to
/// `level` even when they are not recorded. Moves the change counter. An empty function takes it away.
QELCORE_EXPORT void SetTraceObserver(
    std::function<void(std::string_view channel, int level, std::string_view text)> observer, int level = 0);

/// Sees every logged exception, in addition to the trace log, where they go at level 1 on the channel
/// "Exceptions". An empty function takes it away.
QELCORE_EXPORT void SetExceptionSink(
    std::function<void(const std::exception_ptr& exception, std::string_view context)> sink);

/// What an exception says: its `what`, or a text that says that it is of an unknown kind.
[[nodiscard]] QELCORE_EXPORT std::string DescribeException(const std::exception_ptr& exception);

/// Takes the places of standard streams that were closed when the program started, so that no file is opened
/// in such a place and receives what the program prints. On Windows the streams also carry bytes as they are,
/// and a console takes them as UTF-8 until the program ends. To be called first of all.
QELCORE_EXPORT void ReserveStandardStreams();

/// Whether somebody reads standard error on a terminal, so that progress can be shown there.
[[nodiscard]] QELCORE_EXPORT bool IsStandardErrorATerminal();

// ---- Usage statistics -------------------------------------------------------------------------------------

/// The debug setting that turns the recording of usage statistics off when its value is exactly "false"; its
/// default is "true".
inline constexpr std::string_view kRecordStatisticsSetting = "host.record_statistics";

struct UsageFigure {
  std::string mKey{};
  std::variant<std::string, bool> mValue{};

  friend bool operator==(const UsageFigure&, const UsageFigure&) = default;
};

/// What was recorded at one time: the figures of a group, or a single happening.
struct UsageEntry {
  std::string mTime{};  ///< UTC, such as "2024-02-29T23:59:59.007Z"
  std::string mGroup{};
  std::string mEvent{};
  std::optional<std::vector<UsageFigure>> mFigures{};  ///< in the order of adding; nothing for a happening
  std::string mValue{};                                ///< of a happening
  std::string mSecondValue{};                          ///< of a happening

  friend bool operator==(const UsageEntry&, const UsageEntry&) = default;
};

/// Hands every entry to `sink`, on the thread that records it, instead of writing it to the file; an empty
/// function brings the file back. What `sink` throws is logged. The debug setting holds for a sink too.
QELCORE_EXPORT void SetUsageSink(std::function<void(const UsageEntry& entry)> sink);

struct UsageEntries {
  std::vector<UsageEntry> mEntries{};  ///< oldest first
  std::size_t mDamagedLines = 0;       ///< lines that are no entry
};

/// The entries in the file `GetUsageFile` and its older file. Any thread may call. Throws `std::system_error`
/// when a file that is there cannot be read.
[[nodiscard]] QELCORE_EXPORT UsageEntries ReadUsageEntries();

/// The UTF-8 path of the file that statistics are recorded in: `usage-statistics.jsonl` of the preferences
/// directory. It need not exist.
[[nodiscard]] QELCORE_EXPORT std::string GetUsageFile();

// ---- Debug settings ---------------------------------------------------------------------------------------

/// Sets an entry for this process only.
QELCORE_EXPORT void SetDebugEntryForThisRun(std::string_view key, std::string_view value);

/// Sets an entry and saves it in `DebugDatabase.json` of the preferences directory. Throws when it cannot be
/// saved.
QELCORE_EXPORT void SaveDebugEntry(std::string_view key, std::string_view value);

/// Takes an entry back to its default and out of the file. Returns false when it was not set. Throws when the
/// file cannot be saved.
QELCORE_EXPORT bool RemoveDebugEntry(std::string_view key);

/// All entries that were set or asked for, with their current value, in sorted order of keys.
[[nodiscard]] QELCORE_EXPORT std::map<std::string, std::string> GetDebugEntries();

// ---- Browser ----------------------------------------------------------------------------------------------

/// Gets the addresses that would go to the system's browser, UTF-8, and says whether it took them. An empty
/// function brings the browser back.
QELCORE_EXPORT void SetBrowser(std::function<bool(const std::string& url)> browser);

// ---- Main thread ------------------------------------------------------------------------------------------

/// Runs the tasks of the main thread's queue that are due, on the calling thread. Returns how many ran.
QELCORE_EXPORT std::size_t RunDueMainThreadTasks();

/// Waits for tasks and runs them until `finished` returns true; it is asked after each task and whenever
/// `WakeMainThread` is called.
QELCORE_EXPORT void RunMainThreadUntil(const std::function<bool()>& finished);

/// Makes `RunMainThreadUntil` ask again. Any thread may call.
QELCORE_EXPORT void WakeMainThread();

/// Replaces the queue's clock for tests: milliseconds since some start. An empty function brings the real one
/// back.
QELCORE_EXPORT void SetMainThreadClock(std::function<std::uint64_t()> clock);

/// Replaces the clock of every `Timer` for tests, in the same way.
QELCORE_EXPORT void SetTimerClock(std::function<std::uint64_t()> clock);

}  // namespace qelcore::host
