// The system's own dialogs: the name of a file to write, and error messages.
#include <filesystem>
#include <fstream>

#include "platform/qelcore/Text.h"
#include "platform/qelcore/Threads.h"
#include "tests/host/qelui/ToolkitTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelui::test {

namespace {

class SystemDialogsTest : public ToolkitTest {
 protected:
  [[nodiscard]] std::filesystem::path Directory() const { return mDirectory.Path(); }

  /// Asks for a file above a dialog, and runs `script` as soon as the system's dialog is in front.
  std::string Ask(const std::function<void()>& script, const std::u16string& extension = u"txt") {
    std::string chosen;
    TimedDialog dialog;
    RunWith(dialog, [&] {
      OS_FileSaveAsDialog saveAs(u"Save Report As", {u"Text File", extension}, u"Report.txt",
                                 qelcore::string::UTF8to16(Directory().string()));
      RunWhen(IsFileDialogInFront, script);
      chosen = qelcore::string::UTF16to8(saveAs.RunModal(&dialog));
      dialog.Close();
    });
    return chosen;
  }

  /// Replaces the name that stands there.
  static void TypeName(const std::string& name) {
    PressRawKey('A', wxMOD_CONTROL);
    TypeText(name);
  }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(SystemDialogsTest, TheDefaultNameCanBeTaken) {
  EXPECT_EQ(Ask([] { PressRawKey(WXK_RETURN); }), (Directory() / "Report.txt").string());
}

TEST_F(SystemDialogsTest, EscapeCancels) {
  EXPECT_EQ(Ask([] { PressRawKey(WXK_ESCAPE); }), "");
}

TEST_F(SystemDialogsTest, ANameWithoutAnExtensionGetsOne) {
  EXPECT_EQ(Ask([] {
              TypeName("mine");
              PressRawKey(WXK_RETURN);
            }),
            (Directory() / "mine.txt").string());
}

TEST_F(SystemDialogsTest, ANameWithAnotherExtensionKeepsIt) {
  EXPECT_EQ(Ask([] {
              TypeName("mine.log");
              PressRawKey(WXK_RETURN);
            }),
            (Directory() / "mine.log").string());
}

TEST_F(SystemDialogsTest, WithoutAnExtensionTheNameStaysAsItIs) {
  EXPECT_EQ(Ask(
                [] {
                  TypeName("mine");
                  PressRawKey(WXK_RETURN);
                },
                u""),
            (Directory() / "mine").string());
}

TEST_F(SystemDialogsTest, AFileThatWouldGetAnExtensionIsNotReplacedWithoutAsking) {
  std::ofstream(Directory() / "mine.txt") << "old";
  EXPECT_EQ(Ask([] {
              TypeName("mine");
              PressRawKey(WXK_RETURN);
              RunWhen(IsMessageInFront, [] {
                TakePicture("replace-file");
                PressRawKey(WXK_ESCAPE);
                RunWhen(IsFileDialogInFront, [] { PressRawKey(WXK_ESCAPE); });
              });
            }),
            "");
}

TEST_F(SystemDialogsTest, AFileThatGetsAnExtensionIsReplacedWhenTheUserSaysSo) {
  std::ofstream(Directory() / "mine.txt") << "old";
  EXPECT_EQ(Ask([] {
              TypeName("mine");
              PressRawKey(WXK_RETURN);
              RunWhen(IsMessageInFront, [] {
                // From the safe answer to the other one.
                PressRawKey(WXK_TAB);
                PressRawKey(WXK_RETURN);
              });
            }),
            (Directory() / "mine.txt").string());
}

TEST_F(SystemDialogsTest, AnErrorMessageIsShownUntilTheUserClosesIt) {
  bool hasTaskRun = false;
  RunWhen(IsMessageInFront, [&] {
    qelcore::threads::AsyncCallFromMainThread([&] { hasTaskRun = true; }, 0);
    EXPECT_TRUE(WaitUntil([&] { return hasTaskRun; }));
    TakePicture("error-message");
    PressRawKey(WXK_RETURN);
  });
  SimpleErrorMessageBox(u"System Compatibility Report", u"100 % of <b>this</b> & that failed: \u2713",
                        nullptr);
  EXPECT_TRUE(hasTaskRun);
}

}  // namespace

}  // namespace qelui::test
