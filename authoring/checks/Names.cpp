// Names, and the expressions that names and operands are.
#include <string>
#include <string_view>

#include "authoring/checks/Checks.h"
#include "authoring/model/ControlCharacters.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/KnownSystems.h"
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
    const JsonNode& name = *mRule.mNode->Find("name");
    if (mRule.mName.empty()) {
      Add(Code::kEmptyName, name, "the name is empty, and an empty name never matches",
          "Write what the rule is about.");
    } else if (!HasControlCharacter(name, "name", mRule.HasExpressionAsName()) &&
               mRule.HasExpressionAsName()) {
      CheckName(name);
    }
    if (mRule.IsProperty()) CheckOperands();
  }

 private:
  void CheckOperands() {
    for (const auto keys : {TextComparisonKeys(), IntegerComparisonKeys()}) {
      for (const std::string_view key : keys) {
        const JsonNode* const operand = mRule.mNode->Find(key);
        if (operand == nullptr) continue;
        const bool isExpression = key == "regex";
        if (!HasControlCharacter(*operand, "operand", isExpression) && isExpression)
          CheckExpression(*operand);
      }
    }
  }

  /// Tells of one. What else seems wrong with such a text follows from it.
  bool HasControlCharacter(const JsonNode& node, const char* what, bool isExpression) {
    const std::string& text = node.mText;
    const auto character = isExpression ? FindControlCharacterOfExpression(text) : FindControlCharacter(text);
    if (!character) return false;
    const std::string meant = WithBackslashes(text);
    Add(Code::kControlCharacter, node,
        std::string("the ") + what + " holds " + NameOfControlCharacter(*character) +
            ", which no name, path or value has",
        meant.empty()
            ? "Take it out."
            : "Did you mean " + AsJson(meant) + "? JSON wants a backslash that stands for itself twice.");
    return true;
  }

  void Add(Code code, const JsonNode& node, std::string what, std::string mend) {
    mDocument.AddToRule(mIndex, code, node.mOffset, std::move(what), std::move(mend));
  }

  void CheckName(const JsonNode& node) {
    const std::string& name = node.mText;
    if (mRule.mKind == OSComponentType::kOS && IsNameOfNoSystem(node)) return;
    if (const std::string expression = FromShellPattern(name); !expression.empty()) {
      Add(Code::kPartOfName, node, "the \"*\" of the name " + Quoted(name) + " does not stand for any text",
          "Write " + AsJson(expression) + '.');
    } else if (LooksLikeExpression(name)) {
      CheckExpression(node);
    } else if (HasSigns(name)) {
      CheckPlainName(node);
    } else if (mRule.mKind == OSComponentType::kVideo && IsNameOfSeries(name)) {
      Add(Code::kPartOfName, node,
          "the name " + Quoted(name) +
              " is a part of the names of graphics cards, and a device is hit only by its whole name",
          "Write " + AsJson("^.*\\b" + name + "\\b.*$") + " for every name that holds it, or " +
              AsJson('^' + name + '$') + " when it is the whole name.");
    } else if (IsPartOfDeviceName(name)) {
      Add(Code::kPartOfName, node,
          "the name " + Quoted(name) + " is one word, and a device is hit only by its whole name",
          "Write " + AsJson("^.*\\b" + name + "\\b.*$") + " for every name that holds the word, or " +
              AsJson('^' + name + '$') + " when it is the whole name.");
    }
  }

  /// Whether it is one, which is told.
  bool IsNameOfNoSystem(const JsonNode& node) {
    std::string_view name = node.mText;
    if (name.starts_with('^') && name.ends_with('$')) name = name.substr(1, name.size() - 2);
    if (const auto system = SystemInOtherCase(name)) {
      Add(Code::kNameOfNoSystem, node,
          "the system is called " + Quoted(*system) + ", and upper and lower case must be the same",
          "Write " + AsJson(*system) + '.');
      return true;
    }
    // What excludes a name has it in it, too.
    const bool isExclusion =
        name.find("(?!") != std::string_view::npos || name.find("[^") != std::string_view::npos;
    if (!SpeaksOfWindows(name) || isExclusion || !mJudge.Judge(node.mText).IsSound() ||
        HitsName(OSComponentType::kOS, node.mText, std::string(kWindows)))
      return false;
    Add(Code::kNameOfNoSystem, node,
        "the name " + Quoted(node.mText) + " does not hit \"Windows\", as every Windows is called",
        "Write \"Windows\", and what tells them apart under \"versions\": Windows 10 is "
        "\"10.0-10.0.21999.+\", Windows 11 is \"10.0.22000-10.0.+\".");
    return true;
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
