#include "platform/qelcore/Localisation.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::host::SetApplicationLanguage;

TEST(ApplicationLanguage, ComesFromTheEnvironmentUntilSet) {
  struct Row {
    const char* mAll;
    const char* mMessages;
    const char* mLang;
    const char* mLanguage;
  };
  for (const Row& row : {Row{"", "", "", "en_US"},
                         {"", "", "de_DE.UTF-8", "de_DE"},
                         {"", "fr_FR", "de_DE", "fr_FR"},
                         {"ja_JP.UTF-8", "fr_FR", "de_DE", "ja_JP"},
                         {"C", "fr_FR", "de_DE", "en_US"},
                         {"POSIX", "", "", "en_US"},
                         {"C.UTF-8", "", "", "en_US"},
                         {"de_DE@euro", "", "", "de_DE"},
                         {"", "", "zh-Hans", "zh-Hans"},
                         {"", "", "../x", "en_US"},
                         {"", "", "de", "de"}}) {
    ::setenv("LC_ALL", row.mAll, 1);
    ::setenv("LC_MESSAGES", row.mMessages, 1);
    ::setenv("LANG", row.mLang, 1);
    EXPECT_EQ(qelcore::Locale::ApplicationLanguage(), row.mLanguage)
        << row.mAll << ',' << row.mMessages << ',' << row.mLang;
  }
  SetApplicationLanguage("it_IT");
  EXPECT_EQ(qelcore::Locale::ApplicationLanguage(), "it_IT");
}

}  // namespace
