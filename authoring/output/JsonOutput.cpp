#include <cstdint>
#include <utility>

#include "authoring/output/Outputs.h"
#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;

namespace {

std::int64_t Number(std::size_t value) {
  return static_cast<std::int64_t>(value);
}

json::Dictionary Write(const Finding& finding) {
  const CodeDescription& description = DescriptionOf(finding.mCode);
  json::Dictionary object;
  json::Set(object, "file", finding.mFile);
  json::Set(object, "line", Number(finding.mPlace.mLine));
  json::Set(object, "column", Number(finding.mPlace.mColumn));
  json::Set(object, "code", std::string(description.mID));
  json::Set(object, "title", std::string(description.mName));
  json::Set(object, "severity", std::string(SeverityToString(description.mSeverity)));
  json::Set(object, "what", finding.mWhat);
  json::Set(object, "mend", finding.mMend);
  if (finding.mRule) {
    json::Set(object, "rule", Number(*finding.mRule));
    json::Set(object, "rule_name", finding.mRuleName);
  }
  return object;
}

}  // namespace

std::string WriteJson(const Findings& findings) {
  json::Array array;
  for (const Finding& finding : findings) array.emplace_back(Write(finding));
  json::Dictionary object;
  json::Set(object, "lint_version", std::int64_t{1});
  json::Set(object, "errors", Number(Count(findings, Severity::kError)));
  json::Set(object, "warnings", Number(Count(findings, Severity::kWarning)));
  json::Set(object, "notes", Number(Count(findings, Severity::kNote)));
  json::Set(object, "findings", std::move(array));
  return json::Serialise(object) + "\n";
}

}  // namespace authoring
