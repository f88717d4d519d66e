// Examples beside rules: components that the rule has to hit or to miss.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "authoring/checks/Checks.h"
#include "authoring/checks/Keys.h"
#include "authoring/explain/ExplanationBuilder.h"
#include "authoring/explain/Sentences.h"
#include "authoring/model/Matcher.h"
#include "authoring/model/Words.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

namespace json = qelcore::json;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::string_view kExampleKeys[] = {"hits", "misses", "comment"};
constexpr std::string_view kComponentKeys[] = {"name",        "type", "version", "value",
                                               "osc_version", "with", "comment"};

/// Hears why one component is missed.
class ExampleObserver : public ExplanationBuilder {
 public:
  using IsExample = std::function<bool(const std::shared_ptr<OSComponent>&)>;

  explicit ExampleObserver(IsExample isExample) : mIsExample(std::move(isExample)) {}

  std::optional<Explanation> mExplanation;

 protected:
  bool WantsRule(std::size_t, const SCRRule&) override { return true; }
  bool WantsCandidate(const std::shared_ptr<OSComponent>& component) override {
    return mIsExample(component);
  }
  void Take(Explanation& explanation) override { mExplanation = std::move(explanation); }
  void EndOfRule() override {}

 private:
  IsExample mIsExample;
};

/// The machine of one example: the component, and those that stand beside it under "with".
class ExampleMachine {
 public:
  ExampleMachine(const OSComponent& component, const std::vector<OSComponent>& others)
      : mComponent(std::make_shared<OSComponent>(component)) {
    Add(mComponent);
    for (const OSComponent& other : others) Add(std::make_shared<OSComponent>(other));
  }

  [[nodiscard]] bool IsHitBy(const SCRRule& rule) const {
    bool isHit = false;
    Try([&](const OSComponentRegistry& registry) {
      for (const auto& hit : rule.FindMatchingOSComponents(registry)) isHit |= IsExample(hit);
    });
    return isHit;
  }

  /// Why the rule does not hit it; nothing when the rule does not come to look at it.
  [[nodiscard]] std::optional<Explanation> ExplainMiss(const SCRRule& rule) const {
    ExampleObserver observer([this](const auto& component) { return IsExample(component); });
    Try([&](const OSComponentRegistry& registry) {
      qelsystemcompatibilityreport::ExplainMatch(rule, registry, observer);
    });
    return std::move(observer.mExplanation);
  }

 private:
  [[nodiscard]] bool IsExample(const std::shared_ptr<OSComponent>& component) const {
    return component == mComponent ||
           (component->GetType() == OSComponentType::kFile && *component == *mComponent);
  }

  template <typename Body>
  void Try(Body&& body) const {
    // Each example is a machine of its own, whose files are the example's.
    SCRRule::ForgetFileComponents();
    const qelcore::host::RecordedFilesScope files(mFiles);
    body(OSComponentRegistry(mComponents));
    SCRRule::ForgetFileComponents();
  }

  void Add(const std::shared_ptr<OSComponent>& component) {
    if (component->GetType() == OSComponentType::kFile) {
      mFiles.emplace(component->GetName(), component->GetVersion().ToString());
    } else {
      mComponents.push_back(component);
    }
  }

  std::shared_ptr<OSComponent> mComponent;
  OSComponentRegistry::Components mComponents;
  std::map<std::string, std::string, std::less<>> mFiles;
};

class ExampleCheck {
 public:
  ExampleCheck(Document& document, std::size_t index)
      : mDocument(document), mIndex(index), mRule(document.RuleValue(index)) {}

  void Run(const JsonNode& examples) {
    if (!examples.Is(JsonKind::kObject)) {
      AddUnreadable(examples, std::string("\"examples\" is ") + Describe(examples.mKind) + ", not an object");
      return;
    }
    CheckKeys(mDocument, mIndex, examples, kExampleKeys);
    Run(examples.FindMember("hits"), true);
    Run(examples.FindMember("misses"), false);
  }

 private:
  void AddUnreadable(const JsonNode& node, std::string what) {
    mDocument.AddToRule(
        mIndex, Code::kUnreadableExample, node.mOffset, std::move(what),
        "Write {\"hits\": [...], \"misses\": [...]} with components as \"scr components --json\" writes "
        "them; components that a dependency asks for stand under \"with\".");
  }

