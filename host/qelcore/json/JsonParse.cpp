#include <simdjson.h>
#include <utf8.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "host/qelcore/json/JsonNumber.h"
#include "host/qelcore/json/JsonText.h"
#include "platform/qelcore/Json.h"

namespace qelcore::json {

namespace {

namespace ondemand = simdjson::ondemand;

const char* MessageFor(simdjson::error_code code) {
  switch (code) {
    case simdjson::EMPTY:
      return "The text is empty.";
    case simdjson::UTF8_ERROR:
      return "The text is not UTF-8.";
    case simdjson::UNESCAPED_CHARS:
      return "A string holds a control character.";
    case simdjson::UNCLOSED_STRING:
      return "A string is not closed.";
    case simdjson::STRING_ERROR:
      return "A string holds an escape that stands for no character.";
    case simdjson::INCOMPLETE_ARRAY_OR_OBJECT:
      return "An array or object is not closed.";
    case simdjson::CAPACITY:
      return "The text is too long.";
    case simdjson::MEMALLOC:
      return "There is not enough memory.";
    default:
      return "Something else is expected here.";
  }
}

/// The offset of the control character inside a string, or of the quotation mark that opens a string without
/// end; nothing when all strings are sound. This pass is for texts that failed already.
std::optional<std::size_t> FindStringFault(std::string_view text) {
  std::size_t index = 0;
  while (index < text.size()) {
    if (text[index++] != '"') {
      continue;
    }
    const std::size_t opening = index - 1;
    while (index < text.size() && text[index] != '"') {
      if (static_cast<unsigned char>(text[index]) < 0x20) {
        return index;
      }
      index += text[index] == '\\' ? 2 : 1;
    }
    if (index >= text.size()) {
      return opening;
    }
    ++index;
  }
  return std::nullopt;
}

/// Walks the parser's tokens and builds the value. Every token is looked at, so that nothing goes unchecked.
class Reader {
 public:
  explicit Reader(std::string_view text) : mText(text), mPadded(text) {}

  /// The whole text's value, or an empty one.
  std::any Read() {
    std::any result;
    ondemand::document document;
    simdjson::error_code code = mParser.iterate(mPadded).get(document);
    if (code != simdjson::SUCCESS) {
      FailInText(code);
      return {};
    }
    return ReadDocument(document, result) ? result : std::any();
  }

  [[nodiscard]] const std::string& Message() const { return mMessage; }

  /// Where the fault is, as an offset into the text.
  [[nodiscard]] std::optional<std::size_t> Place() const { return mPlace; }

 private:
  bool ReadDocument(ondemand::document& document, std::any& result) {
    ondemand::json_type type{};
    if (const auto code = document.type().get(type); code != simdjson::SUCCESS) {
      return Fail(code, FirstToken());
    }
    if (type == ondemand::json_type::array || type == ondemand::json_type::object) {
      const bool isRead = type == ondemand::json_type::array ? ReadArray(document, 1, result)
                                                             : ReadObject(document, 1, result);
      return isRead && CheckNothingFollows(document);
    }
    if (type == ondemand::json_type::string) {
      return ReadString(document, result) && CheckNothingFollows(document);
    }
    // A lone number, boolean or null is the whole text, which leaves no room for anything behind it.
    return ReadAtom(type, Trim(mText), FirstToken(), result);
  }

  bool CheckNothingFollows(ondemand::document& document) {
    const char* place = nullptr;
    const bool isAtEnd = document.current_location().get(place) == simdjson::OUT_OF_BOUNDS;
    return isAtEnd || Fail("Something follows the value.", place);
  }

  bool ReadValue(ondemand::value value, int level, std::any& result) {
    ondemand::json_type type{};
    const char* const place = value.raw_json_token().data();
    if (++mValueCount > kMostValues) {
      return Fail("The text holds too many values.", place);
    }
    if (const auto code = value.type().get(type); code != simdjson::SUCCESS) {
      return Fail(code, place);
    }
    switch (type) {
      case ondemand::json_type::array:
        return ReadArray(value, level + 1, result);
      case ondemand::json_type::object:
        return ReadObject(value, level + 1, result);
      case ondemand::json_type::string:
        return ReadString(value, result);
      default:
        // The token is left to the parser, which skips it on the way to the next one.
        return ReadAtom(type, Trim(value.raw_json_token()), place, result);
    }
  }

  template <typename Source>
  bool ReadArray(Source& source, int level, std::any& result) {
    ondemand::array elements;
    if (!CheckLevel(level, source) || !Take(source.get_array(), source, elements)) {
      return false;
    }
    Array array;
    for (auto next : elements) {
      ondemand::value element;
      if (!Take(std::move(next), source, element)) {
        return false;
      }
      if (!ReadValue(element, level, array.emplace_back())) {
        return false;
      }
    }
    result = std::move(array);
    return true;
  }

