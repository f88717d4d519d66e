#!/usr/bin/python3
"""Looks at the sample dialogs as a screen reader does: accessibility.py SAMPLE_PROGRAM"""
import subprocess
import sys
import time
import unittest

import pyatspi

PROGRAM = ""
LONG_TIME = 60


def wait_for(what, find):
    """The first result of find() that is true."""
    end = time.monotonic() + LONG_TIME
    while time.monotonic() < end:
        try:
            found = find()
        except Exception:  # what is being built up or torn down answers with errors of many kinds
            found = None
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(f"{what} did not happen")


def below(node):
    for child in node:
        if child is not None:
            yield child
            yield from below(child)


def is_shown(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


class SampleTest(unittest.TestCase):
    def show(self, sample):
        self.process = subprocess.Popen([PROGRAM, sample], stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end)
        self.window = wait_for("the window", self.find_window)

    def end(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def find_window(self):
        for application in pyatspi.Registry.getDesktop(0):
            if application.get_process_id() == self.process.pid:
                return next((window for window in application if is_shown(window)), None)
        return None

    def shown(self, role):
        """Names of all controls of that role that can be seen, in their order."""
        return [node.name for node in below(self.window) if node.getRole() == role and is_shown(node)]

    def control(self, role, name):
        def find():
            return next((node for node in below(self.window)
                         if node.getRole() == role and node.name == name and is_shown(node)), None)
        return wait_for(f"{role} {name}", find)

    def press(self, node):
        self.assertTrue(node.queryAction().doAction(0))

    def said(self):
        return self.process.stdout.readline().strip()


class ListTest(SampleTest):
    def setUp(self):
        self.show("list")
        self.assertEqual(self.said(), "started")

    def test_window(self):
        self.assertEqual(self.window.name, "System Compatibility Report")
        self.assertEqual(self.window.getRole(), pyatspi.ROLE_DIALOG)

    def test_buttons(self):
        self.assertEqual(self.shown(pyatspi.ROLE_PUSH_BUTTON),
                         ["Fix Video: Graphics Device & Sons <b>1 (10.18.10.4252)",
                          "Info Audio: Sound Device 2 (10.18.10.4252)",
                          "Info Video: Graphics Device & Sons <b>3 (10.18.10.4252)", "Export Report...",
                          "Continue with known issues..."])

    def test_every_button_can_be_pressed(self):
        for name, line in [("Info Audio: Sound Device 2 (10.18.10.4252)", "row 1"), ("Export Report...", "export"),
                           ("Continue with known issues...", "continue")]:
            self.press(self.control(pyatspi.ROLE_PUSH_BUTTON, name))
            self.assertEqual(self.said(), line)
        self.assertEqual(self.process.wait(LONG_TIME), 0)

    def test_texts(self):
        texts = self.shown(pyatspi.ROLE_LABEL)
        for text in ["Some Application: System Compatibility Report", "Unsupported Video Driver",
                     "Video: Graphics Device & Sons <b>1 (10.18.10.4252)",
                     "Version 1.2.1 of this driver is known to lose its connection."]:
            self.assertIn(text, texts)

    def test_a_text_can_be_read_and_selected(self):
        text = self.control(pyatspi.ROLE_LABEL, "Unsupported Audio Driver").queryText()
        self.assertEqual(text.getText(0, -1), "Unsupported Audio Driver")
        self.assertTrue(text.addSelection(12, 17) or text.setSelection(0, 12, 17))

    def test_icons_and_list(self):
        self.assertEqual(self.shown(pyatspi.ROLE_ICON), ["Warning", "Error", "Information", "Information"])
        self.assertEqual([name for name in self.shown(pyatspi.ROLE_SCROLL_PANE) if name], ["Issues"])

    def test_the_focus_is_on_the_closing_control(self):
        focused = wait_for("the focus", lambda: [
            node.name for node in below(self.window) if node.getState().contains(pyatspi.STATE_FOCUSED)])
        self.assertEqual(focused, ["Continue with known issues..."])


class TreeTest(SampleTest):
    def setUp(self):
        self.show("tree")
        self.assertEqual(self.said(), "started")

    def test_rows(self):
        tree = self.control(pyatspi.ROLE_TREE_TABLE, "Optimizations")
        cells = [node.name for node in below(tree) if node.name]
        for cell in ["Power plan", "CURRENT", "OPTIMAL", "Balanced", "Hardware & audio buffering"]:
            self.assertIn(cell, cells)

    def test_a_check_box_can_be_changed(self):
        tree = self.control(pyatspi.ROLE_TREE_TABLE, "Optimizations")
        boxes = [node for node in below(tree) if "toggle" in
                 [node.queryAction().getName(index) for index in range(node.queryAction().nActions)]]
        self.assertTrue(boxes)
        self.assertTrue(boxes[0].getState().contains(pyatspi.STATE_CHECKED))
        names = [boxes[0].queryAction().getName(index) for index in range(boxes[0].queryAction().nActions)]
        boxes[0].queryAction().doAction(names.index("toggle"))
        self.assertEqual(self.said(), "row 0 unchecked")

    def test_the_progress_indicator_has_a_name(self):
        self.assertIn("Looking at this machine", [node.name for node in below(self.window) if is_shown(node)])


class DesktopTest(SampleTest):
    def setUp(self):
        self.show("desktop")
        self.assertEqual(self.said(), "started")

    def test_window(self):
        self.assertEqual(self.window.name, "A host application")
        self.assertEqual(self.window.getRole(), pyatspi.ROLE_FRAME)

    def test_a_menu_item_can_be_chosen(self):
        item = wait_for("the menu item", lambda: next(
            (node for node in below(self.window) if node.name == "System Compatibility Report..."), None))
        self.press(item)
        self.assertEqual(self.said(), "report")

    def test_the_log_and_the_input_line_can_be_read(self):
        texts = [node.queryText().getText(0, -1) for node in below(self.window)
                 if node.getRole() == pyatspi.ROLE_TEXT and is_shown(node)]
        self.assertIn("Ready & <willing>\n", texts)
        self.control(pyatspi.ROLE_TEXT, "Script:")


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
