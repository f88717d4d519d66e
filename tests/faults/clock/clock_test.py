"""Clocks that are wrong or are set while a program runs: every run reports, what was remembered stays, and nothing
waits until the clock is where it was.

  clock_test.py SCR CLOCK_SHIFT_LIBRARY [TEST...]
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).parents[1]))

from machine import STATE, MachineTest, blocklist, environment, run_tests  # noqa: E402

SCR, LIBRARY = sys.argv[1:3]

MINUTE, HOUR, DAY, YEAR = 60, 3600, 86400, 31557600
BEFORE_1970 = -(int(time.time()) + 3 * YEAR)
SHIFTS = (-DAY, -10 * YEAR, BEFORE_1970, 10 * YEAR, 150 * YEAR)

PROPERTIES = "SystemProperties.json"
TIME = re.compile(r"-?\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z")


class ClockTest(MachineTest):
    def scr(self, *arguments, shift=0):
        shifted = environment(LD_PRELOAD=LIBRARY, CLOCK_SHIFT=str(shift), HOME=str(self.directory))
        return subprocess.run([SCR, *self.directories(), *arguments], env=shifted, capture_output=True, text=True,
                              timeout=60)

    def expect_report(self, shift):
        result = self.scr("report", shift=shift)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("System Components:", result.stdout)
        self.assertIn("installed", result.stdout)

    def read(self, name):
        return json.loads((self.preferences / name).read_text())

    def saved_at(self):
        return self.read(PROPERTIES)["saved_at"]

    def times(self, name):
        return [json.loads(line)["time"] for line in (self.preferences / name).read_text().splitlines()]

    def test_the_library_shifts_the_clock(self):
        """Without this the other tests would prove nothing."""
        self.expect_report(shift=10 * YEAR)
        self.assertAlmostEqual(self.saved_at(), time.time() + 10 * YEAR, delta=HOUR)

    def test_a_report_at_any_time(self):
        for shift in SHIFTS:
            with self.subTest(shift=shift):
                self.expect_report(shift)
                self.assertEqual(len(self.read(STATE)["warn_matches"]), 1)
                # The clock is right again.
                self.expect_report(shift=0)
                self.assertAlmostEqual(self.saved_at(), time.time(), delta=HOUR)

    def test_the_clock_is_set_at_every_reading_of_a_report(self):
        for shift in (-10 * YEAR, 10 * YEAR):
            for reading in range(1, 12):
                with self.subTest(shift=shift, reading=reading):
                    self.expect_report(shift=f"0 {reading}:{shift}")
        self.assertEqual(len(self.read(STATE)["warn_matches"]), 1)

    def test_records_have_times_in_whatever_order_they_came(self):
        for shift in (*SHIFTS, 0):
            self.expect_report(shift)
        times = self.times("analytics-events.jsonl")
        self.assertGreater(len(times), len(SHIFTS))
        for moment in times:
            self.assertRegex(moment, TIME)
        self.assertRegex(self.read("crash-trail.json")["time"], TIME)
        result = self.scr("events")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        for moment in times:
            self.assertIn(moment[:10], result.stdout)

    def test_a_full_log_is_put_aside_at_any_time(self):
        log = self.preferences / "analytics-events.jsonl"
        older = self.preferences / "analytics-events.jsonl.1"
        for shift in SHIFTS:
            with self.subTest(shift=shift):
                self.expect_report(shift)
                full = log.read_text() + "\n" * 2**20
                log.write_text(full)
                self.expect_report(shift)
                self.assertEqual(older.read_text(), full)
                self.assertLess(log.stat().st_size, 2**20)
                self.assertGreater(len(self.times("analytics-events.jsonl")), 0)

    def test_saved_properties_hold_for_a_day_of_the_clock(self):
        # The right clock, one that was set back, and one that was set ahead, with the share that is read afresh.
        for shift, is_fresh in ((23 * HOUR, True), (25 * HOUR, False), (10 * YEAR, False), (-HOUR, False),
                                (-10 * YEAR, False), (BEFORE_1970, False)):
            with self.subTest(shift=shift):
                self.expect_report(shift=0)
                before = self.saved_at()
                self.scr("launch", shift=shift)
                self.assertEqual(self.saved_at() == before, is_fresh)
                # Never again for as long as the clock was wrong.
                self.scr("launch", shift=0)
                self.scr("launch", shift=0)
                self.assertAlmostEqual(self.saved_at(), time.time(), delta=DAY)

    def test_leftovers_of_another_time_are_cleared_away(self):
        self.preferences.mkdir(parents=True)
        leftovers = {}
        for number, (age, stays) in enumerate(((2 * HOUR, False), (10 * YEAR, False), (10 * MINUTE, True),
                                               (-10 * MINUTE, True), (-2 * HOUR, False), (-10 * YEAR, False))):
            path = self.preferences / f".save-00000000-0000-0000-0000-00000000000{number}.tmp"
            path.write_text("{")
            os.utime(path, (time.time() - age,) * 2)
            leftovers[path] = stays
        self.expect_report(shift=0)
        self.assertEqual({path: path.exists() for path in leftovers}, leftovers)

    def test_a_download_begins_when_its_delay_is_over(self):
        url = self.serve(blocklist("downloaded"))
        for shift in (f"0 2:{-10 * YEAR}", f"0 3:{10 * YEAR}", f"{10 * YEAR} 3:{-10 * YEAR} 4:0", BEFORE_1970):
            with self.subTest(shift=shift):
                begin = time.monotonic()
                result = self.scr("--set", "qelsystemcompatibilityreport.download_delay_secs=1", "refresh", "--base",
                                  url, shift=shift)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertGreaterEqual(time.monotonic() - begin, 1)
                self.assertIn("downloaded", self.scr("report", shift=shift).stdout)

    def test_the_trace_is_written_at_any_time(self):
        missing = self.directory / "missing/report.txt"
        for count, shift in enumerate(SHIFTS, 1):
            self.assertEqual(self.scr("report", "--output", missing, shift=shift).returncode, 1)
            self.assertGreaterEqual(len((self.preferences / "trace.log").read_text().splitlines()), count)


if __name__ == "__main__":
    run_tests(2, ClockTest)