  template <typename Source>
  bool ReadObject(Source& source, int level, std::any& result) {
    ondemand::object members;
    if (!CheckLevel(level, source) || !Take(source.get_object(), source, members)) {
      return false;
    }
    Dictionary object;
    for (auto next : members) {
      ondemand::field field;
      std::string_view key;
      if (!Take(std::move(next), source, field) || !Take(field.unescaped_key(), source, key)) {
        return false;
      }
      auto value = std::make_shared<std::any>();
      // The key's text lives in the parser until the document ends, so it outlasts the nested read.
      if (!ReadValue(field.value(), level, *value)) {
        return false;
      }
      object.insert_or_assign(std::string(key), std::move(value));
    }
    result = std::move(object);
    return true;
  }

  template <typename Source>
  bool ReadString(Source& source, std::any& result) {
    std::string_view text;
    const char* const place = TokenOf(source);
    if (const auto code = source.get_string().get(text); code != simdjson::SUCCESS) {
      return Fail(code, place);
    }
    result = std::string(text);
    return true;
  }

  bool ReadAtom(ondemand::json_type type, std::string_view token, const char* place, std::any& result) {
    if (type == ondemand::json_type::number) {
      result = ReadNumber(token);
      return result.has_value() || Fail("This is not a number, or it is too large.", place);
    }
    if (token == "true" || token == "false") {
      result = token == "true";
      return true;
    }
    if (token == "null") {
      result = nullptr;
      return true;
    }
    return Fail("This is not a value.", place);
  }

  template <typename Source>
  bool CheckLevel(int level, Source& source) {
    return level <= kDeepestLevel || Fail("The value is nested too deeply.", TokenOf(source));
  }

  /// Takes the value out of a parser's result, or notes the fault.
  template <typename Result, typename Source, typename Value>
  bool Take(Result&& result, Source& source, Value& value) {
    const simdjson::error_code code = std::forward<Result>(result).get(value);
    return code == simdjson::SUCCESS || Fail(code, LocationIn(source));
  }

  const char* FirstToken() const {
    const std::size_t begin = mText.find_first_not_of(kWhiteSpace);
    return mPadded.data() + (begin == std::string_view::npos ? 0 : begin);
  }

  const char* TokenOf(const ondemand::document&) const { return FirstToken(); }
  static const char* TokenOf(ondemand::value& value) { return value.raw_json_token().data(); }

  /// Where the parser stands; null when it does not say.
  template <typename Source>
  static const char* LocationIn(Source& source) {
    const char* location = nullptr;
    return source.current_location().get(location) == simdjson::SUCCESS ? location : nullptr;
  }

  bool Fail(simdjson::error_code code, const char* place) { return Fail(MessageFor(code), place); }

  bool Fail(const char* message, const char* place) {
    mMessage = message;
    const char* const begin = mPadded.data();
    if (place != nullptr && place >= begin && place <= begin + mText.size()) {
      mPlace = static_cast<std::size_t>(place - begin);
    }
    return false;
  }

  /// Notes a fault that the parser's first pass found, which does not say where.
  void FailInText(simdjson::error_code code) {
    mMessage = MessageFor(code);
    if (code == simdjson::UTF8_ERROR) {
      mPlace = utf8::find_invalid(mText);
    } else if (code == simdjson::UNCLOSED_STRING || code == simdjson::UNESCAPED_CHARS) {
      mPlace = FindStringFault(mText);
    }
  }

  std::string_view mText;
  simdjson::padded_string mPadded;
  ondemand::parser mParser;
  std::size_t mValueCount = 1;  ///< the whole text's value is the first
  std::string mMessage;
  std::optional<std::size_t> mPlace;
};

ParseError Describe(std::string_view text, const std::string& message, std::optional<std::size_t> place) {
  ParseError error{.mMessage = message};
  if (place) {
    const std::string_view before = text.substr(0, *place);
    const std::size_t lineFeed = before.rfind('\n');
    error.mLine = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    error.mColumn = lineFeed == std::string_view::npos ? before.size() + 1 : before.size() - lineFeed;
  }
  return error;
}

}  // namespace

std::any Parse(std::string_view text, ParseError* error) {
  text = WithoutByteOrderMark(text);
  if (text.size() > kLongestText) {
    if (error != nullptr) {
      *error = Describe(text, MessageFor(simdjson::CAPACITY), std::nullopt);
    }
    return {};
  }
  Reader reader(text);
  std::any result = reader.Read();
  if (!result.has_value() && error != nullptr) {
    *error = Describe(text, reader.Message(), reader.Place());
  }
  return result;
}

}  // namespace qelcore::json
