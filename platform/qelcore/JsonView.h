// Reading JSON where it stands: one reader serves values in memory and parsed texts.
//
//   static constexpr std::array<std::string_view, 2> kKeys{"name", "osc_version"};
//   const auto [name, version] = json::View(value).Members(kKeys);
//   const std::optional<std::string_view> text = name.Text();
//
// A large text need not become a dictionary first: a `Document` takes a tenth of the time, and little memory.
#pragma once

#include <any>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/qelcore/Export.h"

namespace qelcore::json {

/// A JSON value, or nothing, that somebody else owns: a `std::any` as `Json.h` describes it, or a value of a
/// `Document`. A plain value. The typed reads throw `TypeError` when the value is of another type, as the
/// typed reads of dictionaries do; the views and texts that they return live as long as what is viewed.
class QELCORE_EXPORT View {
 public:
  /// Nothing, as the member that an object lacks.
  View() = default;

  explicit View(const std::any& value) : mValue(&value) {}
  explicit View(std::any&& value) = delete;

  /// Whether there is a value at all.
  [[nodiscard]] bool IsThere() const { return mValue != nullptr || mPlace.mDocument != nullptr; }

  [[nodiscard]] bool IsObject() const;

  /// The members of an object that have these keys, and nothing for those that it lacks. Of two members with
  /// the same key the later one counts. Sorted keys are found fastest. The members keep the keys, for
  /// messages. Throws `TypeError` when the value is anything else, or nothing.
  template <std::size_t Count>
  [[nodiscard]] std::array<View, Count> Members(const std::array<std::string_view, Count>& keys) const {
    std::array<View, Count> members;
    FindMembers(keys.data(), members.data(), Count);
    return members;
  }

  // Each of these gives nothing when there is no value.

  [[nodiscard]] std::optional<std::string_view> Text() const;
  /// An integer's 64 bits, as `FindInteger` gives them.
  [[nodiscard]] std::optional<std::uint64_t> Integer() const;
  /// The elements of an array.
  [[nodiscard]] std::optional<std::vector<View>> Elements() const;
  /// The elements of an array that must all be strings.
  [[nodiscard]] std::optional<std::vector<std::string_view>> Texts() const;

 private:
  friend class Document;

  /// Where a value stands in a document; laid out as the parser does it.
  struct Place {
    const void* mDocument = nullptr;
    std::size_t mIndex = 0;
  };

  explicit View(const Place& place) : mPlace(place) {}

  void FindMembers(const std::string_view* keys, View* members, std::size_t count) const;
  [[nodiscard]] const char* Type() const;
  [[noreturn]] void ThrowTypeError(const std::string& what, const char* expected) const;
  [[noreturn]] void ThrowTypeError(const char* expected) const;

  const std::any* mValue = nullptr;
  Place mPlace;
  std::string_view mKey;  ///< under which it was found, for messages
};

/// A text that a `Document` does not read, which may be sound nevertheless.
class QELCORE_EXPORT LeftToParse : public std::runtime_error {
 public:
  LeftToParse();
  ~LeftToParse() override;
};

/// How a long array is cut into pieces: where lines begin as its first element's does, which takes no time
/// but may be inside of an element or behind the array, or, going through the whole array, surely between
/// elements.
enum class Cutting { kByLines, kSurely };

/// A text that is an object with one long array, which is parsed piece by piece. It takes little more memory
/// than the text.
///
///   const json::Document document(std::move(text), "blocklist", json::Cutting::kByLines);
///   const auto [version] = document.Root().Members(keys);
///   document.VisitElements([&](const json::View& element) { ... });
///
/// What it shows is what `Parse` would make, once `VisitElements` has ended without `LeftToParse`. Until then
/// the text need not even be JSON. Any number of threads may read a document.
class QELCORE_EXPORT Document {
 public:
  static constexpr std::size_t kUsualPieceLength = 32'768;

  /// Looks for the array that the object has at `longArray`, and parses what is around it. A piece holds as
  /// many elements as have that many bytes together.
  Document(std::string text, std::string_view longArray, Cutting cutting,
           std::size_t pieceLength = kUsualPieceLength);
  ~Document();

  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// The object, in which the long array is empty. Nothing for a text that is left to `Parse`: one that is
  /// not sound around the array, is no object, has the array's key twice or a key with escapes, more than 32
  /// MiB around the array, values nested 255 deep, or integers beyond 64 bits.
  [[nodiscard]] View Root() const;

  /// Shows each element of the long array in its order. What is seen of it lives until `visit` returns.
  /// Throws what `visit` throws, and `LeftToParse` when the text is left to `Parse`, for the reasons above or
  /// since it was cut in a wrong place.
  void VisitElements(const std::function<void(const View&)>& visit) const;

  /// Gives the text back, as the last thing that is done with the document.
  [[nodiscard]] std::string TakeText() { return std::move(mText); }

 private:
  struct Content;
  std::string mText;
  std::unique_ptr<Content> mContent;
};

}  // namespace qelcore::json
