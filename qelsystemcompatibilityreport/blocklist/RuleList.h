// The rules of a blocklist.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/qelcore/Guid.h"
#include "platform/qelcore/JsonView.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

using qelcore::Guid;

/// Rules in their order, which do not change.
///
/// Most runs only ask whether anything has changed and need no rule, so the rules of a text are not kept:
/// they are read once for their hashes, and once more when somebody visits them.
class RuleList {
 public:
  /// No rules.
  RuleList() = default;

  /// Reads the elements of an array of rules. Throws `std::runtime_error` when one of them cannot be read.
  /// `document` is the document whose long array it is, or null. With a document nothing is logged:
  /// `LeftToParse` or `TypeError` is thrown instead.
  RuleList(const qelcore::json::View& array, std::shared_ptr<const qelcore::json::Document> document);

  [[nodiscard]] std::size_t Size() const { return mHashes.size(); }

  /// The hash of each rule, in their order.
  [[nodiscard]] const std::vector<Guid>& Hashes() const { return mHashes; }

  [[nodiscard]] bool HasFileRule() const { return mHasFileRule; }

  /// Whether the rules are read from their document again when somebody visits them.
  [[nodiscard]] bool IsReadFromDocument() const { return mDocument != nullptr; }

  /// Shows each rule in their order. A rule that is shown is there for as long as `visit` runs. Throws when
  /// there is no memory to read the rules again, and what `visit` throws.
  void Visit(const std::function<void(const SCRRule&)>& visit) const;

 private:
  void Note(const SCRRule& rule);

  std::vector<SCRRule> mRules;  ///< empty when they are read from a document
  std::shared_ptr<const qelcore::json::Document> mDocument;
  std::vector<Guid> mHashes;
  bool mHasFileRule = false;
};

}  // namespace qelsystemcompatibilityreport
