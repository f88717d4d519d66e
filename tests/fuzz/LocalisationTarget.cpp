// Localised texts: the input is a catalogue of translations, and its keys are the keys that are asked for.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
using fuzz::Require;
using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;

/// Whether the whole catalogue can be used.
bool IsCatalogue(const std::any& root) {
  const auto* const object = std::any_cast<json::Dictionary>(&root);
  return object != nullptr && std::all_of(object->begin(), object->end(), [](const auto& member) {
           return std::any_cast<std::string>(member.second.get()) != nullptr;
         });
}

/// What a key gives: the translation of the part before the first equals sign, if there is one.
std::u16string Expected(const json::Dictionary& catalogue, const std::string& key) {
  const std::size_t sign = key.find('=');
  if (sign == std::string::npos) return UTF8to16(key);
  const std::string* const translation = json::FindText(catalogue, key.substr(0, sign));
  return UTF8to16(translation != nullptr && !translation->empty() ? *translation : key.substr(sign + 1));
}

/// "@0" and "@1" replaced, digit by digit: a number has no leading zero and at most four digits.
std::u16string Replace(const std::u16string& text, const std::array<std::u16string, 2>& values) {
  std::u16string result;
  std::size_t place = 0;
  while (place < text.size()) {
    const auto digitAt = [&](std::size_t index) {
      return index < text.size() && text[index] >= u'0' && text[index] <= u'9';
    };
    const bool isMark = text[place] == u'@' && digitAt(place + 1);
    const bool isZero = isMark && text[place + 1] == u'0';
    const bool isOne = isMark && text[place + 1] == u'1' && !digitAt(place + 2);
    result += isZero ? values[0] : isOne ? values[1] : std::u16string(1, text[place]);
    place += isZero || isOne ? 2 : 1;
  }
  return result;
}

void CheckKey(const std::string& key, const std::u16string& expected) {
  const std::u16string text = qelcore::Localise(key);
  Require(text == expected, "a key gives its translation, or what follows the first equals sign");
  const std::array<std::u16string, 2> values{u"first @1", u""};
  Require(qelcore::ReplacePlaceholders(text, {values[0], values[1]}) == Replace(text, values),
          "placeholders are replaced once, from left to right");
  Require(qelcore::ReplacePlaceholders(text, {}) == text, "places without a value stay");
  const std::string inUTF8 = UTF16to8(text);
  Require(UTF16to8(UTF8to16(inUTF8)) == inUTF8, "a text can be written as UTF-8");
}

/// A catalogue is read anew when the language changes.
std::string OtherLanguage() {
  static bool isFirst = false;
  isFirst = !isFirst;
  return isFirst ? "qa_QA" : "qb_QB";
}

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"$$$/qel/scr/kURL",
                                                "$$$/qel/scr/kURL=URL:",
                                                "$$$/a=b=c",
                                                "=",
                                                "@0",
                                                "@1",
                                                "@10",
                                                "@00",
                                                "@12345",
                                                "@",
                                                "\n\n",
                                                "\xF0\x9F\x98\x80",
                                                ""};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost& host = fuzz::QuietHost::Instance();
  const std::filesystem::path folder = host.Application() / "translations";
  std::filesystem::create_directories(folder);
  const std::string language = OtherLanguage();
  const std::string text(data, data + size);
  fuzz::WriteFile(folder / (language + ".json"), text);
  qelcore::host::SetApplicationLanguage(language);
  static_cast<void>(host.TakeExceptions());

  const std::any root = json::Parse(text);
  const bool isCatalogue = IsCatalogue(root);
  CheckKey("$$$/not/there=@0 and @1 = all", u"@0 and @1 = all");
  if (const auto* const object = std::any_cast<json::Dictionary>(&root)) {
    for (const auto& member : *object) {
      const std::string& key = member.first;
      CheckKey(key, Expected(isCatalogue ? *object : json::Dictionary(), key));
      CheckKey(key + "=The @0 default",
               Expected(isCatalogue ? *object : json::Dictionary(), key + "=The @0 default"));
    }
  }
  Require(host.TakeExceptions().size() <= 1, "a catalogue is refused once");
  return 0;
}
