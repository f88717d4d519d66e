#include "host/qelui/DesktopWindow.h"

#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

#include <stdexcept>

#include "platform/qelcore/Threads.h"
#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class DesktopWindowTest : public ToolkitTest {
 protected:
  DesktopWindowTest() { mWindow->SetTitle(u"A host"); }

  /// Runs the window, and `script` as soon as it is in front, which has to close it.
  void Run(const std::function<void()>& script) {
    RunWhen([] { return TopWindow() != nullptr && TopWindow()->IsActive(); }, script);
    mWindow->Run();
  }

  template <class Window>
  [[nodiscard]] static std::vector<Window*> FindAll() {
    std::vector<Window*> found;
    for (wxWindow* const window : ShownDescendants(*TopWindow())) {
      if (auto* const match = dynamic_cast<Window*>(window)) found.push_back(match);
    }
    return found;
  }

  [[nodiscard]] static wxMenuItem* Item(std::size_t menu, std::size_t place) {
    return static_cast<wxFrame*>(TopWindow())->GetMenuBar()->GetMenu(menu)->FindItemByPosition(place);
  }

  std::unique_ptr<host::DesktopWindow> mWindow = host::DesktopWindow::Make();
};

TEST_F(DesktopWindowTest, RunsUntilItIsClosed) {
  Run([&] {
    EXPECT_EQ(TopWindow()->GetTitle(), "A host");
    mWindow->Close();
  });
  EXPECT_EQ(TopWindow(), nullptr);
  Run([&] { mWindow->Close(); });
}

TEST_F(DesktopWindowTest, TheUserClosesItUnlessTheHostObjects) {
  int asked = 0;
  mWindow->SetOnClose([&] { return ++asked == 2; });
  Run([&] {
    TopWindow()->Close();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(TopWindow()->IsShown());
    TopWindow()->Close();
  });
  EXPECT_EQ(asked, 2);
}

TEST_F(DesktopWindowTest, MenusAreChosenWithTheKeyboard) {
  std::string chosen;
  mWindow->SetMenus({{u"File",
                      {{.mCaption = u"First & last", .mAction = [&] { chosen += "first "; }},
                       {},
                       {.mCaption = u"Quit", .mAction = [&] { mWindow->Close(); }}}}});
  Run([&] {
    EXPECT_EQ(Item(0, 0)->GetItemLabelText(), "First & last");
    EXPECT_TRUE(Item(0, 1)->IsSeparator());
    PressRawKey(WXK_F10);
    PressRawKey(WXK_DOWN);
    PressRawKey(WXK_RETURN);
    RunWhen([&] { return !chosen.empty(); },
            [&] {
              PressRawKey(WXK_F10);
              PressRawKey(WXK_DOWN);
              PressRawKey(WXK_DOWN);
              PressRawKey(WXK_RETURN);
            });
  });
  EXPECT_EQ(chosen, "first ");
}

TEST_F(DesktopWindowTest, CheckMarksAreAskedForWhenTheMenuOpens) {
  bool isChecked = true;
  int asked = 0;
  mWindow->SetMenus({{u"View",
                      {{.mCaption = u"Console",
                        .mAction = [&] { isChecked = !isChecked; },
                        .mIsChecked =
                            [&] {
                              ++asked;
                              return isChecked;
                            }}}}});
  Run([&] {
    PressRawKey(WXK_F10);
    PressRawKey(WXK_DOWN);
    RunWhen([&] { return asked > 0; },
            [&] {
              EXPECT_TRUE(Item(0, 0)->IsChecked());
              PressRawKey(WXK_RETURN);
              RunWhen([&] { return !isChecked; },
                      [&] {
                        asked = 0;
                        PressRawKey(WXK_F10);
                        PressRawKey(WXK_DOWN);
                        RunWhen([&] { return asked > 0; },
                                [&] {
                                  EXPECT_FALSE(Item(0, 0)->IsChecked());
                                  PressRawKey(WXK_ESCAPE);
                                  mWindow->Close();
                                });
                      });
            });
  });
}

