#include "platform/qelcore/DebugDatabase.h"

#include <any>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileSystem.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

constexpr const char* kFileName = "DebugDatabase.json";
constexpr const char* kBrokenSuffix = ".broken";
constexpr std::string_view kTrue = "true";

using Entries = std::map<std::string, std::string, std::less<>>;

/// The file holds something else than an object of texts.
class BrokenFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string FilePathIn(const std::string& directory) {
  return string::UTF16to8(
      filesupport::File(filesupport::Dir(string::UTF8to16(directory)), string::UTF8to16(kFileName))
          .GetFullPath());
}

/// The saved entries; none when there is no file. Throws when the file cannot be read or is broken.
Entries ReadEntries(const std::string& path) {
  if (!host::IsFile(path)) {
    return {};
  }
  const std::string text =
      filesupport::IPlatformByteStream(filesupport::File(string::UTF8to16(path))).ReadAll();
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
  if (!value.has_value()) {
    throw BrokenFileError(path + ':' + std::to_string(error.mLine) + ':' + std::to_string(error.mColumn) +
                          ": " + error.mMessage);
  }
  Entries entries;
  try {
    const json::Dictionary& object = json::AsDictionary(value);
    for (const auto& member : object) {
      entries.emplace(member.first, *json::FindText(object, member.first));
    }
  } catch (const json::TypeError& typeError) {
    throw BrokenFileError(path + ": " + typeError.what());
  }
  return entries;
}

void WriteEntries(const std::string& path, const Entries& entries) {
  json::Dictionary object;
  for (const auto& [key, value] : entries) {
    json::Set(object, key, value);
  }
  host::MakeDirectories(host::PreferencesDirectory(), host::DirectoryAccess::kOwnerOnly);
  filesupport::SafeSave save(filesupport::File(string::UTF8to16(path)));
  save.Write(json::Serialise(object));
  save.Commit();
}

const std::string* Find(const Entries& entries, std::string_view key) {
  const auto place = entries.find(key);
  return place != entries.end() ? &place->second : nullptr;
}

/// All entries. The caller holds the lock.
class Store {
 public:
  std::mutex mMutex;
  std::exception_ptr mFault;  ///< why the file could not be read, until that is logged

  std::string Remember(std::string_view key, std::string_view defaultValue) {
    mDefaults.insert_or_assign(std::string(key), std::string(defaultValue));
    return Current(key);
  }

  std::string Current(std::string_view key) {
    if (const std::string* const value = FindSet(key)) {
      return *value;
    }
    return Default(key);
  }

  std::string Default(std::string_view key) const {
    const std::string* const value = Find(mDefaults, key);
    return value != nullptr ? *value : std::string();
  }

  std::map<std::string, std::string> AllCurrent() {
    std::map<std::string, std::string> all;
    for (const Entries* const entries : {&Saved(), &std::as_const(mForThisRun), &std::as_const(mDefaults)}) {
      for (const auto& [key, ignored] : *entries) {
        all.emplace(key, Current(key));
      }
    }
    return all;
  }

  std::vector<std::string> NonDefaultKeys() {
    std::vector<std::string> keys;
    for (const auto& [key, value] : AllCurrent()) {
      if (value != Default(key)) {
        keys.push_back(key);
      }
    }
    return keys;
  }

  void SetForThisRun(std::string_view key, std::string_view value) {
    mForThisRun.insert_or_assign(std::string(key), std::string(value));
  }

  void Save(std::string_view key, std::string_view value) {
    ReadForChange();
    Entries entries = mSaved;
    entries.insert_or_assign(std::string(key), std::string(value));
    WriteEntries(*mPath, entries);
    mSaved = std::move(entries);
    // What was set for this run would otherwise go on hiding the saved value.
    EraseForThisRun(key);
  }

  bool Remove(std::string_view key) {
    const bool wasSet = FindSet(key) != nullptr;
    if (Find(Saved(), key) != nullptr) {
      ReadForChange();
      Entries entries = mSaved;
      if (const auto place = entries.find(key); place != entries.end()) {
        entries.erase(place);
        WriteEntries(*mPath, entries);
      }
      mSaved = std::move(entries);
    }
    EraseForThisRun(key);
    return wasSet;
  }

