// The sections that follow the components, and the writing of the file.
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <streambuf>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "qelsystemcompatibilityreport/report/text/DebugSettingsSection.h"
#include "qelsystemcompatibilityreport/report/text/TextReportSections.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::UTF8StringStream;
using qelcore::filesupport::File;
using qelcore::host::SetDebugEntryForThisRun;
using qelcore::utility::OSComponentRegistry;
using qelsystemcompatibilityreport::DisplayPriority;
using qelsystemcompatibilityreport::GetTextReportSections;
using qelsystemcompatibilityreport::RegisterDebugSettingsSection;
using qelsystemcompatibilityreport::RegisterTextReportCallback;
using qelsystemcompatibilityreport::TextReportWriter;
using qelsystemcompatibilityreport::WriteDebugSettings;

constexpr const char* kLine =
    "\n____________________________________________________________________________\n\n";

class TextReportSectionsTest : public testing::Test {
 protected:
  ~TextReportSectionsTest() override { qelcore::host::SetFileOperationHook({}); }

  static std::string Report() {
    UTF8StringStream stream;
    qelsystemcompatibilityreport::WriteTextReport(stream, OSComponentRegistry({}), {}, {});
    return stream.Text();
  }

  static void RegisterText(const std::string& text, std::int32_t priority) {
    RegisterTextReportCallback([text](UTF8StringStream& stream, File&) { stream << text; },
                               DisplayPriority{priority});
  }

  static std::string DebugSettings() {
    UTF8StringStream stream;
    WriteDebugSettings(stream);
    return stream.Text();
  }

  [[nodiscard]] File Target(const std::string& name = "report.txt") const {
    return File(qelcore::string::UTF8to16((mHost.Files().Path() / name).string()));
  }

  testsupport::TestHost mHost;
};

// ---- Debug settings

TEST_F(TextReportSectionsTest, AllSettingsAtTheirDefaults) {
  EXPECT_EQ(DebugSettings(), "    Debug database settings:\n        All settings default value\n");
  SetDebugEntryForThisRun("qelsystemcompatibilityreport.use_installed_blocklist", "false");
  EXPECT_EQ(qelcore::DebugDatabase::Instance().GetEntry(
                "qelsystemcompatibilityreport.use_installed_blocklist", "false"),
            "false");
  EXPECT_EQ(DebugSettings(), "    Debug database settings:\n        All settings default value\n");
}

TEST_F(TextReportSectionsTest, ChangedSettings) {
  SetDebugEntryForThisRun("qelsystemcompatibilityreport.use_installed_blocklist", "true");
  static_cast<void>(qelcore::DebugDatabase::Instance().GetEntry(
      "qelsystemcompatibilityreport.use_installed_blocklist", "false"));
  EXPECT_EQ(
      DebugSettings(),
      "    Debug database settings:\n"
      "        qelsystemcompatibilityreport.use_installed_blocklist: \t\t\t Current: true Default: false\n");
  // One that nobody asked for has no default.
  SetDebugEntryForThisRun("another.setting", "10");
  EXPECT_EQ(
      DebugSettings(),
      "    Debug database settings:\n"
      "        another.setting: \t\t\t Current: 10 Default: \n"
      "        qelsystemcompatibilityreport.use_installed_blocklist: \t\t\t Current: true Default: false\n");
}

class FlushCounter : public std::stringbuf {
 public:
  std::vector<std::string> mFlushed;

 protected:
  int sync() override {
    mFlushed.push_back(str());
    str({});
    return 0;
  }
};

TEST_F(TextReportSectionsTest, EveryLineIsFlushed) {
  UTF8StringStream stream;
  FlushCounter buffer;
  static_cast<std::ostream&>(stream).rdbuf(&buffer);
  WriteDebugSettings(stream);
  EXPECT_THAT(buffer.mFlushed,
              testing::ElementsAre("    Debug database settings:\n", "        All settings default value\n"));
}

TEST_F(TextReportSectionsTest, TheDebugSettingsAreRegisteredOnce) {
  EXPECT_TRUE(GetTextReportSections().empty());
  const std::string first = Report();
  EXPECT_EQ(first, std::string("System Components:\n\n") + kLine +
                       "    Debug database settings:\n        All settings default value\n");
  EXPECT_EQ(Report(), first);
  RegisterDebugSettingsSection();
  ASSERT_EQ(GetTextReportSections().size(), 1U);
  EXPECT_EQ(static_cast<std::int32_t>(GetTextReportSections()[0].mPriority), 4864);
}

TEST_F(TextReportSectionsTest, ManyThreadsRegisterTheDebugSettingsOnce) {
  std::vector<std::thread> threads;
  threads.reserve(8);
  for (int number = 0; number < 8; ++number) threads.emplace_back(RegisterDebugSettingsSection);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(GetTextReportSections().size(), 1U);
}

// ---- Registered sections

TEST_F(TextReportSectionsTest, TheLowerPriorityComesFirst) {
  RegisterText("last\n", std::numeric_limits<std::int32_t>::max());
  RegisterText("100\n", 100);
  RegisterText("first\n", std::numeric_limits<std::int32_t>::min());
  RegisterText("4863\n", 4863);
  RegisterText("4865\n", 4865);
  RegisterText("-1\n", -1);
  EXPECT_EQ(Report(), std::string("System Components:\n\n") + kLine + "first\n" + kLine + "-1\n" + kLine +
                          "100\n" + kLine + "4863\n" + kLine +
                          "    Debug database settings:\n        All settings default value\n" + kLine +
                          "4865\n" + kLine + "last\n");
}

