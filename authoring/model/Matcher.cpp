#include "authoring/model/Matcher.h"

#include <exception>
#include <memory>
#include <regex>
#include <string_view>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Guid.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace authoring {

namespace {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;
using qelsystemcompatibilityreport::VersionRange;

/// Longer than the names of devices are: what is refused for it may be refused for one of them.
constexpr std::size_t kTextLength = 128;

/// Keeps the last exception that was logged while it lives.
class ExceptionCatcher {
 public:
  ExceptionCatcher() {
    qelcore::host::SetExceptionSink(
        [this](const std::exception_ptr& exception, std::string_view) { mException = exception; });
  }
  ~ExceptionCatcher() { qelcore::host::SetExceptionSink({}); }
  ExceptionCatcher(const ExceptionCatcher&) = delete;
  ExceptionCatcher& operator=(const ExceptionCatcher&) = delete;

  [[nodiscard]] const std::exception_ptr& Caught() const { return mException; }

 private:
  std::exception_ptr mException;
};

ExpressionVerdict Ask(const std::string& expression) {
  // A text that equals the expression would match without it.
  const std::string text(kTextLength, expression.starts_with('x') ? 'y' : 'x');
  const OSComponentRegistry registry(
      {std::make_shared<OSComponent>(OSComponentType::kVideo, text, OSComponentVersion())});
  const SCRRule rule(OSComponentType::kVideo, expression, std::vector<VersionRange>(), {}, {}, {}, {}, {},
                     SCRRuleErrorLevel::INFO);
  const ExceptionCatcher catcher;
  static_cast<void>(rule.FindMatchingOSComponents(registry));
  if (!catcher.Caught()) return {};
  ExpressionVerdict verdict;
  verdict.mReason = ReasonOf(qelcore::host::DescribeException(catcher.Caught()));
  try {
    std::rethrow_exception(catcher.Caught());
  } catch (const std::regex_error& error) {
    verdict.mIsRefused = error.code() == std::regex_constants::error_complexity;
  } catch (const std::exception&) {
    // Memory that ran out, perhaps: the expression does not match either.
    verdict.mIsRefused = true;
  }
  verdict.mIsMalformed = !verdict.mIsRefused;
  return verdict;
}

}  // namespace

bool HitsName(OSComponentType kind, const std::string& ruleName, const std::string& componentName) {
  const OSComponentRegistry registry(
      {std::make_shared<OSComponent>(kind, componentName, OSComponentVersion())});
  const SCRRule rule(kind, ruleName, std::vector<VersionRange>(), {}, {}, {}, {}, {},
                     SCRRuleErrorLevel::INFO);
  const ExceptionCatcher catcher;
  return !rule.FindMatchingOSComponents(registry).empty();
}

bool MatchesValue(const std::string& expression, const std::string& value) {
  const std::string name = "value";
  const OSComponentRegistry registry(
      {std::make_shared<OSComponent>(OSComponentType::kProperty, name, OSComponentVersion(), value)});
  const SCRRule rule(OSComponentType::kProperty, name,
                     {{SCRPropertyOperator::kRegularExpression, expression}}, {}, {}, {},
                     SCRRuleErrorLevel::INFO);
  const PropertiesScope properties;
  const ExceptionCatcher catcher;
  return !rule.FindMatchingOSComponents(registry).empty();
}

ExpressionJudge::ExpressionJudge() {
  StartExpressionBudget();
}

const ExpressionVerdict& ExpressionJudge::Judge(const std::string& expression) {
  const auto found = mVerdicts.find(expression);
  if (found != mVerdicts.end()) return found->second;
  return mVerdicts.emplace(expression, Ask(expression)).first->second;
}

std::string ReasonOf(std::string_view message) {
  constexpr std::string_view kIntroduction = "\" is refused: ";
  const std::size_t place = message.rfind(kIntroduction);
  return std::string(place == std::string_view::npos ? message
                                                     : message.substr(place + kIntroduction.size()));
}

void StartExpressionBudget() {
  // Every match of a list starts with a budget of its own.
  static const SCRBlocklist empty(R"({"blocklist_version": 1})");
  qelcore::Guid match;
  static_cast<void>(empty.MatchToOSComponents(OSComponentRegistry({}), match));
}

}  // namespace authoring