 private:
  const std::string* FindSet(std::string_view key) {
    const std::string* const value = Find(mForThisRun, key);
    return value != nullptr ? value : Find(Saved(), key);
  }

  /// The saved entries, read when they are needed for the first time. A file that cannot be read has none.
  const Entries& Saved() {
    std::string path = FilePathIn(host::PreferencesDirectory());
    if (mPath != path) {
      mPath = std::move(path);
      mSaved.clear();
      try {
        mSaved = ReadEntries(*mPath);
      } catch (...) {
        mFault = std::current_exception();
      }
    }
    return mSaved;
  }

  /// Reads the file anew, so that a change does not undo what another process saved. A broken file steps
  /// aside and can be looked at; one that cannot be read stays, and the error goes to the caller.
  void ReadForChange() {
    std::string path = FilePathIn(host::PreferencesDirectory());
    try {
      mSaved = ReadEntries(path);
    } catch (const BrokenFileError&) {
      host::MoveInPlace(path, path + kBrokenSuffix);
      mSaved.clear();
    }
    mPath = std::move(path);
  }

  void EraseForThisRun(std::string_view key) {
    if (const auto place = mForThisRun.find(key); place != mForThisRun.end()) {
      mForThisRun.erase(place);
    }
  }

  Entries mDefaults;
  Entries mForThisRun;
  Entries mSaved;
  std::optional<std::string> mPath;  ///< the file that `mSaved` comes from
};

Store& TheStore() {
  // Never destroyed, because static objects of other libraries may ask while the process ends.
  static Store& store = *new Store;
  return store;
}

/// Logs why the file could not be read. Not under the lock, because whoever sees the exception may ask for an
/// entry.
void LogFault() {
  std::exception_ptr fault;
  {
    Store& store = TheStore();
    const std::lock_guard lock(store.mMutex);
    fault = std::exchange(store.mFault, nullptr);
  }
  if (fault) {
    LogException(fault, "qelcore::DebugDatabase");
  }
}

/// Runs `action` on the locked store and returns its result.
template <typename Action>
auto WithStore(Action action) {
  Store& store = TheStore();
  std::unique_lock lock(store.mMutex);
  auto result = action(store);
  const bool hasFault = store.mFault != nullptr;
  lock.unlock();
  if (hasFault) {
    LogFault();
  }
  return result;
}

}  // namespace

DebugDatabase& DebugDatabase::Instance() {
  static DebugDatabase database;
  return database;
}

std::string DebugDatabase::GetEntry(std::string_view key, std::string_view defaultValue) {
  return WithStore([&](Store& store) { return store.Remember(key, defaultValue); });
}

bool DebugDatabase::GetBoolEntry(std::string_view key) {
  return GetEntry(key, "false") == kTrue;
}

std::vector<std::string> DebugDatabase::GetNonDefaultDebugKeys() const {
  return WithStore([](Store& store) { return store.NonDefaultKeys(); });
}

std::string DebugDatabase::GetCurrentValue(std::string_view key) const {
  return WithStore([&](Store& store) { return store.Current(key); });
}

std::string DebugDatabase::GetDefaultValue(std::string_view key) const {
  return WithStore([&](Store& store) { return store.Default(key); });
}

namespace host {

void SetDebugEntryForThisRun(std::string_view key, std::string_view value) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mMutex);
  store.SetForThisRun(key, value);
}

void SaveDebugEntry(std::string_view key, std::string_view value) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mMutex);
  store.Save(key, value);
}

bool RemoveDebugEntry(std::string_view key) {
  return WithStore([&](Store& store) { return store.Remove(key); });
}

std::map<std::string, std::string> GetDebugEntries() {
  return WithStore([](Store& store) { return store.AllCurrent(); });
}

}  // namespace host
}  // namespace qelcore
