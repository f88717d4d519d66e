"""The optimizer: progress, rows with check boxes, what they change, and how it ends."""
from Accessible import press_keys, wait_for
from WindowTest import WindowTest, main

TITLE = "Application Optimizer"
FAILURE = "Demonstration: fails: Why did it fail? No idea."


# The rows in their order; each has a line with its values below it.
AT_ONCE, AFTER_A_WHILE, NOT_APPLICABLE, FAILS, STOPS, OPEN_FILES = range(6)
NAMES = ("Demonstration: at once", "Demonstration: after a while", "Demonstration: not applicable",
         "Demonstration: fails", "Demonstration: stops", "Files that may be open at a time")


class OptimizerTest(WindowTest):
    def setUp(self):
        super().setUp()
        # The number of files that may be open can always be raised.
        self.start("optimize", prefix=("prlimit", "--nofile=256:4096"))
        self.dialog = self.window(TITLE)

    def wait_for_rows(self):
        self.dialog.find("label", "3 of 3 selected")
        return self.dialog.find("tree table")

    def expect_count(self, text, can_optimize=True):
        self.dialog.find("label", text)
        wait_for("the Optimize button to follow",
                 lambda: bool(self.dialog.all("push button", "Optimize")) == can_optimize)

    @staticmethod
    def cells(table):
        return [part for part in table.children() if part.role == "table cell"]

    def check_box(self, table, row):
        """The cell in front of the row's name, which is called like it."""
        return next(cell for cell in self.cells(table) if cell.name == NAMES[row])

    def toggle(self, row):
        """Moves the keyboard to a row and presses the space bar."""
        table = self.dialog.find("tree table")
        if not table.has("FOCUSED"):
            assert table.ask("Component", "GrabFocus")[0]
            wait_for("the rows to have the keyboard", lambda: table.has("FOCUSED"))
        press_keys("Home", *["Down"] * (2 * row))
        wait_for(f"{NAMES[row]} to be the current row", lambda: any(
            cell.name == NAMES[row] and cell.has("SELECTED") for cell in self.cells(table)))
        press_keys("space")


class Optimize(OptimizerTest):
    def press_optimize(self):
        self.dialog.find("push button", "Optimize").press_by_keyboard()

    def test_progress_then_rows(self):
        # A demonstration takes a second.
        self.assertTrue(self.dialog.all("animation", "Looking for what can be optimized"))
        self.assertEqual(self.dialog.readable(), [
            ("label", TITLE), ("push button", "Restore system defaults"), ("push button", "Ignore")])
        self.picture("progress")
        table = self.wait_for_rows()
        self.assertEqual(self.dialog.all("animation"), [])
        names = [cell.name for cell in self.cells(table) if cell.name]
        # The check boxes are called like their rows.
        self.assertEqual(names, [
            *["Demonstration: at once"] * 2, "CURRENT", "OPTIMAL", "3", "7",
            *["Demonstration: after a while"] * 2, "CURRENT", "OPTIMAL", "slow", "fast",
            *["Demonstration: not applicable"] * 2, "CURRENT", "OPTIMAL",
            *["Demonstration: fails"] * 2, "CURRENT", "OPTIMAL",
            *["Demonstration: stops"] * 2, "CURRENT", "OPTIMAL",
            *["Files that may be open at a time"] * 2, "CURRENT", "OPTIMAL", "256", "4096"])
        self.assertEqual(table.name, "Optimizations")
        self.assertEqual(self.dialog.readable(), [
            ("label", TITLE), ("label", "3 of 3 selected"), ("push button", "Restore system defaults"),
            ("push button", "Ignore"), ("push button", "Optimize")])
        self.picture("rows")
        self.dialog.find("push button", "Ignore").press()
        self.expect_end()

    def test_count_and_button_follow_the_check_boxes(self):
        self.wait_for_rows()
        self.toggle(AT_ONCE)
        self.expect_count("2 of 3 selected")
        self.toggle(AFTER_A_WHILE)
        self.expect_count("1 of 3 selected")
        self.toggle(OPEN_FILES)
        self.expect_count("0 of 3 selected", can_optimize=False)
        self.picture("none-selected")
        self.toggle(AT_ONCE)
        self.expect_count("1 of 3 selected")
        self.press_optimize()
        self.expect_end()

    def test_tab_leads_to_the_rows(self):
        self.wait_for_rows()
        stops = self.tab_order(self.dialog)
        self.assertEqual(sorted(part.role for part in stops), ["push button"] * 3 + ["tree table"])
        self.assertEqual(sorted(part.name for part in stops if part.role == "push button"),
                         ["Ignore", "Optimize", "Restore system defaults"])
        press_keys("Escape")
        self.expect_end()

    def test_optimize_closes(self):
        self.wait_for_rows()
        self.dialog.find("push button", "Optimize").press()
        self.expect_end()

    def test_restore_closes(self):
        self.wait_for_rows()
        self.dialog.find("push button", "Restore system defaults").press()
        self.expect_end()

    def test_failure_is_told(self):
        self.wait_for_rows()
        self.toggle(FAILS)
        self.expect_count("4 of 3 selected")
        self.press_optimize()
        message = self.alert(FAILURE)
        self.picture("failure")
        message.find("push button", "OK").press()
        self.expect_end()

    def test_ignore_during_the_progress(self):
        press_keys("Escape")
        self.expect_end()


if __name__ == "__main__":
    main()