  void Run(const JsonMember* list, bool isHit) {
    if (list == nullptr) return;
    if (!list->mValue.Is(JsonKind::kArray)) {
      AddUnreadable(list->mValue,
                    Quoted(list->mKey) + " is " + Describe(list->mValue.mKind) + ", not an array");
      return;
    }
    for (const JsonNode& node : list->mValue.mElements) Run(node, isHit);
  }

  void Run(const JsonNode& node, bool isHit) {
    const auto component = Read(node);
    if (!component) return;
    std::vector<OSComponent> others;
    if (const JsonNode* const with = node.Find("with")) {
      if (!with->Is(JsonKind::kArray)) {
        AddUnreadable(*with, std::string("\"with\" is ") + Describe(with->mKind) + ", not an array");
        return;
      }
      for (const JsonNode& element : with->mElements) {
        const auto other = Read(element);
        if (!other) return;
        others.push_back(*other);
      }
    }
    const ExampleMachine machine(*component, others);
    if (machine.IsHitBy(mRule) == isHit) return;
    const std::string example = Quoted(
        component->GetName() + (component->GetVersion() ? " " + component->GetVersion().ToString() : ""));
    if (isHit) {
      mDocument.AddToRule(mIndex, Code::kMissedHit, node.mOffset,
                          "the rule does not hit its example " + example + ": " + Why(*component, machine),
                          "Mend the rule or the example.");
    } else {
      mDocument.AddToRule(mIndex, Code::kUnexpectedHit, node.mOffset,
                          "the rule hits " + example + ", an example of what it misses",
                          "Mend the rule or the example.");
    }
  }

  std::optional<OSComponent> Read(const JsonNode& node) {
    if (!node.Is(JsonKind::kObject)) {
      AddUnreadable(node, std::string("a component is ") + Describe(node.mKind) + ", not an object");
      return std::nullopt;
    }
    CheckKeys(mDocument, mIndex, node, kComponentKeys);
    json::Dictionary object;
    for (const char* const key : {"name", "type", "version", "value"}) {
      const JsonNode* const value = node.Find(key);
      if (value == nullptr) continue;
      json::Set(object, key, value->Is(JsonKind::kText) ? std::any(value->mText) : std::any(nullptr));
    }
    OSComponent component;
    if (!component.FromJSON(std::any(object))) {
      AddUnreadable(node, "the component has no \"name\", no known \"type\", or a value that is not a text");
      return std::nullopt;
    }
    if (const std::string* const version = node.FindText("version");
        version != nullptr && !version->empty() && !component.GetVersion()) {
      AddUnreadable(*node.Find("version"), Quoted(*version) + " is not a version");
      return std::nullopt;
    }
    return component;
  }

  /// The first thing that the rule asks for and the example lacks.
  [[nodiscard]] std::string Why(const OSComponent& component, const ExampleMachine& machine) const {
    if (component.GetType() != mRule.GetType()) return "it is of another type";
    const std::optional<Explanation> miss = machine.ExplainMiss(mRule);
    if (!miss) return "it has another path";
    const std::string why = DescribeMiss(*miss);
    if (miss->mVerdict == MatchVerdict::kDependency) {
      return why + "; components that it asks for stand under \"with\"";
    }
    const bool isChanged = miss->mVersion && (miss->mVersion->mMask || miss->mVersion->mModulus);
    return miss->mVerdict == MatchVerdict::kVersion && isChanged ? "after mask and modulus " + why : why;
  }

  Document& mDocument;
  std::size_t mIndex;
  SCRRule mRule;
};

}  // namespace

void RunExamples(Document& document) {
  const PropertiesScope properties;
  StartExpressionBudget();
  for (std::size_t index = 0; index < document.Rules().size(); ++index) {
    const RuleElement& rule = document.Rules()[index];
    const JsonNode* const examples = rule.mIsReadable ? rule.mNode->Find("examples") : nullptr;
    if (examples != nullptr) ExampleCheck(document, index).Run(*examples);
  }
}

}  // namespace authoring
