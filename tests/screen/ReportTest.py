"""The report: what it says, its links, its export and how it is closed."""
import re

from Accessible import press_keys, wait_for
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
NOTE = ("If you continue with known issues, you may experience performance degradation, instability and data "
        "loss.")
SAVE_TITLE = "Save System Compatibility Report As"
FATAL = rule("Linux", "FATAL", "Files may be lost. Install another release.", "https://example.com/linux")
INFO = rule("Debian GNU/Linux", "INFO", "A newer release is there.", "https://example.com/debian")


class SeriousReport(WindowTest):
    def setUp(self):
        super().setUp()
        self.write_blocklist(blocklist(FATAL, INFO))
        self.start("show")
        self.report = self.window(TITLE)

    def button(self, beginning):
        """The button whose name begins so."""
        return wait_for(f"the button {beginning!r}", lambda: next(
            (part for part in self.report.all("push button") if part.name.startswith(beginning)), None))

    def close(self):
        self.report.find("push button", "Continue with known issues...").press()
        self.expect_end()

    def test_says_all_by_name_and_role(self):
        readable = [(role, re.sub(r"(\[Operating System\] .*) v\.[\d.]+", r"\1", name))
                    for role, name in self.report.readable()]
        self.assertEqual(readable, [
            ("icon", "Warning"),
            ("label", TITLE),
            ("label", NOTE),
            ("panel", "1. FATAL: Unsupported Operating System, [Operating System] Linux"),
            ("icon", "FATAL"),
            ("label", "FATAL – Unsupported Operating System"),
            ("label", "[Operating System] Linux"),
            ("label", "Files may be lost. Install another release."),
            ("push button", "Fix... 1. [Operating System] Linux"),
            ("panel", "2. INFO: Unsupported Operating System, [Operating System] Debian GNU/Linux"),
            ("icon", "INFO"),
            ("label", "INFO – Unsupported Operating System"),
            ("label", "[Operating System] Debian GNU/Linux"),
            ("label", "A newer release is there."),
            ("push button", "Info... 2. [Operating System] Debian GNU/Linux"),
            ("push button", "Export Report..."),
            ("push button", "Continue with known issues...")])
        self.picture("report")
        self.close()
        self.assertEqual(len(self.state()["fatal_matches"]), 1)
        self.assertEqual(len(self.state()["info_matches"]), 1)
        self.assertEqual(self.events().count(("info", "system-compatibility-report-issue")), 2)

    def test_hidden_ok_button_cannot_be_reached(self):
        for part in self.report.walk():
            if part.name == "OK":
                self.assertFalse(part.is_showing())
                self.assertFalse(part.has("SENSITIVE"))
        for key in ("Tab", "shift+Tab"):
            names = [part.name for part in self.tab_order(self.report, key)]
            self.assertNotIn("OK", names)
            self.assertIn("Export Report...", names)
            self.assertIn("Continue with known issues...", names)
            self.assertEqual(len([name for name in names if name.startswith(("Fix...", "Info..."))]), 2)
        self.close()

    def test_links_open_pages_and_keep_the_report(self):
        self.button("Fix...").press()
        wait_for("the page about Linux", self.opened.exists)
        wait_for("the page about Linux", lambda: self.opened.read_text() == "https://example.com/linux\n")
        self.button("Info...").press()
        wait_for("the page about Debian", lambda: self.opened.read_text().endswith(".com/debian\n"))
        self.expect_running()
        self.assertTrue(self.report.is_showing())
        self.close()
        self.assertEqual(self.opened.read_text(), "https://example.com/linux\nhttps://example.com/debian\n")
        self.assertEqual(self.events().count(("continue", "system-compatibility-report-fix")), 2)

    def test_closes_by_the_keyboard(self):
        self.assertEqual(self.focus(self.report).name, "Continue with known issues...")
        press_keys("Return")
        self.expect_end()

    def save_as(self, path):
        self.button("Export Report...").press_by_keyboard()
        chooser = self.window(SAVE_TITLE)
        name = wait_for("the field for the name", lambda: next(
            (part for part in chooser.all("text") if part.has("EDITABLE")), None))
        self.assertEqual(name.text, "SystemCompatibilityReport.txt")
        name.text = str(path)
        self.picture("save-as")
        chooser.find("push button", "Save").press()

    def expect_report(self, path):
        wait_for("the saved report", lambda: path.exists() and "A newer release" in path.read_text("utf-8"))
        text = path.read_text(encoding="utf-8")
        self.assertIn("Files may be lost. Install another release.", text)
        self.assertIn("https://example.com/linux", text)

    def test_export_saves_the_report_and_asks_before_it_overwrites(self):
        path = self.files / "home/Documents/My report.txt"
        self.save_as(path)
        self.expect_report(path)
        self.window(TITLE)

        path.write_text("Another file.")
        self.save_as(path)
        question = wait_for("the question", lambda: next(
            (window for window in self.windows() if window.all("push button", "Replace")), None))
        self.assertTrue(any("My report.txt" in name for _, name in question.readable()), question.readable())
        self.assertEqual(path.read_text(), "Another file.")
        self.picture("overwrite")
        question.find("push button", "Replace").press()
        self.expect_report(path)
        self.window(TITLE)

        self.close()
        self.assertEqual(self.events().count(("success", "export-system-compatibility-report")), 2)

    def test_export_that_is_given_up_writes_nothing(self):
        self.button("Export Report...").press_by_keyboard()
        self.window(SAVE_TITLE).find("push button", "Cancel").press()
        self.window(TITLE)
        self.close()
        self.assertNotIn(("success", "export-system-compatibility-report"), self.events())
        self.assertEqual(list((self.files / "home/Documents").iterdir()), [])


