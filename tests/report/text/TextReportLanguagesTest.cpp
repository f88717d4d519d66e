// The text report in the languages that ship.
#include <gmock/gmock.h>

#include <filesystem>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/common/KindLabel.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using testsupport::Component;
using testsupport::IDOf;
using testsupport::RuleText;

class TextReportLanguagesTest : public testing::Test {
 protected:
  TextReportLanguagesTest() {
    std::filesystem::copy(std::filesystem::path(QELSCR_SOURCE_DIR) / "data" / "translations",
                          mHost.Application() / "translations", std::filesystem::copy_options::recursive);
  }

  /// A report with every kind, an issue with a link, and an issue on a file.
  std::string Report() const {
    const auto card = Component(OSComponentType::kVideo, "Card", "1.2");
    const auto file = Component(OSComponentType::kFile, "/opt/f", "3");
    const OSComponentRegistry registry(
        {Component(OSComponentType::kOS, "Example OS", "10"), card,
         Component(OSComponentType::kAudio, "A", "1"), Component(OSComponentType::kNetwork, "N", "1"),
         testsupport::Property("memory.mb", "512"), Component(OSComponentType::kInvalid, "X", "1")});
    qelcore::UTF8StringStream stream;
    qelsystemcompatibilityreport::WriteTextReport(
        stream, registry, {testsupport::Issue(card, mOnCard), testsupport::Issue(file, mOnFile)}, {});
    return stream.Text();
  }

  testsupport::TestHost mHost;
  const std::string mOnCard = RuleText("Video", "Card", "WARN", "message", "https://example.com/");
  const std::string mOnFile = RuleText("File", "/opt/f", "INFO", "on a file");
};

TEST_F(TextReportLanguagesTest, English) {
  qelcore::host::SetApplicationLanguage("en_US");
  EXPECT_EQ(Report(),
            "System Components:\n"
            "\n"
            "[Operating System] Example OS v.10.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] Card v.1.2.0.0\n"
            "ISSUES:\n"
            "1.\tmessage\n"
            "\tURL: https://example.com/\n"
            "\tID:  " +
                IDOf(mOnCard) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Audio] A v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Network] N v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Property] memory.mb : 512\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Unknown] X v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[File System] /opt/f v.3.0.0.0\n"
                "ISSUES:\n"
                "1.\ton a file\n"
                "\tID:  " +
                IDOf(mOnFile) +
                "\n"
                "\n"
                "____________________________________________________________________________\n"
                "\n"
                "    Debug database settings:\n"
                "        All settings default value\n");
}

TEST_F(TextReportLanguagesTest, German) {
  qelcore::host::SetApplicationLanguage("de_DE");
  EXPECT_EQ(Report(),
            "Systemkomponenten:\n"
            "\n"
            "[Betriebssystem] Example OS v.10.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Grafik] Card v.1.2.0.0\n"
            "PROBLEME:\n"
            "1.\tmessage\n"
            "\tURL: https://example.com/\n"
            "\tID:  " +
                IDOf(mOnCard) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Audio] A v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Netzwerk] N v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Eigenschaft] memory.mb : 512\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Unbekannt] X v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[Dateisystem] /opt/f v.3.0.0.0\n"
                "PROBLEME:\n"
                "1.\ton a file\n"
                "\tID:  " +
                IDOf(mOnFile) +
                "\n"
                "\n"
                "____________________________________________________________________________\n"
                "\n"
                "    Debug database settings:\n"
                "        All settings default value\n");
}

TEST_F(TextReportLanguagesTest, Japanese) {
  qelcore::host::SetApplicationLanguage("ja_JP");
  EXPECT_EQ(Report(),
            "システム コンポーネント:\n"
            "\n"
            "[オペレーティング システム] Example OS v.10.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[ビデオ] Card v.1.2.0.0\n"
            "問題:\n"
            "1.\tmessage\n"
            "\tURL: https://example.com/\n"
            "\tID:  " +
                IDOf(mOnCard) +
                "\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[オーディオ] A v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[ネットワーク] N v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[プロパティ] memory.mb : 512\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[不明] X v.1.0.0.0\n"
                "\n"
                "----------------------------------------------------------------------------\n"
                "[ファイル システム] /opt/f v.3.0.0.0\n"
                "問題:\n"
                "1.\ton a file\n"
                "\tID:  " +
                IDOf(mOnFile) +
                "\n"
                "\n"
                "____________________________________________________________________________\n"
                "\n"
                "    Debug database settings:\n"
                "        All settings default value\n");
}

TEST_F(TextReportLanguagesTest, TheLabelOfIssuesOnFilesIsThatOfTheFirstReport) {
  EXPECT_THAT(Report(), testing::HasSubstr("[File System] /opt/f v.3.0.0.0\nISSUES:\n"));
  qelcore::host::SetApplicationLanguage("de_DE");
  const std::string german = Report();
  EXPECT_THAT(german, testing::HasSubstr("[Grafik] Card"));
  EXPECT_THAT(german, testing::HasSubstr("[File System] /opt/f v.3.0.0.0\nPROBLEME:\n"));
}

TEST_F(TextReportLanguagesTest, KindLabels) {
  using qelsystemcompatibilityreport::KindLabel;
  const struct {
    int mKind;
    const char16_t* mLabel;
  } rows[] = {{0, u"Operating System"}, {1, u"Video"},       {2, u"Audio"},
              {3, u"Network"},          {4, u"File System"}, {5, u"Property"},
              {-1, u"Unknown"},         {6, u"Unknown"},     {1000, u"Unknown"}};
  for (const auto& row : rows) EXPECT_EQ(KindLabel(OSComponentType{row.mKind}), row.mLabel) << row.mKind;
}

}  // namespace
