"""What a screen reader presses, and what it and its user are told and shown."""
from Accessible import press_keys, wait_for
from KeyboardTest import LongReportTest
from OptimizeTest import OptimizerTest
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
CONTINUE = ("push button", "Continue with known issues...")
ERROR = rule("Linux", "ERROR", "It may crash.", "https://example.com/linux")


class PressedWindows(WindowTest):
    """A window that a press opens can be read while it is open."""

    def test_file_dialog(self):
        self.write_blocklist(blocklist(ERROR))
        self.start("show")
        report = self.window(TITLE)
        report.find("push button", "Export Report...").press()
        self.window("Save System Compatibility Report As").find("push button", "Cancel").press()
        self.window(TITLE).find(*CONTINUE).press()
        self.expect_end()

    def test_report_from_a_menu(self):
        self.write_blocklist(blocklist(ERROR))
        self.start("desktop")
        self.window(TITLE, CONTINUE).find(*CONTINUE).press()
        desktop = self.window(TITLE, ("menu bar",))
        for item in desktop.find("menu", "Help").children():
            if item.name == "System Compatibility Report...":
                item.press()
        self.window(TITLE, CONTINUE).find(*CONTINUE).press()
        self.window(TITLE, ("menu bar",))
        self.stop(self.program)


class CheckBoxes(OptimizerTest):
    def test_state_follows_the_keyboard(self):
        table = self.wait_for_rows()
        self.assertTrue(self.check_box(table, 0).has("CHECKED"))
        self.toggle(0)
        self.expect_count("2 of 3 selected")
        wait_for("the state of the check box", lambda: not self.check_box(table, 0).has("CHECKED"))
        self.toggle(0)
        self.expect_count("3 of 3 selected")
        wait_for("the state of the check box", lambda: self.check_box(table, 0).has("CHECKED"))


    def test_press_changes_a_check_box(self):
        table = self.wait_for_rows()
        for action in ("toggle", "Activates the cell"):
            for count, is_checked in (("2 of 3 selected", False), ("3 of 3 selected", True)):
                with self.subTest(action=action, is_checked=is_checked):
                    self.check_box(table, 0).act(action)
                    self.expect_count(count)
                    wait_for("the state of the check box", lambda is_checked=is_checked:
                             self.check_box(table, 0).has("CHECKED") == is_checked)


class FocusedRows(LongReportTest):
    def test_the_whole_row_is_scrolled_into_view(self):
        for row in range(20):
            press_keys("Tab")
            self.expect_focus_in_view(self.button(row))
            for label in self.rows[row].all("label"):
                wait_for(f"{label} in view", lambda label=label: label.is_within(self.pane))
        self.close()


if __name__ == "__main__":
    main()
