// The comparisons of property rules.
#include <algorithm>
#include <string>
#include <string_view>

#include "authoring/checks/Checks.h"
#include "authoring/model/Comparisons.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

/// Digits with points between them, which nobody orders byte by byte. A date is something else.
bool IsNumber(std::string_view text) {
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  return !text.empty() && isDigit(text.front()) && isDigit(text.back()) &&
         std::all_of(text.begin(), text.end(),
                     [&](char character) { return isDigit(character) || character == '.'; });
}

class PropertyCheck {
 public:
  PropertyCheck(Document& document, std::size_t index, const RuleElement& rule)
      : mDocument(document), mIndex(index), mNode(*rule.mNode) {}

  void Run(bool isDependency) {
    const ComparedValues values(mNode);
    if (!values.HasComparisons() && !isDependency) {
      mDocument.AddToRule(mIndex, Code::kNoComparison, mNode.mOffset,
                          "the rule has no comparison and matches every value of the property", "");
    }
    if (values.AreMixed()) {
      TellOfMixture();
      return;
    }
    CheckTexts();
    CheckIntegers();
    if (values.AreEmpty()) {
      mDocument.AddToRule(mIndex, Code::kImpossibleComparisons, mNode.mOffset,
                          "no value satisfies all comparisons of the rule",
                          "Look for two that contradict each other.");
    } else if (const auto expression = values.FindContradiction()) {
      mDocument.AddToRule(mIndex, Code::kImpossibleComparisons, mNode.mOffset,
                          "no value satisfies all comparisons of the rule: the expression " +
                              Quoted(*expression) + " does not match the only text that the others leave",
                          "Take one of them out.");
    }
  }

 private:
  void TellOfMixture() {
    for (const std::string_view key : IntegerComparisonKeys()) {
      const JsonMember* const member = mNode.FindMember(key);
      if (member == nullptr) continue;
      mDocument.AddToRule(
          mIndex, Code::kMixedComparisons, member->mKeyOffset,
          Quoted(key) + " is not evaluated: the rule has a text comparison, and then these decide alone",
          "Put it into a dependency on the same property.");
    }
  }

  void CheckTexts() {
    for (const std::string_view key : {"lt", "lte", "gt", "gte"}) {
      const JsonNode* const operand = mNode.Find(key);
      if (operand == nullptr || !IsNumber(operand->mText)) continue;
      mDocument.AddToRule(mIndex, Code::kNumbersAsText, operand->mOffset,
                          Quoted(key) + " compares texts, and as texts \"10\" is less than \"9\"",
                          "Write \"i" + std::string(key) + "\" to compare whole numbers.");
    }
  }

  void CheckIntegers() {
    for (const std::string_view key : IntegerComparisonKeys()) {
      const JsonNode* const operand = mNode.Find(key);
      if (operand == nullptr || IsInteger(operand->mText)) continue;
      mDocument.AddToRule(mIndex, Code::kOperandNoInteger, operand->mOffset,
                          "the operand " + Quoted(operand->mText) + " of \"" + std::string(key) +
                              "\" is no integer of 64 bits, and is read as " +
                              std::to_string(ToInteger(operand->mText)),
                          "Write digits only, with a sign if need be.");
    }
  }

  Document& mDocument;
  std::size_t mIndex;
  const JsonNode& mNode;
};

}  // namespace

void CheckProperties(Document& document) {
  ForEachRule(document, [&](std::size_t index, const RuleElement& rule) {
    const bool isDependency = &document.Rules()[index] != &rule;
    if (rule.IsProperty()) PropertyCheck(document, index, rule).Run(isDependency);
  });
}

}  // namespace authoring
