#include "tests/authoring/Lists.h"

namespace {

TEST(PathsTest, FindsPathsThatFindNothing) {
  const struct {
    const char* mPath;  ///< as JSON
    std::vector<std::string> mCodes;
  } rows[] = {
      {"/usr/lib/liblzma.so.5", {}},
      {"~/.asoundrc", {}},
      {"~", {}},
      {"$HOME/.config/a", {}},
      {"${HOME}/.config/a", {}},
      {"/a/$", {}},
      {"/a/$HOEM/b", {"BL601"}},
      {"$HOMES/b", {"BL601"}},
      {"$home/b", {"BL601"}},
      {"${HOME/b", {"BL602"}},
      {"${}/b", {"BL602"}},
      {"~other/b", {"BL603"}},
      {"%SystemRoot%\\\\System32\\\\a.dll", {}},
      {"%systemroot%\\\\a.dll", {}},
      {"%ProgramFiles(x86)%\\\\a.dll", {}},
      {"C:\\\\100%%\\\\a.dll", {}},
      {"C:/a.dll", {}},
      {"\\\\\\\\server\\\\share\\\\a.dll", {}},
      {"%SystemRot%\\\\a.dll", {"BL601"}},
      {"%MYAPP%\\\\a.dll", {"BL601"}},
      {"%SystemRoot\\\\a.dll", {"BL602"}},
      {"C:\\\\50%\\\\a.dll", {"BL602"}},
      {"a.dll", {"BL603"}},
      {"C:a.dll", {"BL603"}},
      {"lib/a.so", {"BL603"}},
      {"/usr/lib/*.so", {"BL604"}},
      {"C:\\\\Windows\\\\a?.dll", {"BL604"}},
      {"^/usr/lib/.*$", {"BL603", "BL604"}},
  };
  for (const auto& row : rows) {
    const std::string rule = R"({"name": ")" + std::string(row.mPath) + R"(", "type": "File"})";
    EXPECT_EQ(testsupport::Codes(testsupport::LintRules(rule)), row.mCodes) << row.mPath;
  }
}

TEST(PathsTest, SuggestsThePlaceholder) {
  const auto findings = testsupport::LintRules(R"({"name": "%SystemRot%\\a.dll", "type": "File"})");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].mMend, "Did you mean \"SystemRoot\"?");
}

}  // namespace
