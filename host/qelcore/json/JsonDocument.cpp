#include <simdjson.h>

#include <bit>
#include <optional>

#include "host/qelcore/json/JsonText.h"
#include "platform/qelcore/JsonView.h"

namespace qelcore::json {

namespace {

namespace dom = simdjson::dom;

/// A document takes up to twelve times its text in memory while it is parsed.
constexpr std::size_t kLongestDocument = 33'554'432;

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

bool HoldsTooManyValues(std::string_view text, const dom::element& root) {
  // A value takes two bytes at least.
  return text.size() / 2 >= kMostValues && CountValues(root) > kMostValues;
}

}  // namespace

struct Document::Content {
  dom::document mDocument;
  std::optional<dom::element> mRoot;
};

Document::Document(const std::string& text) {
  const std::string_view content = WithoutByteOrderMark(text);
  if (content.size() > kLongestDocument) return;
  auto parsed = std::make_unique<Content>();
  const bool isCopied = text.capacity() - text.size() < simdjson::SIMDJSON_PADDING;
  dom::parser parser(kLongestDocument);
  dom::element root;
  // The parser does not count an innermost array or object that is empty, so it gets one level less.
  if (parser.allocate(content.size(), kDeepestLevel) == simdjson::SUCCESS &&
      parser.parse_into_document(parsed->mDocument, content.data(), content.size(), isCopied).get(root) ==
          simdjson::SUCCESS &&
      !HoldsTooManyValues(content, root)) {
    parsed->mRoot = root;
  }
  mContent = std::move(parsed);
}

Document::~Document() = default;

View Document::Root() const {
  if (!mContent || !mContent->mRoot) return {};
  return View(std::bit_cast<View::Place>(*mContent->mRoot));
}

}  // namespace qelcore::json
