#include "host/qelcore/windows/LanguageName.h"

#include <gtest/gtest.h>

namespace qelcore::host {
namespace {

TEST(LanguageName, IsLanguageAndRegion) {
  struct Row {
    const char* mName;
    const char* mLanguage;
  };
  for (const Row& row : {Row{"de-DE", "de_DE"},
                         {"en-US", "en_US"},
                         {"zh-Hans-CN", "zh_CN"},
                         {"zh-CN", "zh_CN"},
                         {"sr-Latn-RS", "sr_RS"},
                         {"es-419", "es_419"},
                         {"ca-ES-valencia", "ca_ES"},
                         {"de-DE_phoneb", "de_DE"},
                         {"fil-PH", "fil_PH"},
                         {"en", "en"},
                         {"eo-", "eo"},
                         {"zh-Hans", "zh"},
                         {"", ""}}) {
    EXPECT_EQ(LanguageFromName(row.mName), row.mLanguage) << row.mName;
  }
}

}  // namespace
}  // namespace qelcore::host
