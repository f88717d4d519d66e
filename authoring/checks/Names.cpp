// Names, and the expressions that names and operands are.
#include <string>
#include <string_view>

#include "authoring/checks/Checks.h"
#include "authoring/model/Matcher.h"
#include "authoring/model/NameShape.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

class NameCheck {
 public:
  NameCheck(Document& document, ExpressionJudge& judge, std::size_t index, const RuleElement& rule)
      : mDocument(document), mJudge(judge), mIndex(index), mRule(rule) {}

  void Run() {
    if (mRule.mName.empty()) {
      Add(Code::kEmptyName, *mRule.mNode->Find("name"), "the name is empty, and an empty name never matches",
          "Write what the rule is about.");
    } else if (mRule.HasExpressionAsName()) {
      CheckName(*mRule.mNode->Find("name"));
    }
    const JsonNode* const operand = mRule.IsProperty() ? mRule.mNode->Find("regex") : nullptr;
    if (operand != nullptr) CheckExpression(*operand);
  }

 private:
  void Add(Code code, const JsonNode& node, std::string what, std::string mend) {
    mDocument.AddToRule(mIndex, code, node.mOffset, std::move(what), std::move(mend));
  }

  void CheckName(const JsonNode& node) {
    const std::string& name = node.mText;
    if (const std::string expression = FromShellPattern(name); !expression.empty()) {
      Add(Code::kPartOfName, node, "the \"*\" of the name " + Quoted(name) + " does not stand for any text",
          "Write " + AsJson(expression) + '.');
    } else if (LooksLikeExpression(name)) {
      CheckExpression(node);
    } else if (HasSigns(name)) {
      CheckPlainName(node);
    } else if (IsPartOfDeviceName(name)) {
      Add(Code::kPartOfName, node,
          "the name " + Quoted(name) + " is one word, and a device is hit only by its whole name",
          "Write " + AsJson("^.*\\b" + name + "\\b.*$") + " for every name that holds the word, or " +
              AsJson('^' + name + '$') + " when it is the whole name.");
    }
  }

  [[nodiscard]] bool IsPartOfDeviceName(const std::string& name) const {
    // The reference host lists the driver of this name beside the video devices.
    return mRule.mKind != OSComponentType::kOS && name != "Mesa" && IsOneWord(name);
  }

  void CheckPlainName(const JsonNode& node) {
    const std::string exact = AsJson('^' + Escape(node.mText) + '$');
    const ExpressionVerdict& verdict = mJudge.Judge(node.mText);
    if (verdict.mIsRefused) {
      CheckExpression(node);
      return;
    }
    if (verdict.mIsMalformed) {
      Add(Code::kMalformedPlainName, node,
          "the name " + Quoted(node.mText) +
              " hits a component of exactly this name, but is tried as an expression on "
              "every other, and logged each time because it is none: " +
              verdict.mReason,
          "Write " + exact + '.');
      return;
    }
    Add(Code::kPlainNameWithSigns, node,
        "the name " + Quoted(node.mText) +
            " hits a component of exactly this name; as an expression, which it is tried "
            "as on every other, its signs mean something else",
        "Nothing need change. " + exact + " says the same without the second meaning.");
  }

  void CheckExpression(const JsonNode& node) {
    const std::string& expression = node.mText;
    const std::string quoted = "the expression " + Quoted(expression);
    const ExpressionVerdict& verdict = mJudge.Judge(expression);
    if (verdict.mIsMalformed) {
      Add(Code::kMalformedExpression, node, quoted + " is malformed and never matches: " + verdict.mReason,
          "A sign that stands for itself needs a backslash, which JSON wants twice: \"\\\\(\".");
    } else if (verdict.mIsRefused) {
      Add(Code::kRefusedExpression, node, quoted + " is refused and never matches: " + verdict.mReason,
          "Write alternatives as several rules, \"[0-9]+\" for a large count, and no references back to a "
          "group.");
    } else {
      CheckMeaning(node, quoted);
    }
  }

  void CheckMeaning(const JsonNode& node, const std::string& quoted) {
    const std::string& expression = node.mText;
    if (const std::string literal = FindLiteralBrackets(expression); !literal.empty()) {
      const std::string letters = literal.substr(1, literal.size() - 2);
      Add(Code::kLiteralBrackets, node,
          quoted + " holds " + Quoted(literal) + ", a group that matches " + Quoted(letters) +
              " without its brackets",
          "Write " + AsJson(EscapeLiteralBrackets(expression)) + '.');
    }
    if (const std::string whole = Complete(expression); !whole.empty()) {
      Add(Code::kPartOfName, node,
          quoted + " must match the whole text, and is written as if it were searched for",
          "Write " + AsJson(whole) + '.');
    }
    if (HasLetterInBrackets(expression)) {
      Add(Code::kLetterInBrackets, node,
          quoted +
              " holds a letter beyond ASCII inside brackets, which are read byte by byte and match a part of "
              "it",
          "Write the letters as alternatives, such as \"(ä|ö)\".");
    }
  }

  Document& mDocument;
  ExpressionJudge& mJudge;
  std::size_t mIndex;
  const RuleElement& mRule;
};

}  // namespace

void CheckNames(Document& document) {
  ExpressionJudge judge;
  ForEachRule(document, [&](std::size_t index, const RuleElement& rule) {
    NameCheck(document, judge, index, rule).Run();
  });
}

}  // namespace authoring
