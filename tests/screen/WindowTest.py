"""`scr` with directories of its own, for the tests of its windows."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from Accessible import TIMEOUT_SECONDS, press_keys, wait_for, windows_of

KINDS = ("OS", "Video", "Audio", "Network", "File", "Property")


def rule(name, level, message=None, url=None, kind="OS"):
    members = {"name": name, "type": kind, "error_level": level, "info_message": message, "info_url": url}
    return {key: value for key, value in members.items() if value is not None}


def blocklist(*rules, second_warning=None):
    """A list that verifies."""
    members = {"blocklist_version": 1,
               "default_info": {kind: {"info_message": f"About {kind}.",
                                       "info_url": f"https://example.com/{kind}"} for kind in KINDS},
               "blocklist": list(rules)}
    if second_warning is not None:
        members["second_warning"] = second_warning
    return members


def save_picture(window, path):
    """Saves what the screen shows of a window, with its frame, once two looks at it show the same."""
    looks = []

    def is_steady():
        looks.append((window.rectangle(), subprocess.run(
            ["import", "-window", "root", "-format", "%#", "info:-"], check=True, capture_output=True,
            timeout=TIMEOUT_SECONDS).stdout))
        return len(looks) > 1 and looks[-1] == looks[-2]

    wait_for("a steady picture", is_steady)
    left, top, right, bottom = window.rectangle()
    subprocess.run(["import", "-window", "root", "-crop", f"{right - left}x{bottom - top}+{left}+{top}",
                    "+repage", "-strip", path], check=True, timeout=TIMEOUT_SECONDS)


class WindowTest(unittest.TestCase):
    """A test of what `scr` shows on the screen."""

    longMessage = True

    def setUp(self):
        self.files = pathlib.Path(tempfile.mkdtemp(prefix="scr-windows-"))
        self.addCleanup(shutil.rmtree, self.files, ignore_errors=True)
        self.preferences = self.files / "preferences"
        self.application = self.files / "application"
        self.opened = self.files / "opened-pages"
        for directory in (self.application / "SystemCompatibilityReport", self.files / "home/Documents",
                          self.files / "bin"):
            directory.mkdir(parents=True)
        # In place of a browser.
        browser = self.files / "bin/xdg-open"
        browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{self.opened}"\n')
        browser.chmod(0o755)
        home = self.files / "home"
        self.environment = os.environ | {
            "PATH": f"{self.files}/bin:{os.environ['PATH']}", "HOME": str(home),
            "XDG_STATE_HOME": str(home / ".local/state"), "XDG_CACHE_HOME": str(home / ".cache"),
            "LC_ALL": "C.UTF-8", "LANGUAGE": "en_US"}
        self.program = None

    def write_blocklist(self, content):
        path = self.application / "SystemCompatibilityReport/blocklist.en_US.json"
        path.write_text(json.dumps(content), encoding="utf-8")

    def scr(self, *arguments):
        return [os.environ["QELSCR"], "--pref-dir", str(self.preferences), "--app-dir", str(self.application),
                *arguments]

    def run_scr(self, *arguments):
        """Runs a verb without windows and returns its output."""
        return subprocess.run(self.scr(*arguments), env=self.environment, check=True, capture_output=True,
                              text=True, timeout=TIMEOUT_SECONDS).stdout

    def start(self, *arguments, prefix=(), **environment):
        """Starts `scr` in the background; what it writes goes to files."""
        with open(self.files / "output", "wb") as output, open(self.files / "errors", "wb") as errors:
            self.program = subprocess.Popen([*prefix, *self.scr(*arguments)], stdout=output, stderr=errors,
                                            env=self.environment | environment, cwd=self.files)
        self.addCleanup(self.stop, self.program)

    @staticmethod
    def stop(program):
        if program.poll() is None:
            program.kill()
        program.wait()

    def windows(self):
        if self.program.poll() is not None:
            self.fail(f"scr ended with {self.program.returncode}: {self.errors()}")
        return windows_of(self.program.pid)

    def window(self, title, holding=None):
        """The window of that title, with a part of that role and name in it; waits until it has the keyboard."""
        def find():
            found = [window for window in self.windows() if window.name == title and window.has("ACTIVE")
                     and (holding is None or window.all(*holding))]
            return found[0] if len(found) == 1 else None
        return wait_for(f"the window {title!r}", find)

    def alert(self, text):
        """The message box that says this."""
        def find():
            return next((window for window in self.windows()
                         if window.role == "alert" and window.has("ACTIVE") and window.all("label", text)), None)
        return wait_for(f"a message that says {text!r}", find)

    def output(self):
        return (self.files / "output").read_text(encoding="utf-8")

    def errors(self):
        return (self.files / "errors").read_text(encoding="utf-8")

    def expect_end(self, exit_code=0):
        """The program ends by itself, with nothing to complain about."""
        try:
            self.program.wait(TIMEOUT_SECONDS)
        except subprocess.TimeoutExpired:
            self.fail("scr did not end; windows: " + repr([window.readable() for window in self.windows()]))
        self.assertEqual(self.program.returncode, exit_code, self.errors())
        # GTK tells what it thinks of sizes and events as it likes; nothing else may be said.
        self.assertEqual(re.sub(r"\n?\(.*:\d+\): (Gtk|Gdk|GLib)\S* \*\*: .*\n", "", self.errors()), "")

    def expect_running(self):
        self.assertIsNone(self.program.poll(), self.errors())

    def tab_order(self, window, key="Tab"):
        """The parts that a key moves the keyboard to, from the one that has it until it has it again."""
        order = [self.focus(window)]
        while True:
            before = order[-1]
            press_keys(key)
            # The order has more than one part, so the keyboard has to go elsewhere.
            wait_for(f"{key} to leave {order[-1].name!r}", lambda: self.focus(window) != before)
            part = self.focus(window)
            if part == order[0]:
                return order
            self.assertLess(len(order), 1000)
            order.append(part)

    @staticmethod
    def focus(window):
        return wait_for("a part that has the keyboard", window.focused)

    def state(self):
        return json.loads((self.preferences / "SCRPriorState.json").read_text(encoding="utf-8"))

    def events(self):
        """Subtype and name of the recorded events."""
        lines = (self.preferences / "analytics-events.jsonl").read_text(encoding="utf-8").splitlines()
        return [(event["subtype"], event["name"]) for event in map(json.loads, lines)]

    def picture(self, name):
        """Saves what the screen shows, where pictures are wanted."""
        directory = os.environ.get("QELSCR_SCREENSHOTS")
        if directory:
            os.makedirs(directory, exist_ok=True)
            subprocess.run(["import", "-window", "root", f"{directory}/{self.id().split('.', 1)[-1]}-{name}.png"],
                           check=True, timeout=TIMEOUT_SECONDS)


def main():
    """<case>.py <scr> [<test>...]"""
    os.environ["QELSCR"] = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=2)
