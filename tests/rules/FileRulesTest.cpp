// File rules: what is on disk, and what of it is remembered.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::Component;
using testsupport::Components;
using testsupport::EnvironmentVariable;
using testsupport::Placeholder;

using Texts = std::vector<std::string>;
using VersionsByPath = std::map<std::string, std::string, std::less<>>;

std::string Text(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

class FileRulesTest : public testing::Test {
 protected:
  FileRulesTest() { SCRRule::ForgetFileComponents(); }
  ~FileRulesTest() override {
    SCRRule::ForceMatchByNameForTesting(false);
    SCRRule::ForceMatchByTypeForTesting(false);
  }

  /// A file rule with this path and further fields, such as `,"versions":["1"]`.
  static SCRRule FileRule(const std::string& path, const std::string& fields = "") {
    qelcore::json::Dictionary object;
    qelcore::json::Set(object, "name", path);
    std::string json = qelcore::json::Serialise(object);
    json.pop_back();
    return testsupport::ReadRule(json + R"(,"type":"File")" + fields + "}");
  }

  static Components Hits(const std::string& path, const std::string& fields = "") {
    return FileRule(path, fields).FindMatchingOSComponents(OSComponentRegistry({}));
  }

  std::string MakeFile(const std::string& name, const std::string& content = "content") {
    return Text(mHost.Files().Write(name, content));
  }

  std::string MakeFolder(const std::string& name) {
    const std::filesystem::path path = mHost.Files().Path() / name;
    std::filesystem::create_directories(path);
    return Text(path);
  }

  std::string PathOf(const std::string& name) const { return Text(mHost.Files().Path() / name); }

  testsupport::TestHost mHost;
};

TEST_F(FileRulesTest, AFileThatIsThereIsHit) {
  const std::string path = MakeFile("driver.conf");
  const Components hits = Hits(path);
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_EQ(hits.front()->GetType(), OSComponentType::kFile);
  EXPECT_EQ(hits.front()->GetName(), path);
  EXPECT_FALSE(hits.front()->GetVersion());
  EXPECT_EQ(hits.front()->GetPropertyValue(), "");
}

TEST_F(FileRulesTest, AFolderIsHitWhereTheEmptyVersionIsHeld) {
  const std::string path = MakeFolder("plugins");
  const struct {
    const char* mFields;
    bool mHits;
  } rows[] = {
      {"", true},
      {R"(,"versions":[""])", true},
      {R"(,"versions":["1","-"])", true},
      {R"(,"versions":["-5"])", true},
      {R"(,"versions":["0.0.0.0"])", true},
      {R"(,"versions":["1"])", false},
      {R"(,"versions":["0.0.0.1-+"])", false},
      {R"(,"version":"1","max_version":"2")", false},
      {R"(,"error_level":"FATAL")", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Hits(path, row.mFields).size(), row.mHits ? 1u : 0u) << row.mFields;
  }
}

TEST_F(FileRulesTest, WhatIsNotThereIsNotHitAndNotReported) {
  MakeFile("driver.conf");
  for (const std::string& path :
       {PathOf("other.conf"), PathOf("no/such/folder"), PathOf("driver.conf") + "/below", std::string(),
        std::string(" "), std::string("driver.conf"), PathOf(".*"), std::string("\xFF\xFE"),
        PathOf("driver.conf") + std::string("\0.bak", 5), std::string("/") + std::string(10'000, 'x')}) {
    EXPECT_EQ(Hits(path).size(), 0u) << path.substr(0, 100);
  }
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(FileRulesTest, ThePathIsNoExpression) {
  const std::string path = MakeFile("driver (old) [1].conf");
  EXPECT_EQ(Hits(path).size(), 1u);
  EXPECT_EQ(Hits(PathOf("driver (ol.*")).size(), 0u);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(FileRulesTest, PathsAreUTF8) {
  const std::string path = PathOf("tr\xC3\xA9iber \xE6\x97\xA5.conf");
  std::filesystem::create_directory(std::filesystem::path(std::u8string(path.begin(), path.end())));
  const Components hits = Hits(path);
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_EQ(hits.front()->GetName(), path);
}

TEST_F(FileRulesTest, PlaceholdersAreExpanded) {
  const std::string path = MakeFile("driver.conf");
  const EnvironmentVariable folder("QELSCR_TEST_FOLDER", Text(mHost.Files().Path()));
  const Components hits =
      Hits(Placeholder("QELSCR_TEST_FOLDER") + Text(std::filesystem::path("/driver.conf").make_preferred()));
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_EQ(hits.front()->GetName(), path);  // the path as it was expanded
}

TEST_F(FileRulesTest, APlaceholderThatIsNotSetIsAMissingFile) {
  MakeFile("driver.conf");
  const EnvironmentVariable folder("QELSCR_TEST_FOLDER", std::nullopt);
  EXPECT_EQ(Hits(Placeholder("QELSCR_TEST_FOLDER") + "/driver.conf").size(), 0u);
  EXPECT_EQ(Hits(PathOf("driver.conf") + Placeholder("QELSCR_TEST_FOLDER")).size(), 0u);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(FileRulesTest, AnAnswerHoldsForTheProcess) {
  const std::string path = PathOf("later.conf");
  EXPECT_EQ(Hits(path).size(), 0u);
  MakeFile("later.conf");
  EXPECT_EQ(Hits(path).size(), 0u);
  SCRRule::ForgetFileComponents();
  const Components hits = Hits(path);
  ASSERT_EQ(hits.size(), 1u);

  std::filesystem::remove(mHost.Files().Path() / "later.conf");
  ASSERT_EQ(Hits(path).size(), 1u);
  EXPECT_EQ(Hits(path).front().get(), hits.front().get());  // the same component, not a copy
  EXPECT_EQ(Hits(path, R"(,"error_level":"WARN")").front().get(), hits.front().get());
  SCRRule::ForgetFileComponents();
  EXPECT_EQ(Hits(path).size(), 0u);
  EXPECT_EQ(hits.front()->GetName(), path);  // it lives as long as somebody holds it
}

TEST_F(FileRulesTest, AnAnswerIsRememberedUnderThePathAsItIsWritten) {
  MakeFile("one/driver.conf");
  MakeFolder("two");
  const std::string written = Placeholder("QELSCR_TEST_FOLDER");
  {
    const EnvironmentVariable folder("QELSCR_TEST_FOLDER", PathOf("one"));
    ASSERT_EQ(Hits(written).size(), 1u);
  }
  const EnvironmentVariable folder("QELSCR_TEST_FOLDER", PathOf("two"));
  ASSERT_EQ(Hits(written).size(), 1u);
  EXPECT_EQ(Hits(written).front()->GetName(), PathOf("one"));
  // The expanded path is another entry.
  EXPECT_NE(Hits(PathOf("one")).front().get(), Hits(written).front().get());
}

TEST_F(FileRulesTest, RecordedFilesStandForTheDisk) {
  const std::string onDisk = MakeFile("driver.conf");
  const qelcore::host::RecordedFilesScope recorded(VersionsByPath{
      {R"(C:\Windows\System32\OpenCL.dll)", "3.0.6.0"}, {"%windir%\\x.dll", ""}, {"/opt/tool", "beta"}});
  EXPECT_EQ(Hits(onDisk).size(), 0u);

  const struct {
    const char* mPath;
    const char* mFields;
    const char* mVersion;  // null when there is no hit
  } rows[] = {
      {R"(C:\Windows\System32\OpenCL.dll)", "", "3.0.6.0"},
      {R"(C:\Windows\System32\OpenCL.dll)", R"(,"versions":["3-3.+"])", "3.0.6.0"},
      {R"(C:\Windows\System32\OpenCL.dll)", R"(,"versions":["2"])", nullptr},
      {R"(C:\Windows\System32\OpenCL.dll)", R"(,"versions":["0.0.6.0"],"version_mask":"0.+")", "3.0.6.0"},
      {R"(C:\Windows\System32\OpenCL.dll)", R"(,"versions":["1"],"version_mod":"2.1.1.1")", "3.0.6.0"},
      {R"(c:\windows\system32\opencl.dll)", "", nullptr},
      {R"(C:\Windows\System32)", "", nullptr},
      {R"(%windir%\x.dll)", "", ""},
      {R"(%windir%\x.dll)", R"(,"versions":["0.0.0.0"])", ""},
      {R"(%windir%\x.dll)", R"(,"versions":["1"])", nullptr},
      {"/opt/tool", "", ""},  // its version is no version
      {"/opt/tool", R"(,"dependencies":[{"type":"File","name":"%windir%\\x.dll"}])", ""},
      {"/opt/tool", R"(,"dependencies":[{"type":"File","name":"/opt/other"}])", nullptr},
  };
  for (const auto& row : rows) {
    const Components hits = Hits(row.mPath, row.mFields);
    ASSERT_EQ(hits.size(), row.mVersion == nullptr ? 0u : 1u) << row.mPath << row.mFields;
    if (row.mVersion == nullptr) continue;
    EXPECT_EQ(hits.front()->GetName(), row.mPath);
    EXPECT_EQ(hits.front()->GetVersion().ToString(), row.mVersion) << row.mPath << row.mFields;
  }
}

TEST_F(FileRulesTest, ComponentsOfTheRegistryAreNoFiles) {
  const Components machine{Component(OSComponentType::kFile, "/opt/tool", "1")};
  const qelcore::host::RecordedFilesScope recorded(VersionsByPath{});
  EXPECT_EQ(FileRule("/opt/tool").FindMatchingOSComponents(OSComponentRegistry(machine)).size(), 0u);
  SCRRule::ForceMatchByTypeForTesting(true);
  EXPECT_EQ(FileRule("/opt/tool").FindMatchingOSComponents(OSComponentRegistry(machine)).size(), 0u);
}

TEST_F(FileRulesTest, TheForceSwitches) {
  const qelcore::host::RecordedFilesScope recorded(VersionsByPath{{"/opt/tool", "1.0"}});
  const std::string otherVersion = R"(,"versions":["7"])";
  const std::string unmatched = R"(,"dependencies":[{"type":"OS","name":"none"}])";
  EXPECT_EQ(Hits("/opt/tool", otherVersion).size(), 0u);

  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_EQ(Hits("/opt/tool", otherVersion).size(), 1u);
  EXPECT_EQ(Hits("/opt/tool", unmatched).size(), 0u);
  EXPECT_EQ(Hits("/opt/other", otherVersion).size(), 0u);
  SCRRule::ForceMatchByNameForTesting(false);

  SCRRule::ForceMatchByTypeForTesting(true);
  EXPECT_EQ(Hits("/opt/tool", otherVersion).size(), 1u);
  EXPECT_EQ(Hits("/opt/tool", unmatched).size(), 1u);
  EXPECT_EQ(Hits("/opt/other").size(), 0u);  // no component, so nothing to hit
  EXPECT_EQ(Hits("").size(), 0u);
}

TEST_F(FileRulesTest, ADependencyOnAFile) {
  const qelcore::host::RecordedFilesScope recorded(VersionsByPath{{"/opt/tool", "1.5"}});
  const Components machine{Component(OSComponentType::kVideo, "x", "1")};
  const auto hits = [&](const char* dependency) {
    return testsupport::HitNames(
        std::string(R"({"type":"Video","name":"x","dependencies":[)") + dependency + "]}", machine);
  };
  EXPECT_EQ(hits(R"({"type":"File","name":"/opt/tool"})"), Texts{"x"});
  EXPECT_EQ(hits(R"({"type":"File","name":"/opt/tool","version":"1","max_version":"1.+"})"), Texts{"x"});
  EXPECT_EQ(hits(R"({"type":"File","name":"/opt/tool","version":"2"})"), Texts());
  EXPECT_EQ(hits(R"({"type":"File","name":"/opt/other"})"), Texts());
}

#if !defined(_WIN32)

TEST_F(FileRulesTest, ASharedLibraryHasTheVersionOfItsRealName) {
  MakeFile("libexample.so.1.2.3",
           "\x7F"
           "ELF");
  std::filesystem::create_symlink("libexample.so.1.2.3", mHost.Files().Path() / "libexample.so.1");
  std::filesystem::create_symlink("libexample.so.1", mHost.Files().Path() / "libexample.so");
  for (const char* const name : {"libexample.so", "libexample.so.1", "libexample.so.1.2.3"}) {
    const Components hits = Hits(PathOf(name), R"(,"versions":["1.2.3"])");
    ASSERT_EQ(hits.size(), 1u) << name;
    EXPECT_EQ(hits.front()->GetVersion().ToString(), "1.2.3.0") << name;
    EXPECT_EQ(hits.front()->GetName(), PathOf(name));
    EXPECT_EQ(Hits(PathOf(name), R"(,"versions":["1.2.4"])").size(), 0u) << name;
  }
}

TEST_F(FileRulesTest, ALinkThatLeadsNowhereIsAMissingFile) {
  std::filesystem::create_symlink("nowhere", mHost.Files().Path() / "link");
  EXPECT_EQ(Hits(PathOf("link")).size(), 0u);
  EXPECT_EQ(mHost.mExceptionContexts, Texts());
}

TEST_F(FileRulesTest, TheHomeFolder) {
  const std::string path = MakeFile("driver.conf");
  const EnvironmentVariable home("HOME", Text(mHost.Files().Path()));
  const Components hits = Hits("~/driver.conf");
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_EQ(hits.front()->GetName(), path);
  EXPECT_EQ(Hits("$HOME/driver.conf").size(), 1u);
}

#endif

}  // namespace
