// Finds what is wrong with blocklists.
//
//   const Findings findings = Lint({{"blocklist.en_US.json", text}});
//   for (const Finding& finding : findings) for (const std::string& line : DescribeAsText(finding)) ...
#pragma once

#include <string>
#include <vector>

#include "authoring/findings/Finding.h"

namespace authoring {

struct InputText {
  std::string mPath;  ///< as the user named it
  std::string mText;
};

/// The findings of all files, file by file and in each by place. Files of one directory named
/// "<name>.<language>.json" with the same name are taken for the lists of several languages, which must
/// agree. Main thread only: expressions and examples are run by the library's matching.
[[nodiscard]] Findings Lint(std::vector<InputText> files);

}  // namespace authoring