TEST_F(DesktopWindowTest, TheLogShowsLinesThatNobodyCanChange) {
  mWindow->AppendLogLine(u"First & <b>line</b>");
  Run([&] {
    mWindow->AppendLogLine(u"Second \u2713");
    const auto* const log = FindAll<wxTextCtrl>().front();
    EXPECT_EQ(log->GetValue().utf8_string(), "First & <b>line</b>\nSecond \u2713\n");
    EXPECT_FALSE(log->IsEditable());
    mWindow->ClearLog();
    EXPECT_EQ(log->GetValue(), "");
    mWindow->Close();
  });
}

TEST_F(DesktopWindowTest, ScreenReadersAreToldWhatTheLogIs) {
  Run([&] {
    GtkWidget* const scrolled = FindAll<wxTextCtrl>().front()->GetHandle();
    GtkWidget* const view = gtk_bin_get_child(GTK_BIN(scrolled));
    EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(view)), "Log");
    mWindow->Close();
  });
}

TEST_F(DesktopWindowTest, TypedLinesArriveAndTheLineIsEmptyAgain) {
  std::vector<std::u16string> lines;
  mWindow->SetInputLine(u"Script:", [&](const std::u16string& line) { lines.push_back(line); });
  mWindow->SetInputVisible(true);
  Run([&] {
    TypeText("print 1");
    PressRawKey(WXK_RETURN);
    RunWhen([&] { return lines.size() == 1; },
            [&] {
              EXPECT_EQ(FindAll<wxTextCtrl>().back()->GetValue(), "");
              EXPECT_EQ(FindAll<wxTextCtrl>().size(), 2U);
              mWindow->SetInputVisible(false);
              EXPECT_EQ(FindAll<wxTextCtrl>().size(), 1U);
              mWindow->Close();
            });
  });
  EXPECT_EQ(lines, (std::vector<std::u16string>{u"print 1"}));
}

TEST_F(DesktopWindowTest, AnExceptionOfAnActionClosesItAndIsThrownAgain) {
  mWindow->SetMenus({{u"File", {{.mCaption = u"Fail", .mAction = [] { throw std::runtime_error("no"); }}}}});
  EXPECT_THROW(Run([] {
                 PressRawKey(WXK_F10);
                 PressRawKey(WXK_DOWN);
                 PressRawKey(WXK_RETURN);
               }),
               std::runtime_error);
}

TEST_F(DesktopWindowTest, TasksRunAndDialogsOpenAboveIt) {
  bool isDone = false;
  Run([&] {
    qelcore::threads::AsyncCallFromMainThread(
        [&] {
          ListDialog dialog(SampleRows(2), mWindow->GetWindow());
          RunWith(dialog, [&] {
            EXPECT_EQ(TopWindow()->GetParent(), reinterpret_cast<wxWindow*>(mWindow->GetWindow()));
            dialog.Close();
          });
          isDone = true;
          mWindow->Close();
        },
        0);
  });
  EXPECT_TRUE(isDone);
}

TEST_F(DesktopWindowTest, IsEndedFromInsideADialogAboveIt) {
  bool isDone = false;
  Run([&] {
    TimedDialog dialog(mWindow->GetWindow());
    RunWith(dialog, [&] {
      mWindow->Close();
      dialog.Close();
    });
    isDone = true;
  });
  EXPECT_TRUE(isDone);
}

TEST_F(DesktopWindowTest, LooksRight) {
  mWindow->SetMenus(
      {{u"File", {{.mCaption = u"Quit"}}}, {u"Help", {{.mCaption = u"System Compatibility Report..."}}}});
  for (int line = 1; line < 12; ++line) mWindow->AppendLogLine(u"Something that happened in the host");
  mWindow->SetInputLine(u"Script:", [](const std::u16string&) {});
  mWindow->SetInputVisible(true);
  mWindow->SetStatusText(u"Ready");
  Run([&] {
    TakePicture("desktop");
    mWindow->Close();
  });
}

}  // namespace

}  // namespace qelui::test
