// Blocklists for the tests of lint: rules in a list that has nothing wrong with it otherwise.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "authoring/Lint.h"

namespace testsupport {

/// The rules stand from line 2 on.
inline std::string ListOfRules(const std::string& rules) {
  std::string defaults;
  for (const char* const kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
    defaults += std::string(defaults.empty() ? "" : ", ") + '"' + kind +
                R"(": {"info_message": "About it.", "info_url": "https://example.com/"})";
  }
  return R"({"blocklist_version": 1, "default_info": {)" + defaults + "}, \"blocklist\": [\n" + rules +
         "\n]}";
}

inline authoring::Findings LintText(const std::string& text) {
  return authoring::Lint({{"list.json", text}});
}

inline authoring::Findings LintRules(const std::string& rules) {
  return LintText(ListOfRules(rules));
}

/// "BL303 2:47", one for each finding.
inline std::vector<std::string> CodesAndPlaces(const authoring::Findings& findings) {
  std::vector<std::string> texts;
  for (const authoring::Finding& finding : findings) {
    texts.push_back(std::string(authoring::DescriptionOf(finding.mCode).mID) + ' ' +
                    std::to_string(finding.mPlace.mLine) + ':' + std::to_string(finding.mPlace.mColumn));
  }
  return texts;
}

inline std::vector<std::string> Codes(const authoring::Findings& findings) {
  std::vector<std::string> texts;
  for (const authoring::Finding& finding : findings) {
    texts.emplace_back(authoring::DescriptionOf(finding.mCode).mID);
  }
  return texts;
}

struct CodesRow {
  const char* mRules;
  std::vector<std::string> mCodes;
};

/// Each row's rules give exactly these codes.
template <typename Rows>
void ExpectCodes(const Rows& rows) {
  for (const CodesRow& row : rows) {
    const authoring::Findings findings = LintRules(row.mRules);
    EXPECT_EQ(Codes(findings), row.mCodes)
        << row.mRules << (findings.empty() ? "" : "\n" + findings.front().mWhat);
  }
}

}  // namespace testsupport
