"""Processes that are killed, and two at once: what is remembered and the blocklist are whole afterwards, old or new.

  kills_test.py SCR SAVING_PROCESS FILE_FAULTS_LIBRARY [TEST...]
"""
import collections
import os
import random
import subprocess
import time

from faulty_files import (DOWNLOADED, DOWNLOADED_WITHOUT_VERSION, OLD_STATE, SAVED_IN_TURN, SAVING_PROCESS, STATE,
                          FaultyFilesTest, blocklist, environment, leftovers, remembered, run_tests)

# Where in a save a process was when it was killed: what it left tells.
BETWEEN, WRITING, MOVING = "between saves", "before all is written", "before the move"


class KillsTest(FaultyFilesTest):
    def saving_process(self, *command):
        """A process that saves without end. HOME is nobody's, whatever is asked for."""
        process = subprocess.Popen([SAVING_PROCESS, str(self.preferences), *command], stdout=subprocess.PIPE,
                                   env=environment(HOME=str(self.run_directory / "home")))
        self.assertEqual(process.stdout.readline(), b"ready\n")
        return process

    def end(self, process):
        """Kills the process, which must be alive and must not have complained."""
        self.assertIsNone(process.poll())
        process.kill()
        self.assertEqual(process.stdout.read(), b"")
        process.wait()
        process.stdout.close()

    # ---- At every operation

    def test_a_report_is_killed_at_every_operation(self):
        expected = self.report()
        operations = self.operations()
        states = [remembered(OLD_STATE), remembered(self.state())]
        seen = []
        for number, operation in enumerate(operations, 1):
            with self.subTest(operation=operation):
                self.start_anew()
                self.assertEqual(self.report(kill=str(number)).returncode, -9)
                if remembered(self.state()) not in seen:
                    seen.append(remembered(self.state()))
                self.expect_usable(expected.stdout)
        self.assertEqual(seen, states)

    def kill_downloads(self, old):
        """Kills a download at every operation, where a list was downloaded before or no folder is."""
        new = blocklist("downloaded")
        url = self.serve(new)
        path = None
        phases = collections.Counter()
        seen = []

        def begin():
            nonlocal path
            self.start_anew()
            path = self.preferences / DOWNLOADED
            if old is not None:
                self.write(path, old)

        begin()
        self.assertEqual(self.refresh(url).returncode, 0)
        operations = self.operations()
        for number, operation in enumerate(operations, 1):
            with self.subTest(operation=operation):
                begin()
                self.assertEqual(self.refresh(url, kill=str(number)).returncode, -9)
                phases[self.phase(leftovers(self.preferences), [new])] += 1
                stored = path.read_text() if path.exists() else None
                if stored not in seen:
                    seen.append(stored)
                again = self.refresh(url)
                self.assertEqual((again.returncode, again.stderr), (0, ""))
                self.assertEqual(path.read_text(), new)
                self.assertEqual(self.state(), OLD_STATE)
        self.assertEqual(seen, [old, new])
        self.assertEqual(set(phases), {BETWEEN, WRITING, MOVING})

    def test_a_download_is_killed_at_every_operation(self):
        self.kill_downloads(blocklist("old"))

    def test_the_first_download_is_killed_at_every_operation(self):
        self.kill_downloads(None)

    # ---- At random

    def phase(self, left, wholes):
        """Where in its save a process was that left these."""
        self.assertLessEqual(len(left), 1)
        if not left:
            return BETWEEN
        return MOVING if left[0].read_text() in wholes else WRITING

    def kill_at_random(self, count, command, path, wholes):
        """Kills the process that many times, anywhere in its saves."""
        moments = random.Random(count)
        found = dict.fromkeys(wholes, 0)
        phases = collections.Counter()
        longest = 0.012
        for number in range(count):
            # Where disks are slow, saves take longer.
            if number % 100 == 99 and min(found.values()) < number / 20:
                longest = min(2 * longest, 0.1)
            process = self.saving_process(*command)
            time.sleep(moments.uniform(0, longest))
            self.end(process)
            text = path.read_text()
            self.assertIn(text, found)
            found[text] += 1
            left = leftovers(path.parent)
            phases[self.phase(left, wholes)] += 1
            for file in left:
                file.unlink()
        print(command[0], dict(phases), list(found.values()))
        for text, times in found.items():
            self.assertGreater(times, 10, text[:60])
        # What was killed in the middle is what the test is about.
        for phase, least in ((BETWEEN, 10), (WRITING, 0), (MOVING, 10)):
            self.assertGreater(phases[phase], least, phase)

    def test_two_thousand_kills_during_saves(self):
        self.write(self.preferences / STATE, SAVED_IN_TURN[0])
        self.kill_at_random(2000, ["state"], self.preferences / STATE, SAVED_IN_TURN)

    def test_two_thousand_kills_during_downloads(self):
        wholes = (blocklist("one"), blocklist("two " * 2000))
        self.write(self.preferences / DOWNLOADED_WITHOUT_VERSION, wholes[0])
        self.kill_at_random(2000, ["download", self.serve(*wholes)], self.preferences / DOWNLOADED_WITHOUT_VERSION,
                            wholes)

    def test_what_killed_processes_left_is_cleared_away(self):
        old = self.preferences / ".save-00000000-0000-0000-0000-000000000001.tmp"
        young = self.preferences / ".save-00000000-0000-0000-0000-000000000002.tmp"
        other = self.preferences / "save-notes.tmp"
        for path in (old, young, other):
            self.write(path, "{")
        for path in (old, other):
            os.utime(path, (time.time() - 7200,) * 2)
        self.assertEqual(self.report().returncode, 0)
        self.assertEqual([old.exists(), young.exists(), other.exists()], [False, True, True])

    # ---- Two at once

    def save_at_once(self, command, path, wholes):
        """Lets two processes save the same file, and looks at it all the while."""
        self.write(path, wholes[0])
        processes = [self.saving_process(*command) for _ in range(2)]
        found = set()
        places = set()
        for _ in range(20000):
            with path.open() as file:
                places.add(os.fstat(file.fileno()).st_ino)
                found.add(file.read())
        # The younger one alone, so that the other is known to save as well; then nobody.
        self.end(processes.pop(0))
        for process in processes:
            self.end(process)
        self.assertEqual(found, set(wholes))
        self.assertGreater(len(places), 2)
        # Each was killed in one save at most, and takes nothing of the other's away.
        left = leftovers(self.preferences)
        self.assertLessEqual(len(left), 2)
        return left

    def test_two_processes_save_at_once(self):
        self.save_at_once(["state"], self.preferences / STATE, SAVED_IN_TURN)

    def test_two_processes_download_at_once(self):
        wholes = (blocklist("one"), blocklist("two " * 2000))
        self.save_at_once(["download", self.serve(*wholes)], self.preferences / DOWNLOADED_WITHOUT_VERSION, wholes)

    def test_two_downloads_at_once_leave_nothing_behind(self):
        url = self.serve(blocklist("downloaded"))
        for _ in range(10):
            self.start_anew()
            command = ["refresh", "--now", "--base", url, *self.directories()]
            processes = [self.start_scr(*command) for _ in range(3)]
            for process in processes:
                output, errors = process.communicate(timeout=60)
                self.assertEqual((process.returncode, errors), (0, ""), output)
            self.assertEqual((self.preferences / DOWNLOADED).read_text(), blocklist("downloaded"))
            self.assertEqual(leftovers(self.preferences), [])


if __name__ == "__main__":
    run_tests(3, KillsTest)
