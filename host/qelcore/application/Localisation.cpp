#include "platform/qelcore/Localisation.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include "host/qelcore/application/Application.h"
#include "host/qelcore/files/FileSystem.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

constexpr const char* kFolderName = "translations";
constexpr std::string_view kExtension = ".json";

/// The language of the defaults inside the keys. Without a catalogue of its own it needs none.
constexpr std::string_view kBuiltInLanguage = "en_US";

using Catalogue = std::map<std::string, std::u16string, std::less<>>;

std::filesystem::path ToPath(const std::string& path) {
  return {std::u8string(path.begin(), path.end())};
}

std::string ToText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// The letters before the "_": "de" of "de_AT".
std::string_view LettersOf(std::string_view language) {
  return language.substr(0, language.find('_'));
}

/// The languages that have a catalogue, in sorted order.
std::vector<std::string> InstalledLanguages(const std::string& folder) {
  std::vector<std::string> languages;
  std::error_code error;
  std::filesystem::directory_iterator entry(ToPath(folder), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::filesystem::path name = entry->path().stem();
    const auto isOfCode = [](auto character) { return character > 0 && character < 0x80; };
    const bool isCode = std::all_of(name.native().begin(), name.native().end(), isOfCode);
    if (isCode && entry->path().extension() == kExtension) {
      languages.push_back(ToText(name));
    }
  }
  std::sort(languages.begin(), languages.end());
  return languages;
}

/// The path of the catalogue for a language; nothing when the texts stay English.
std::optional<std::string> FindCatalogue(const std::string& applicationDirectory,
                                         const std::string& language) {
  const std::string folder = ToText(ToPath(applicationDirectory) / kFolderName);
  const auto pathOf = [&folder](const std::string& name) {
    return ToText(ToPath(folder) / (name + std::string(kExtension)));
  };
  if (host::IsFile(pathOf(language))) {
    return pathOf(language);
  }
  if (language == kBuiltInLanguage) {
    return std::nullopt;
  }
  for (const std::string& installed : InstalledLanguages(folder)) {
    if (LettersOf(installed) == LettersOf(language)) {
      return pathOf(installed);
    }
  }
  return std::nullopt;
}

Catalogue ReadCatalogue(const std::string& path) {
  const std::string text =
      filesupport::IPlatformByteStream(filesupport::File(string::UTF8to16(path))).ReadAll();
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
  if (!value.has_value()) {
    throw std::runtime_error(path + ':' + std::to_string(error.mLine) + ':' + std::to_string(error.mColumn) +
                             ": " + error.mMessage);
  }
  const json::Dictionary& object = json::AsDictionary(value);
  Catalogue catalogue;
  for (const auto& member : object) {
    const std::string* const translation = json::FindText(object, member.first);
    // Translators leave open what they have not translated yet.
    if (!translation->empty()) {
      catalogue.emplace(member.first, string::UTF8to16(*translation));
    }
  }
  return catalogue;
}

std::shared_ptr<const Catalogue> LoadCatalogue(const std::string& applicationDirectory,
                                               const std::string& language) {
  try {
    if (const std::optional<std::string> path = FindCatalogue(applicationDirectory, language)) {
      return std::make_shared<const Catalogue>(ReadCatalogue(*path));
    }
  } catch (...) {
    LogException(std::current_exception(), "qelcore::Localise");
  }
  return std::make_shared<const Catalogue>();
}

/// The catalogue in force and what it was loaded for.
struct Loaded {
  std::mutex mMutex;
  std::string mApplicationDirectory;
  std::string mLanguage;
  std::shared_ptr<const Catalogue> mCatalogue;
};

std::shared_ptr<const Catalogue> CurrentCatalogue() {
  // Never destroyed, because other libraries' static objects may still call while the process ends.
  static Loaded& loaded = *new Loaded;
  std::string applicationDirectory = host::ApplicationDirectory();
  std::string language = Locale::ApplicationLanguage();
  {
    const std::lock_guard lock(loaded.mMutex);
    if (loaded.mCatalogue && loaded.mApplicationDirectory == applicationDirectory &&
        loaded.mLanguage == language) {
      return loaded.mCatalogue;
    }
  }
  // Loaded outside the lock, because a fault is logged, and whoever sees that may want a text. Two threads
  // that come first together load the same.
  std::shared_ptr<const Catalogue> catalogue = LoadCatalogue(applicationDirectory, language);
  const std::lock_guard lock(loaded.mMutex);
  loaded.mApplicationDirectory = std::move(applicationDirectory);
  loaded.mLanguage = std::move(language);
  loaded.mCatalogue = catalogue;
  return catalogue;
}

/// The place's number behind an "@", decimal and without leading zeros, and how many digits it has.
struct Place {
  std::size_t mIndex = 0;
  std::size_t mLength = 0;
};

Place ReadPlace(std::u16string_view text) {
  constexpr std::size_t kMostDigits = 4;
  Place place;
  while (place.mLength < text.size() && place.mLength < kMostDigits && text[place.mLength] >= u'0' &&
         text[place.mLength] <= u'9') {
    place.mIndex = place.mIndex * 10 + static_cast<std::size_t>(text[place.mLength] - u'0');
    ++place.mLength;
    if (place.mIndex == 0) {
      break;
    }
  }
  return place;
}

}  // namespace

std::u16string Localise(std::string_view key) {
  const std::size_t equals = key.find('=');
  if (equals == std::string_view::npos) {
    return string::UTF8to16(key);
  }
  try {
    const std::shared_ptr<const Catalogue> catalogue = CurrentCatalogue();
    if (const auto translation = catalogue->find(key.substr(0, equals)); translation != catalogue->end()) {
      return translation->second;
    }
  } catch (...) {
    LogException(std::current_exception(), "qelcore::Localise");
  }
  return string::UTF8to16(key.substr(equals + 1));
}

std::u16string ReplacePlaceholders(std::u16string_view text,
                                   std::initializer_list<std::u16string_view> values) {
  std::u16string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == u'@') {
      const Place place = ReadPlace(text.substr(index + 1));
      if (place.mLength != 0 && place.mIndex < values.size()) {
        result += values.begin()[place.mIndex];
        index += place.mLength;
        continue;
      }
    }
    result += text[index];
  }
  return result;
}

}  // namespace qelcore
