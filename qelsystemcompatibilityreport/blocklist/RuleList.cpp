#include "qelsystemcompatibilityreport/blocklist/RuleList.h"

#include <stdexcept>
#include <string>

namespace qelsystemcompatibilityreport {

namespace json = qelcore::json;

namespace {

std::string DescribeInvalidRule(std::size_t index, const SCRRule& rule) {
  const std::string beginning =
      "element " + std::to_string(index) + " of \"blocklist\" is not a valid rule: ";
  if (rule.GetType() == OSComponentType::kInvalid) {
    return beginning + "\"name\" or \"type\" is missing or wrong, or \"version\" is not a text";
  }
  return beginning + "\"osblc_version\" is 0, or a key has the wrong type; its name is \"" + rule.GetName() +
         "\"";
}

}  // namespace

RuleList::RuleList(const json::View& array, std::shared_ptr<const json::Document> document)
    : mDocument(std::move(document)) {
  auto elements = array.Elements();
  if (!elements) return;
  mHashes.reserve(elements->size());
  // One rule is read into again and again, so that its texts keep their room.
  SCRRule rule;
  for (const json::View& element : *elements) {
    const std::size_t index = mHashes.size();
    rule.Clear();
    if (!rule.ReadRule(element)) throw std::runtime_error(DescribeInvalidRule(index, rule));
    qelcore::GetHashResult(rule.Hash(), mHashes.emplace_back());
    mHasFileRule |= rule.GetType() == OSComponentType::kFile;
    // A dependency that cannot be read is logged, which must not happen once more.
    if (mDocument == nullptr || !rule.GetDependencies().empty()) {
      mKeptRules.emplace_back(index, std::move(rule));
      rule = SCRRule();
    }
  }
  if (mDocument != nullptr) mElements = std::move(*elements);
}

void RuleList::Visit(const std::function<void(const SCRRule&)>& visit) const {
  auto kept = mKeptRules.begin();
  SCRRule rule;
  for (std::size_t index = 0; index < mHashes.size(); ++index) {
    if (kept != mKeptRules.end() && kept->first == index) {
      visit(kept->second);
      ++kept;
    } else {
      rule.Clear();
      // It could be read before; half of a rule would hit too much.
      if (!rule.ReadRule(mElements[index])) throw std::runtime_error(DescribeInvalidRule(index, rule));
      visit(rule);
    }
  }
}

}  // namespace qelsystemcompatibilityreport