TEST_F(TextReportSectionsTest, ASectionMayComeAfterTheFirstReport) {
  static_cast<void>(Report());
  RegisterText("late", 0);
  EXPECT_EQ(Report(), std::string("System Components:\n\n") + kLine + "late" + kLine +
                          "    Debug database settings:\n        All settings default value\n");
}

TEST_F(TextReportSectionsTest, ASectionThatWritesNothingKeepsItsLine) {
  RegisterText("", 0);
  EXPECT_EQ(Report(), std::string("System Components:\n\n") + kLine + kLine +
                          "    Debug database settings:\n        All settings default value\n");
}

TEST_F(TextReportSectionsTest, ASectionGetsTheTarget) {
  std::u16string path;
  RegisterTextReportCallback([&](UTF8StringStream&, File& target) { path = target.GetFullPath(); },
                             DisplayPriority::kApplication);
  UTF8StringStream stream;
  qelsystemcompatibilityreport::WriteTextReport(stream, OSComponentRegistry({}), {}, Target());
  EXPECT_EQ(path, Target().GetFullPath());
}

TEST_F(TextReportSectionsTest, ASectionSeesWhatIsWrittenBeforeIt) {
  std::string before;
  RegisterTextReportCallback([&](UTF8StringStream& stream, File&) { before = stream.Text(); },
                             DisplayPriority::kFirst);
  static_cast<void>(Report());
  EXPECT_EQ(before, std::string("System Components:\n\n") + kLine);
}

TEST_F(TextReportSectionsTest, AnEmptySectionEndsTheWriting) {
  mHost.Files().Write("report.txt", "the old report");
  bool wasCalled = false;
  RegisterTextReportCallback({}, DisplayPriority::kApplication);
  RegisterTextReportCallback([&](UTF8StringStream&, File&) { wasCalled = true; }, DisplayPriority::kLast);
  const TextReportWriter writer(
      std::make_shared<const OSComponentRegistry>(OSComponentRegistry::Components()), {});
  EXPECT_THROW(writer(Target()), std::bad_function_call);
  EXPECT_EQ(mHost.Files().Read("report.txt"), "the old report");
  EXPECT_THROW(writer(Target("new.txt")), std::bad_function_call);
  EXPECT_FALSE(std::filesystem::exists(mHost.Files().Path() / "new.txt"));
  EXPECT_FALSE(wasCalled);
}

// ---- The file

class TextReportFileTest : public TextReportSectionsTest {
 protected:
  TextReportWriter mWriter{
      std::make_shared<const OSComponentRegistry>(OSComponentRegistry::Components{testsupport::Component(
          qelcore::utility::OSComponentType::kOS, "Ger\xC3\xA4t \xF0\x9F\x98\x80", "1")}),
      {}};
  const std::string mText =
      std::string("System Components:\n\n[Operating System] Ger\xC3\xA4t \xF0\x9F\x98\x80 v.1.0.0.0\n") +
      kLine + "    Debug database settings:\n        All settings default value\n";
};

TEST_F(TextReportFileTest, TheBytesOfTheFile) {
  mWriter(Target());
  EXPECT_EQ(mHost.Files().Read("report.txt"), mText);
}

TEST_F(TextReportFileTest, AnOlderLongerFileIsReplacedWhole) {
  mHost.Files().Write("report.txt", std::string(100000, 'x'));
  mWriter(Target());
  EXPECT_EQ(mHost.Files().Read("report.txt"), mText);
}

TEST_F(TextReportFileTest, TheWriterMayBeUsedAgain) {
  mWriter(Target("a.txt"));
  const TextReportWriter copy = mWriter;
  copy(Target("b.txt"));
  copy(Target("b.txt"));
  EXPECT_EQ(mHost.Files().Read("a.txt"), mText);
  EXPECT_EQ(mHost.Files().Read("b.txt"), mText);
}

TEST_F(TextReportFileTest, TheTextIsWrittenAsOneBlock) {
  using qelcore::host::FileOperation;
  int writes = 0;
  qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kWrite) ++writes;
  });
  mWriter(Target());
  EXPECT_EQ(writes, 1);
}

TEST_F(TextReportFileTest, AFileThatCannotBeWrittenThrows) {
  EXPECT_THROW(mWriter(Target("missing/report.txt")), std::exception);
  EXPECT_THROW(mWriter(Target("preferences")), std::exception);
  EXPECT_THROW(mWriter(File()), std::exception);
}

TEST_F(TextReportFileTest, ASectionThatThrowsLeavesTheFileAlone) {
  mHost.Files().Write("report.txt", "the old report");
  RegisterTextReportCallback([](UTF8StringStream&, File&) { throw std::runtime_error("no section"); },
                             DisplayPriority::kApplication);
  EXPECT_THROW(mWriter(Target()), std::runtime_error);
  EXPECT_EQ(mHost.Files().Read("report.txt"), "the old report");
}

}  // namespace
