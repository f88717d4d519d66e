"""A long report: it opens in time, and the keyboard alone reaches and shows everything."""
from Accessible import press_keys, wait_for
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
CONTINUE = ("push button", "Continue with known issues...")
RULE_COUNT = 300
LONG_TEXT = "This text goes on and on, so that it takes many lines, whatever the width of the window is. " * 12
VISITED_ROWS = 40


class OpenedReport(WindowTest):
    """A long report, most of whose rows come after its window."""

    def setUp(self):
        super().setUp()
        rules = [rule("Linux", "WARN", f"Number {number:03}. {LONG_TEXT if number % 10 == 0 else ''}",
                      "https://example.com/linux") for number in range(RULE_COUNT)]
        self.write_blocklist(blocklist(*rules))
        self.start("show")
        self.report = self.window(TITLE)
        self.pane = self.report.find("scroll pane", TITLE)

    def find_rows(self):
        """The rows in their order when all are there, or else None. They are all that has a name in the pane's panels."""
        rows = []
        inner = self.pane.children()
        while inner and not rows:
            rows = [part for part in inner if part.role == "panel" and part.name]
            inner = [child for part in inner for child in part.children()]
        return rows if len(rows) == RULE_COUNT else None

    def close(self):
        press_keys("Escape")
        self.expect_end()


class LongReportTest(OpenedReport):
    """The same with all of its rows."""

    def setUp(self):
        super().setUp()
        self.rows = wait_for("all rows", self.find_rows)

    def button(self, row):
        return next(part for part in self.rows[row].children() if part.role == "push button")

    def top(self):
        """Where the first row's button begins."""
        return self.button(0).rectangle()[1]

    def expect_focus_in_view(self, part):
        wait_for(f"the keyboard to reach {part}", lambda: part.has("FOCUSED"))
        self.assertTrue(part.is_showing())
        wait_for(f"{part} to be scrolled into view", lambda: part.is_within(self.pane))


class ComingRows(OpenedReport):
    def test_end_key_leads_to_the_last_row(self):
        press_keys("End")
        rows = wait_for("all rows", self.find_rows)
        wait_for("the last row in view", lambda: rows[-1].is_within(self.pane))
        self.picture("end")
        self.close()

    def test_first_row_stays_in_view(self):
        top = self.pane.rectangle()[1]
        rows = wait_for("all rows", self.find_rows)
        self.assertTrue(top <= rows[0].rectangle()[1] < top + 50, rows[0].rectangle())
        self.assertTrue(all(row.name.startswith(f"{number}. WARN") for number, row in enumerate(rows, 1)))
        self.close()

    def test_closes_at_once(self):
        self.close()


class LongReport(LongReportTest):
    def test_tab_visits_every_row_and_scrolls_it_into_view(self):
        continue_button = self.report.find(*CONTINUE)
        wait_for("the keyboard to be at the end", lambda: continue_button.has("FOCUSED"))
        for row in range(VISITED_ROWS):
            press_keys("Tab")
            self.expect_focus_in_view(self.button(row))
        self.picture("middle")
        for row in reversed(range(VISITED_ROWS - 1)):
            press_keys("shift+Tab")
            self.expect_focus_in_view(self.button(row))
        press_keys("shift+Tab")
        wait_for("the keyboard to be at the end again", lambda: continue_button.has("FOCUSED"))
        export = self.report.find("push button", "Export Report...")
        press_keys("shift+Tab")
        wait_for("the keyboard at the export", lambda: export.has("FOCUSED"))
        press_keys("shift+Tab")
        self.expect_focus_in_view(self.button(RULE_COUNT - 1))
        self.picture("end")
        self.close()

    def test_keys_scroll(self):
        start = self.top()
        last = self.button(-1)
        for key, moves in (("Next", lambda: self.top() < start), ("Prior", lambda: self.top() == start),
                           ("Down", lambda: self.top() < start), ("Up", lambda: self.top() == start),
                           ("End", lambda: last.is_within(self.pane)),
                           ("Home", lambda: self.top() == start)):
            with self.subTest(key=key):
                press_keys(key)
                wait_for(f"{key} to scroll", moves)
        self.close()

    def test_window_is_within_the_screen_and_holds_its_parts(self):
        left, top, right, bottom = self.report.rectangle()
        self.assertTrue(0 <= left and 0 <= top and right <= 1280 and bottom <= 960, self.report.rectangle())
        self.assertTrue(self.pane.is_within(self.report))
        for part in (self.report.find(*CONTINUE), self.report.find("push button", "Export Report...")):
            self.assertTrue(part.is_within(self.report))
        self.assertEqual(len([part for part in self.report.all("label") if part.name.startswith("Number ")]),
                         RULE_COUNT)
        self.picture("start")
        self.close()


if __name__ == "__main__":
    main()
