// Reading JSON where it stands: one reader serves values in memory and texts that are walked through.
//
//   static constexpr std::array<std::string_view, 2> kKeys{"name", "osc_version"};
//   const auto [name, version] = json::View(value).Members(kKeys);
//   const std::optional<std::string_view> text = name.Text();
//
// A large text need not become a dictionary first: `WalkThroughObject` shows its values one after another.
#pragma once

#include <any>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qelcore/Export.h"

namespace qelcore::json {

struct TextNode;

/// A JSON value, or nothing, that somebody else owns: a `std::any` as `Json.h` describes it, or a value of a
/// text. A plain value. The typed reads throw `TypeError` when the value is of another type, as the typed
/// reads of dictionaries do; the views and texts that they return live as long as what is viewed.
class QELCORE_EXPORT View {
 public:
  /// Nothing, as the member that an object lacks.
  View() = default;

  explicit View(const std::any& value) : mValue(&value) {}
  explicit View(const TextNode& node) : mNode(&node) {}

  /// Whether there is a value at all.
  [[nodiscard]] bool IsThere() const { return mValue != nullptr || mNode != nullptr; }

  /// The members of an object that have these keys, and nothing for those that it lacks. Of two members with
  /// the same key the later one counts. Throws `TypeError` when the value is anything else, or nothing.
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
  void FindMembers(const std::string_view* keys, View* members, std::size_t count) const;
  [[noreturn]] void ThrowTypeError(const std::string& what, const char* expected) const;
  [[noreturn]] void ThrowTypeError(const char* expected) const;

  const std::any* mValue = nullptr;
  const TextNode* mNode = nullptr;
  std::string_view mKey;  ///< under which it was found, for messages
};

/// Sees the values of a text; each view lives until the function returns. Each function answers whether to go
/// on.
class QELCORE_EXPORT TextVisitor {
 public:
  virtual ~TextVisitor();

  /// A member of the object.
  [[nodiscard]] virtual bool OnMember(std::string_view key, const View& value) = 0;

  /// Instead of it, for an array whose elements are shown one by one: it begins, and an element of it.
  [[nodiscard]] virtual bool OnArray(std::size_t count) = 0;
  [[nodiscard]] virtual bool OnElement(const View& element) = 0;

 protected:
  TextVisitor() = default;
  TextVisitor(const TextVisitor&) = default;
  TextVisitor& operator=(const TextVisitor&) = default;
};

/// Shows the members of the object that a text holds, in the text's order, and the elements of the member
/// `arrayKey`, when that is an array, one by one. Returns true when the visitor wanted to see everything and
/// `Parse` would make an object of the text. That is only known at the end, so until then nothing should be
/// done that cannot be taken back; what the visitor throws goes through. A text with 64 bytes of capacity
/// behind its end is not copied.
[[nodiscard]] QELCORE_EXPORT bool WalkThroughObject(const std::string& text, std::string_view arrayKey,
                                                    TextVisitor& visitor);

}  // namespace qelcore::json
