#include "tests/authoring/Lists.h"

namespace {

using testsupport::Codes;

TEST(TextsTest, FindsMessagesWithoutLinksAndLinksThatAreNotOpened) {
  const struct {
    const char* mTexts;
    std::vector<std::string> mCodes;
  } rows[] = {
      {R"("info_message": "M", "info_url": "https://example.com/")", {}},
      {R"("info_url": "https://example.com/")", {}},
      {R"("info_message": "", "info_url": "")", {}},
      {R"("info_message": "M")", {"BL701"}},
      {R"("info_message": "M", "info_url": "")", {"BL701"}},
      {R"("info_url": "HTTP://example.com")", {}},
      {"\"info_url\": \"javascript:alert(1)\"", {"BL702"}},
      {R"("info_url": "example.com")", {"BL702"}},
      {R"("info_url": "https:///x")", {"BL702"}},
      {R"("info_url": "https://example.com/a b")", {"BL702"}},
  };
  for (const auto& row : rows) {
    const std::string rule = R"({"name": "Windows", "type": "OS", )" + std::string(row.mTexts) + "}";
    EXPECT_EQ(Codes(testsupport::LintRules(rule)), row.mCodes) << row.mTexts;
  }
}

TEST(TextsTest, LooksAtTheLinksOfDefaults) {
  std::string text = testsupport::ListOfRules(R"({"name": "Windows", "type": "OS"})");
  text.replace(text.find("https"), 5, "files");
  EXPECT_EQ(Codes(testsupport::LintText(text)), std::vector<std::string>{"BL702"});
}

}  // namespace
