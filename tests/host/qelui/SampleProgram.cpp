// Shows one of the sample dialogs, for tests that look at it from another process. Each choice that arrives
// is a line on standard output. The argument says which: "list", "tree" or "desktop".
#include <cstdio>
#include <exception>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "host/qelui/DesktopWindow.h"
#include "host/qelui/HostSetup.h"
#include "tests/host/qelui/SampleDialogs.h"

namespace qelui::test {

namespace {

/// Seen at once, whatever standard output is.
void Say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

void ShowList() {
  ListDialog dialog(SampleRows(3));
  for (std::size_t row = 0; row < dialog.mRowButtons.size(); ++row)
    dialog.mRowButtons[row]->SetAction([row] { Say("row " + std::to_string(row)); });
  dialog.mExport->SetAction([] { Say("export"); });
  dialog.mContinue->SetAction([&] {
    Say("continue");
    dialog.Close();
  });
  dialog.RunModal();
}

void ShowTree() {
  TreeDialog dialog;
  dialog.ShowTree(SampleTreeRows());
  dialog.mTree->SetOnCheck([](std::size_t row, bool isChecked) {
    Say("row " + std::to_string(row) + (isChecked ? " checked" : " unchecked"));
  });
  dialog.mProgress->SetVisible(true);
  dialog.RunModal();
}

void ShowDesktop() {
  const auto window = host::DesktopWindow::Make();
  window->SetTitle(u"A host application");
  window->SetMenus(
      {{u"File", {{.mCaption = u"Quit", .mAction = [&] { window->Close(); }}}},
       {u"Help", {{.mCaption = u"System Compatibility Report...", .mAction = [] { Say("report"); }}}}});
  window->AppendLogLine(u"Ready & <willing>");
  window->SetInputLine(u"Script:", [](const std::u16string&) { Say("script"); });
  window->SetInputVisible(true);
  window->SetStatusText(u"Idle");
  window->Run();
}

int Main(const std::string& what) {
  host::StartToolkit();
  Say("started");
  if (what == "list") ShowList();
  if (what == "tree") ShowTree();
  if (what == "desktop") ShowDesktop();
  host::StopToolkit();
  return 0;
}

}  // namespace

}  // namespace qelui::test

int main(int count, char** arguments) {
  try {
    if (count > 2) qelcore::host::SetApplicationLanguage(arguments[2]);
    return qelui::test::Main(count > 1 ? arguments[1] : "");
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 1;
  }
}
