"""Dark colours, large letters and languages from right to left: everything is there, and inside the window."""
from Accessible import wait_for
from WindowTest import WindowTest, blocklist, main, rule

TITLE = "System Compatibility Report"
CONTINUE = ("push button", "Continue with known issues...")
RULES = (rule("Linux", "FATAL", "Files may be lost. Install another release of the system before you continue.",
              "https://example.com/linux"),
         rule("Debian GNU/Linux", "INFO", "A newer release is there.", "https://example.com/debian"))
DARK = {"GTK_THEME": "Adwaita:dark"}
LARGE = {"GDK_DPI_SCALE": "2"}
RIGHT_TO_LEFT = ("--language", "ar")
SCREEN = (0, 0, 1280, 960)


class Appearance(WindowTest):
    def expect_parts_inside(self, window, count):
        parts = [part for part in window.walk()
                 if part.role in ("label", "push button", "icon", "tree table") and part.is_showing()]
        self.assertEqual(len(parts), count, [repr(part) for part in parts])
        for part in parts:
            self.assertTrue(part.is_within(window), f"{part} {part.rectangle()} {window.rectangle()}")
        left, top, right, bottom = window.rectangle()
        self.assertTrue(SCREEN[0] <= left and SCREEN[1] <= top and right <= SCREEN[2] and bottom <= SCREEN[3],
                        window.rectangle())

    def start_report(self, *arguments, **environment):
        self.write_blocklist(blocklist(*RULES))
        self.start("show", *arguments, **environment)
        report = self.window(TITLE)
        report.find(*CONTINUE)
        self.picture("report")
        self.expect_parts_inside(report, 15)
        return report

    def start_optimizer(self, *arguments, **environment):
        self.start("optimize", *arguments, prefix=("prlimit", "--nofile=256:4096"), **environment)
        optimizer = self.window("Application Optimizer")
        optimizer.find("label", "3 of 3 selected")
        optimizer.find("push button", "Optimize")
        self.picture("optimizer")
        # The rows come with the next layout.
        wait_for("the layout", lambda: optimizer.find("push button", "Optimize").is_within(optimizer))
        self.expect_parts_inside(optimizer, 6)
        self.assertEqual(optimizer.all("scroll bar"), [])
        return optimizer

    def close_report(self, report):
        report.find(*CONTINUE).press()
        self.expect_end()

    def close_optimizer(self, optimizer):
        optimizer.find("push button", "Ignore").press()
        self.expect_end()

    def test_dark_report(self):
        self.close_report(self.start_report(**DARK))

    def test_dark_optimizer(self):
        self.close_optimizer(self.start_optimizer(**DARK))

    def test_large_report(self):
        self.close_report(self.start_report(**LARGE))

    def test_large_optimizer(self):
        self.close_optimizer(self.start_optimizer(**LARGE))

    def test_report_from_right_to_left(self):
        report = self.start_report(*RIGHT_TO_LEFT)
        # What stands at the left otherwise stands at the right.
        export = report.find("push button", "Export Report...").rectangle()
        self.assertGreater(export[0], report.find(*CONTINUE).rectangle()[2])
        icon = report.find("icon", "FATAL").rectangle()
        self.assertGreater(icon[0], report.find("label", "FATAL – Unsupported Operating System").rectangle()[0])
        self.close_report(report)

    def test_optimizer_from_right_to_left(self):
        optimizer = self.start_optimizer(*RIGHT_TO_LEFT)
        restore = optimizer.find("push button", "Restore system defaults").rectangle()
        self.assertGreater(restore[0], optimizer.find("push button", "Ignore").rectangle()[2])
        self.close_optimizer(optimizer)


if __name__ == "__main__":
    main()
