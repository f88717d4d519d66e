"""The run at launch: which windows come up, and which do not."""

from Accessible import press_keys
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
WARNING_TITLE = "Incompatibilities Found"
WARNING = "Incompatible drivers can cause crashes and the loss of unsaved work."
ERROR = rule("Linux", "ERROR", "It may crash.", "https://example.com/linux")
INFO = rule("Linux", "INFO", "A newer release is there.", "https://example.com/linux")


class Launch(WindowTest):
    def launch(self):
        self.start("launch")

    def close_second_warning(self):
        warning = self.alert(WARNING)
        # The report is gone before the warning comes up.
        self.assertEqual(len(self.windows()), 1)
        self.picture("second-warning")
        warning.find("push button", "OK").press()

    def test_report_then_second_warning(self):
        self.write_blocklist(blocklist(ERROR, second_warning=WARNING))
        self.launch()
        report = self.window(TITLE)
        self.assertEqual(len(self.windows()), 1)
        self.assertIn(("label", "It may crash."), report.readable())
        self.picture("report")
        report.find("push button", "Continue with known issues...").press()
        self.close_second_warning()
        self.expect_end()
        self.assertEqual(self.output(), "Known issues of this machine: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n")

    def test_quiet_launch_shows_the_second_warning_only(self):
        self.write_blocklist(blocklist(ERROR, second_warning=WARNING))
        self.run_scr("state", "quiet")
        self.launch()
        self.close_second_warning()
        self.expect_end()
        self.assertEqual(len(self.state()["error_matches"]), 1)
        self.assertIs(self.state()["show_issues_at_startup"], False)

    def test_second_warning_closes_by_the_keyboard(self):
        self.write_blocklist(blocklist(ERROR, second_warning=WARNING))
        self.run_scr("state", "quiet")
        for key in ("Return", "Escape"):
            with self.subTest(key=key):
                self.launch()
                self.alert(WARNING)
                press_keys(key)
                self.expect_end()

    def test_nothing_serious_and_nothing_changed_shows_no_window(self):
        self.write_blocklist(blocklist(INFO, second_warning=WARNING))
        # The first launch finds something new.
        self.launch()
        self.window(TITLE).find("push button", "OK").press()
        self.expect_end()
        before = self.state()

        # A window would stay open, and the program would not end.
        self.launch()
        self.expect_end()
        self.assertEqual(self.output(), "Known issues of this machine: 0 FATAL, 0 ERROR, 0 WARN, 1 INFO\n")
        self.assertEqual(self.state(), before)

    def test_the_report_comes_up_again_while_something_is_serious(self):
        self.write_blocklist(blocklist(ERROR))
        for _ in range(2):
            self.launch()
            self.window(TITLE).find("push button", "Continue with known issues...").press()
            self.expect_end()


if __name__ == "__main__":
    main()
