// A blocklist as its author sees it: every value with its place, whether the library reads it or not.
#pragma once

#include <any>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "authoring/findings/Finding.h"
#include "authoring/json/JsonTree.h"
#include "authoring/json/TextPlaces.h"
#include "authoring/model/InformedRule.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

namespace authoring {

using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::VersionRange;

/// A range, and the text of "versions" or "version" that it was read from.
struct RangeElement {
  VersionRange mRange;
  const JsonNode* mNode = nullptr;
};

/// One rule or dependency. The pointers point into the document's tree.
struct RuleElement {
  const JsonNode* mNode = nullptr;
  bool mIsReadable = false;  ///< the library reads it; else only the node is of use
  OSComponentType mKind = OSComponentType::kInvalid;
  std::string mName;
  std::vector<RangeElement> mRanges;
  OSComponentVersion mMask;
  OSComponentVersion mModulus;
  std::vector<RuleElement> mDependencies;

  [[nodiscard]] bool IsProperty() const { return mKind == OSComponentType::kProperty; }
  [[nodiscard]] bool IsFile() const { return mKind == OSComponentType::kFile; }

  /// Whether its name is tried as an expression.
  [[nodiscard]] bool HasExpressionAsName() const { return !IsProperty() && !IsFile(); }
};

class Document {
 public:
  /// Reads the text of a file. What keeps it from being read at all becomes a finding.
  Document(std::string path, std::string text);

  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  [[nodiscard]] const std::string& Path() const { return mPath; }

  /// Null when the text is not a JSON object.
  [[nodiscard]] const JsonNode* Root() const { return mRoot ? &*mRoot : nullptr; }

  /// The elements of "blocklist", in order.
  [[nodiscard]] const std::vector<RuleElement>& Rules() const { return mRules; }
  void SetRules(std::vector<RuleElement> rules) { mRules = std::move(rules); }

  /// Whether the library keeps the rules: it reads all of them or none.
  [[nodiscard]] bool HasReadableRules() const;

  /// The default texts of one of the six kinds; empty where there are none.
  [[nodiscard]] const DefaultTexts& DefaultsOf(OSComponentType kind) const {
    return mDefaults.at(static_cast<std::size_t>(kind));
  }

  /// The element as the libraries read it.
  [[nodiscard]] const std::any& RuleValue(std::size_t index) const;

  /// Adds a finding about the document. After 10,000 findings they are only counted.
  void Add(Code code, std::size_t offset, std::string what, std::string mend);

  /// Adds one about a rule, or about a dependency of it.
  void AddToRule(std::size_t rule, Code code, std::size_t offset, std::string what, std::string mend);

  /// The findings so far, by place.
  [[nodiscard]] Findings SortedFindings() const;

 private:
  void AddNotJson(const qelcore::json::ParseError& error);
  void ReadDefaults();
  void Add(std::optional<std::size_t> rule, Code code, std::size_t offset, std::string what,
           std::string mend);

  std::string mPath;
  std::string mText;
  TextPlaces mPlaces;
  std::any mValue;
  std::optional<JsonNode> mRoot;
  std::array<DefaultTexts, qelcore::utility::kOSComponentTypeCount> mDefaults;
  std::vector<RuleElement> mRules;
  Findings mFindings;
  bool mHasErrors = false;
  std::size_t mUntold = 0;  ///< findings that came after so many
};

}  // namespace authoring
