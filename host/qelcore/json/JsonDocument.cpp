#include <simdjson.h>

#include <bit>
#include <new>
#include <optional>
#include <utility>

#include "host/qelcore/json/JsonText.h"
#include "host/qelcore/json/LongArray.h"
#include "platform/qelcore/JsonView.h"

namespace qelcore::json {

namespace {

namespace dom = simdjson::dom;

/// What is parsed at once takes up to twelve times its text in memory.
constexpr std::size_t kLongestPart = 33'554'432;

/// Counts as `Parse` does.
std::size_t CountValues(const dom::element& value) {
  std::size_t count = 1;
  dom::array elements;
  dom::object members;
  if (value.get(elements) == simdjson::SUCCESS) {
    for (const dom::element element : elements) count += CountValues(element);
  } else if (value.get(members) == simdjson::SUCCESS) {
    for (const auto& member : members) count += CountValues(member.value);
  }
  return count;
}

/// Parses a part of a text, again and again in the same memory.
class PartParser {
 public:
  /// The value of a text, which lives until the next one. Nothing when it is not sound or cannot be parsed
  /// here.
  std::optional<dom::element> Parse(std::string& text) {
    // So much is read behind the end.
    text.reserve(text.size() + simdjson::SIMDJSON_PADDING);
    dom::element value;
    // The parser does not count an innermost array or object that is empty, so it gets one level less.
    simdjson::error_code code = simdjson::SUCCESS;
    if (mParser.capacity() < text.size()) code = mParser.allocate(text.size(), kDeepestLevel - 1);
    if (code == simdjson::SUCCESS) {
      code = mParser.parse_into_document(mDocument, text.data(), text.size(), false).get(value);
    }
    if (code == simdjson::MEMALLOC) throw std::bad_alloc();
    return code == simdjson::SUCCESS ? std::optional(value) : std::nullopt;
  }

 private:
  dom::parser mParser{kLongestPart};
  dom::document mDocument;
};

}  // namespace

struct Document::Content {
  PartParser mParser;
  std::optional<dom::element> mRoot;  ///< in which the long array is empty
  std::vector<std::size_t> mOffsets;  ///< of the long array's pieces in the text

  void Read(std::string_view text, std::string_view longArray, std::size_t pieceLength, Cutting cutting) {
    auto offsets = CutLongArray(text, longArray, pieceLength, cutting);
    if (!offsets) return;
    const std::size_t before = offsets->empty() ? text.size() : offsets->front();
    const std::size_t behind = offsets->empty() ? text.size() : offsets->back();
    if (before + text.size() - behind > kLongestPart) return;
    std::string rest(text.substr(0, before));
    rest += text.substr(behind);
    mRoot = mParser.Parse(rest);
    mOffsets = std::move(*offsets);
  }
};

Document::Document(std::string text, std::string_view longArray, Cutting cutting, std::size_t pieceLength)
    : mText(std::move(text)), mContent(std::make_unique<Content>()) {
  const std::string_view content = WithoutByteOrderMark(mText);
  if (content.size() <= kLongestText) mContent->Read(content, longArray, pieceLength, cutting);
}

LeftToParse::LeftToParse() : std::runtime_error("this text has to be parsed as a whole") {}
LeftToParse::~LeftToParse() = default;

Document::~Document() = default;

View Document::Root() const {
  return mContent->mRoot ? View(std::bit_cast<View::Place>(*mContent->mRoot)) : View();
}

void Document::VisitElements(const std::function<void(const View&)>& visit) const {
  const auto check = [](bool isSound) {
    if (!isSound) throw LeftToParse();
  };
  check(mContent->mRoot.has_value());
  const std::string_view content = WithoutByteOrderMark(mText);
  // A value takes two bytes at least.
  const bool countsValues = content.size() / 2 >= kMostValues;
  std::size_t valueCount = countsValues ? CountValues(*mContent->mRoot) : 0;
  check(valueCount <= kMostValues);
  const std::vector<std::size_t>& offsets = mContent->mOffsets;
  PartParser parser;
  std::string piece;
  for (std::size_t index = 1; index < offsets.size(); ++index) {
    const std::size_t begin = offsets[index - 1] + (index > 1 ? 1 : 0);
    check(offsets[index] - begin <= kLongestPart);
    piece.assign(1, '[').append(content.substr(begin, offsets[index] - begin)).append(1, ']');
    const std::optional<dom::element> parsed = parser.Parse(piece);
    dom::array elements;
    check(parsed && parsed->get(elements) == simdjson::SUCCESS);
    check(elements.size() > 0 || offsets.size() == 2);
    if (countsValues) valueCount += CountValues(*parsed) - 1;
    check(valueCount <= kMostValues);
    for (const dom::element element : elements) visit(View(std::bit_cast<View::Place>(element)));
  }
}

}  // namespace qelcore::json
