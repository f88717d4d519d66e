#include <cstdint>
#include <initializer_list>
#include <utility>

#include "authoring/output/Outputs.h"
#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;

namespace {

constexpr const char* kSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

json::Dictionary Object(std::initializer_list<std::pair<const char*, std::any>> members) {
  json::Dictionary object;
  for (const auto& [key, value] : members) json::Set(object, key, value);
  return object;
}

json::Dictionary Text(std::string_view text) {
  return Object({{"text", std::string(text)}});
}

std::string Level(Severity severity) {
  return std::string(SeverityToString(severity));
}

/// The path as a reference: relative paths stay relative, and what a reference cannot hold is escaped.
std::string ToReference(const std::string& path) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "-._~/!$&'()*+,;=@";
  std::string reference;
  const bool hasDrive = path.size() > 1 && path[1] == ':';
  if (hasDrive) reference = "file:///";
  if (path.starts_with('/')) reference = "file://";
  for (std::size_t index = 0; index < path.size(); ++index) {
    const char character = path[index];
    const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool isDigit = character >= '0' && character <= '9';
    if (hasDrive && character == '\\') {
      reference += '/';
    } else if (isLetter || isDigit || kPlain.find(character) != std::string_view::npos ||
               (hasDrive && index == 1)) {
      reference += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      reference += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return reference;
}

json::Array WriteRules() {
  json::Array rules;
  for (const CodeDescription& description : AllCodes()) {
    rules.emplace_back(Object({
        {"id", std::string(description.mID)},
        {"name", std::string(description.mName)},
        {"shortDescription", Text(description.mSummary)},
        {"defaultConfiguration", Object({{"level", Level(description.mSeverity)}})},
    }));
  }
  return rules;
}

json::Dictionary WriteLocation(const Finding& finding) {
  json::Dictionary physical = Object({{"artifactLocation", Object({{"uri", ToReference(finding.mFile)}})}});
  if (finding.mPlace.mLine > 0) {
    json::Set(physical, "region",
              Object({{"startLine", static_cast<std::int64_t>(finding.mPlace.mLine)},
                      {"startColumn", static_cast<std::int64_t>(finding.mPlace.mColumn)}}));
  }
  json::Dictionary location = Object({{"physicalLocation", std::move(physical)}});
  if (finding.mRule) {
    const std::string place = "blocklist[" + std::to_string(*finding.mRule) + "]";
    json::Set(location, "logicalLocations",
              json::Array{Object({{"name", finding.mRuleName}, {"fullyQualifiedName", place}})});
  }
  return location;
}

}  // namespace

std::string WriteSarif(const Findings& findings, const std::string& version) {
  json::Array results;
  for (const Finding& finding : findings) {
    const CodeDescription& description = DescriptionOf(finding.mCode);
    results.emplace_back(Object({
        {"ruleId", std::string(description.mID)},
        {"ruleIndex", static_cast<std::int64_t>(finding.mCode)},
        {"level", Level(description.mSeverity)},
        {"message", Text(finding.mWhat + (finding.mMend.empty() ? "." : ". " + finding.mMend))},
        {"locations", json::Array{WriteLocation(finding)}},
    }));
  }
  json::Dictionary driver =
      Object({{"name", std::string("scr lint")}, {"version", version}, {"rules", WriteRules()}});
  json::Dictionary run = Object({
      {"tool", Object({{"driver", std::move(driver)}})},
      {"columnKind", std::string("unicodeCodePoints")},
      {"results", std::move(results)},
  });
  return json::Serialise(Object({
             {"$schema", std::string(kSchema)},
             {"version", std::string("2.1.0")},
             {"runs", json::Array{std::move(run)}},
         })) +
         "\n";
}

}  // namespace authoring
