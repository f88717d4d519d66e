"""Makes the pictures of the windows for the documentation; `make-pictures` runs it."""
import os
import pathlib

from Accessible import wait_for
from WindowTest import WindowTest, blocklist, main, rule, save_picture

PAGE = "https://example.com/help"
RULES = (
    rule("swap.mb", "ERROR", "There is too little swap space: the program may end in the middle of your work. "
         "Add swap space or close other programs.", PAGE, kind="Property"),
    rule("system.virtualisation", "WARN", "Drawing is slow here. Run the program outside of the virtual machine "
         "for large documents.", PAGE, kind="Property"),
    rule("Linux", "INFO", "Updates of the kernel bring faster graphics drivers.", PAGE))


class Pictures(WindowTest):
    def save(self, window, name):
        directory = pathlib.Path(os.environ["QELSCR_PICTURES"])
        directory.mkdir(parents=True, exist_ok=True)
        save_picture(window, directory / name)

    def report(self, name, **environment):
        self.write_blocklist(blocklist(*RULES))
        self.start("show", **environment)
        window = self.window("System Compatibility Report")
        window.find("push button", "Continue with known issues...")
        self.save(window, name)

    def optimizer(self, name, **environment):
        self.start("optimize", prefix=("prlimit", "--nofile=256:4096"), **environment)
        window = self.window("Application Optimizer")
        wait_for("the count", lambda: window.all("label", "3 of 3 selected"))
        self.save(window, name)

    def test_report_light(self):
        self.report("report-light.png")

    def test_report_dark(self):
        self.report("report-dark.png", GTK_THEME="Adwaita:dark")

    def test_optimizer_light(self):
        self.optimizer("optimizer-light.png")

    def test_optimizer_dark(self):
        self.optimizer("optimizer-dark.png", GTK_THEME="Adwaita:dark")


if __name__ == "__main__":
    main()
