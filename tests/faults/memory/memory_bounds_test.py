"""The most memory that the program takes, whatever it is given to read: the bounds of docs/robustness.md.

  memory_bounds_test.py SCR [TEST...]

What a program took is the most that was resident of it, which its parent counts in: this one stays small, and writes
what is large in pieces.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCR = sys.argv[1]

MEBIBYTE = 1 << 20
PIECE = 1 << 16

# In MiB. The program alone takes half of the least.
SMALL = 32

MACHINE = {"components": [{"name": "Example", "type": "OS", "version": "1.0"}]}


def repeated(text, times):
    """The text that many times, in pieces."""
    batch = max(1, PIECE // len(text))
    for _ in range(times // batch):
        yield text * batch
    yield text * (times % batch)


def within(beginning, pieces, end):
    yield beginning
    yield from pieces
    yield end


def in_a_list(rules):
    return within('{"blocklist_version":1,"blocklist":[', rules, "]}")


def in_an_array(text, times):
    return within(text, repeated("," + text, times - 1), "")


# What is read, the most memory in MiB, and the ends that the program may come to: 0 and 2 are results.
TEXT = '{"blocklist_version":1,"second_warning":"'
RULE = '{"type":"OS","name":"Example","version":"1.0","error_level":"WARN"}'
BLOCKLISTS = {
    "text_of_64_mebibytes": (lambda: within(TEXT, repeated("x", 64 * MEBIBYTE - len(TEXT) - 2), '"}'), 400, (0,)),
    "blanks": (lambda: within('{"blocklist_version":1', repeated(" ", 64 * MEBIBYTE - 23), "}"), 224, (0,)),
    "two_million_values": (lambda: in_a_list(in_an_array(RULE, 419_000)), 1024, (0, 2)),
    "numbers_for_rules": (lambda: in_a_list(in_an_array("1", 2_097_142)), 224, (1,)),
    "empty_rules": (lambda: in_a_list(in_an_array("{}", 1_048_566)), 256, (1,)),
    "too_many_values": (lambda: in_a_list(in_an_array("1", 2_097_160)), 160, (1,)),
    "a_number_of_60_megabytes": (lambda: within('{"blocklist_version":', repeated("1", 60_000_000), "}"), 208, (1,)),
    "a_million_levels": (lambda: within("", repeated("[", 1_000_000), "]"), SMALL, (1,)),
    "a_million_levels_that_end": (lambda: within("", repeated("[", 1_000_000), "]" * 1_000_000), SMALL, (1,)),
    "one_byte_more_than_may_be": (lambda: repeated(" ", 64 * MEBIBYTE + 1), SMALL, (1,)),
}

# Expressions that would take all time and memory, or the stack, on names of a megabyte, and what becomes of them.
HIT, NO_HIT, REFUSED = 2, 0, None
HOSTILE = (
    ("^.*x.*$", NO_HIT), ("^(.*\\b)*z$", NO_HIT), ("^((a*)*)*z$", NO_HIT), ("((a*)*)*", HIT), ("a*a*a*a*a*z", NO_HIT),
    ("(a|a|aa)*b", NO_HIT), ("a?" * 30 + "a" * 30, REFUSED), ("a" * 4096, REFUSED), ("a|" * 2047 + "b", REFUSED),
    ("(?:" + "|" * 2000 + ")", REFUSED), ("a{4096}", REFUSED), ("(" * 32 + "a" + ")*" * 32, REFUSED),
    ("^" + "(?=.*x)" * 200 + ".*", REFUSED), ("(?:(?=.*b).)*", REFUSED), ("(?:(?=(?:(?=.*b).)*).)*", REFUSED),
    ("[a-z]" * 800, REFUSED), ("(a*)*\\1*z", REFUSED), ("a" * 100_000, REFUSED), ("abc|" * 10_000, REFUSED),
    ("(?:|a){11000}", REFUSED), ("a{100000}", REFUSED), ("((((a{99}){99}){99}){99}){99}", REFUSED),
    ("(" * 20_000 + ")" * 20_000, REFUSED), ("(a)" * 5_000, REFUSED), ("(?!" * 8 + "a" + ")" * 8, REFUSED),
    ("[" + "a-z" * 1_000, REFUSED))
NAMES = ("a" * 1_000_000, "ab \\u00e9" * 200_000)


class MemoryBoundsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)
        self.blocklist = self.directory / "blocklist.json"
        self.machine = self.directory / "machine.json"
        self.machine.write_text(json.dumps(MACHINE))

    def write(self, path, pieces):
        with path.open("w") as file:
            for piece in pieces:
                file.write(piece)

    def expect(self, most, ends, *arguments):
        """Runs the program; `most` is in MiB. Returns what it wrote to standard error."""
        errors = self.directory / "errors"
        with errors.open("w") as file:
            process = subprocess.Popen([SCR, "--pref-dir", self.directory / "preferences", *arguments],
                                       stdout=subprocess.DEVNULL, stderr=file, env=dict(os.environ, DISPLAY=""))
            _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        took = usage.ru_maxrss / 1024
        print(f"{took:.0f} MiB of {most}, {usage.ru_utime + usage.ru_stime:.1f} s")
        self.assertIn(process.returncode, ends, errors.read_text()[:500])
        self.assertLess(took, most)
        return errors.read_text()

    def check(self, most, ends):
        errors = self.expect(most, ends, "check", self.blocklist, "--machine", self.machine)
        if ends == (1,):
            self.assertRegex(errors, r"(?m)^scr: [^:]*(blocklist|machine)\.json[:,] .+")

    def read_blocklist(self, name):
        pieces, most, ends = BLOCKLISTS[name]
        self.write(self.blocklist, pieces())
        self.check(most, ends)

    def test_the_program_alone(self):
        self.write(self.blocklist, in_a_list([RULE]))
        self.check(SMALL, (0, 2))

    def test_a_text_as_long_as_may_be(self):
        self.read_blocklist("text_of_64_mebibytes")

    def test_blanks(self):
        self.read_blocklist("blanks")

    def test_as_many_values_as_may_be(self):
        self.read_blocklist("two_million_values")

    def test_values_that_are_no_rules(self):
        for name in ("numbers_for_rules", "empty_rules", "too_many_values"):
            with self.subTest(name):
                self.read_blocklist(name)

    def test_a_number_that_does_not_end(self):
        self.read_blocklist("a_number_of_60_megabytes")

    def test_a_million_levels(self):
        for name in ("a_million_levels", "a_million_levels_that_end"):
            with self.subTest(name):
                self.read_blocklist(name)

    def test_files_that_are_too_large(self):
        self.read_blocklist("one_byte_more_than_may_be")
        # Without a block on the disk.
        for size in (500 * MEBIBYTE, 1 << 30, 1 << 40):
            with self.subTest(size=size):
                with self.blocklist.open("wb") as file:
                    file.truncate(size)
                self.check(SMALL, (1,))

    def test_a_machine_that_is_too_large(self):
        self.write(self.blocklist, in_a_list([RULE]))
        with self.machine.open("wb") as file:
            file.truncate(500 * MEBIBYTE)
        self.check(SMALL, (1,))

    def test_a_long_text_for_many_issues(self):
        """Each issue has its own, so that a megabyte of rules could ask for gigabytes."""
        text = "x" * 1_000_000
        rules = in_an_array('{"type":"OS","name":".*","versions":["0-9"]}', 1_000)
        self.write(self.blocklist, within(
            '{"blocklist_version":1,"default_info":{"OS":{"info_message":"' + text + '"}},"blocklist":[', rules, "]}"))
        errors = self.expect(512, (1,), "check", self.blocklist, "--machine", self.machine)
        self.assertIn("the texts of the issues would take more than 134217728 bytes", errors)

    def test_hostile_expressions_on_names_of_a_megabyte(self):
        components = (f'{{"type":"Video","name":"{name}","version":"1.0"}}' for name in NAMES)
        self.write(self.machine, within('{"components":[', [",".join(components)], "]}"))
        for expression, outcome in HOSTILE:
            with self.subTest(expression[:40]):
                rule = {"type": "Video", "name": expression, "error_level": "ERROR"}
                self.write(self.blocklist, in_a_list([json.dumps(rule)]))
                errors = self.expect(48, (outcome or NO_HIT,), "check", self.blocklist, "--machine", self.machine)
                self.assertEqual("is refused: " in errors, outcome is REFUSED, errors[:500])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + [f"MemoryBoundsTest.{test}" for test in sys.argv[2:]])
