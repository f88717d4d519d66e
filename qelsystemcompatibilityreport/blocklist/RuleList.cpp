#include "qelsystemcompatibilityreport/blocklist/RuleList.h"

#include <stdexcept>
#include <string>
#include <utility>

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
  const auto elements = array.Elements();
  if (mDocument != nullptr) {
    Visit([this](const SCRRule& rule) { Note(rule); });
  } else if (elements) {
    mHashes.reserve(elements->size());
    mRules.reserve(elements->size());
    for (const json::View& element : *elements) {
      SCRRule& rule = mRules.emplace_back();
      if (!rule.ReadRule(element)) throw std::runtime_error(DescribeInvalidRule(mHashes.size(), rule));
      Note(rule);
    }
  }
}

void RuleList::Note(const SCRRule& rule) {
  qelcore::GetHashResult(rule.Hash(), mHashes.emplace_back());
  mHasFileRule |= rule.GetType() == OSComponentType::kFile;
}

void RuleList::Visit(const std::function<void(const SCRRule&)>& visit) const {
  for (const SCRRule& rule : mRules) visit(rule);
  if (mDocument == nullptr) return;
  // One rule is read into again and again, so that its texts keep their room.
  SCRRule rule;
  mDocument->VisitElements([&](const json::View& element) {
    rule.Clear();
    if (!rule.ReadFields(element, SCRRule::WrongDependency::kThrow)) throw json::LeftToParse();
    visit(rule);
  });
}

}  // namespace qelsystemcompatibilityreport