class HarmlessReport(WindowTest):
    def start_report(self, *rules):
        self.write_blocklist(blocklist(*rules))
        self.start("show")
        return self.window(TITLE)

    def test_hint_alone_needs_no_warning(self):
        report = self.start_report(INFO)
        readable = report.readable()
        self.assertIn(("label", "A newer release is there."), readable)
        self.assertIn(("push button", "OK"), readable)
        self.assertNotIn(("label", NOTE), readable)
        self.assertNotIn(("push button", "Continue with known issues..."), readable)
        self.assertNotIn(("icon", "Warning"), readable)
        self.picture("report")
        report.find("push button", "OK").press()
        self.expect_end()

    def test_enter_closes(self):
        report = self.start_report(INFO)
        self.assertEqual(self.focus(report).name, "OK")
        press_keys("Return")
        self.expect_end()

    def test_enter_presses_the_button_that_has_the_keyboard(self):
        report = self.start_report(INFO)
        while not self.focus(report).name.startswith("Info..."):
            before = self.focus(report)
            press_keys("Tab")
            wait_for("the next part", lambda: self.focus(report) != before)
        press_keys("Return")
        wait_for("the page", self.opened.exists)
        self.expect_running()
        press_keys("Escape")
        self.expect_end()

    def test_escape_closes(self):
        self.start_report(INFO)
        press_keys("Escape")
        self.expect_end()

    def test_close_box_closes(self):
        self.start_report(INFO)
        press_keys("alt+F4")
        self.expect_end()

    def test_no_issues(self):
        report = self.start_report(rule("No Such System", "FATAL", "Never.", "https://example.com"))
        self.assertEqual(report.readable(), [
            ("label", TITLE), ("label", "No conflicts to report."), ("push button", "Export Report..."),
            ("push button", "OK")])
        self.picture("report")
        press_keys("Return")
        self.expect_end()
        self.assertNotIn("fatal_matches", self.state())

    def test_no_blocklist(self):
        self.start("show")
        report = self.window(TITLE)
        self.assertIn(("label", "Blocklist not present."), report.readable())
        self.picture("report")
        report.find("push button", "OK").press()
        self.expect_end()


if __name__ == "__main__":
    main()
