// The catalogue of the English texts, compared with the texts in the sources.
#include <gtest/gtest.h>

#include <any>
#include <cstddef>
#include <filesystem>
#include <map>
#include <regex>
#include <string>

#include "platform/qelcore/Json.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using testsupport::ReadWholeFile;

/// Texts by their keys.
using Texts = std::map<std::string, std::string>;

/// What stands between the quotation marks of a literal, as the program reads it.
std::string Unescape(const std::string& literal) {
  std::string text;
  for (std::size_t index = 0; index < literal.size(); ++index) {
    if (literal[index] != '\\') {
      text += literal[index];
      continue;
    }
    const char escaped = literal.at(++index);
    EXPECT_NE(std::string("n\"\\").find(escaped), std::string::npos) << literal;
    text += escaped == 'n' ? '\n' : escaped;
  }
  return text;
}

/// Adds the texts of all calls of `Localise` and `LocaliseUTF8` in a source.
void AddTexts(const std::string& source, const std::string& path, Texts& texts) {
  static const std::regex call(R"rx(Localise(?:UTF8)?\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\))rx");
  static const std::regex literal(R"rx("((?:[^"\\]|\\.)*)")rx");
  for (std::sregex_iterator found(source.begin(), source.end(), call), end; found != end; ++found) {
    const std::string literals = (*found)[1];
    std::string key;
    for (std::sregex_iterator part(literals.begin(), literals.end(), literal); part != end; ++part)
      key += Unescape((*part)[1]);
    const std::size_t equals = key.find('=');
    ASSERT_NE(equals, std::string::npos) << path << ": " << key;
    const auto [place, isNew] = texts.emplace(key.substr(0, equals), key.substr(equals + 1));
    EXPECT_TRUE(isNew || place->second == key.substr(equals + 1)) << path << ": " << key;
  }
}

Texts TextsInSources() {
  Texts texts;
  for (const char* const folder : {"app", "host", "qelsystemcompatibilityreport"}) {
    const std::filesystem::path root = std::filesystem::path(QELSCR_SOURCE_DIR) / folder;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
      const std::string extension = entry.path().extension().string();
      if (extension == ".cpp" || extension == ".h")
        AddTexts(ReadWholeFile(entry.path()), entry.path().string(), texts);
    }
  }
  return texts;
}

TEST(TranslationsTest, TheEnglishCatalogueHasTheTextsOfTheSources) {
  const Texts inSources = TextsInSources();
  EXPECT_GE(inSources.size(), 40U);
  Texts inCatalogue;
  const std::any value =
      json::Parse(ReadWholeFile(QELSCR_SOURCE_DIR "/data/translations/en_US.json"), nullptr);
  const json::Dictionary& document = json::AsDictionary(value);
  for (const auto& [key, text] : document) inCatalogue[key] = *json::FindText(document, key);
  for (const auto& [key, text] : inSources) {
    const auto place = inCatalogue.find(key);
    if (place == inCatalogue.end()) {
      ADD_FAILURE() << key << " is not in the catalogue";
    } else {
      EXPECT_EQ(place->second, text) << key;
    }
  }
  for (const auto& [key, text] : inCatalogue)
    EXPECT_TRUE(inSources.contains(key)) << "nobody asks for " << key;
}

}  // namespace
