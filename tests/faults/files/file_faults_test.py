"""Files that fail: what is remembered, the blocklist and the report are whole afterwards, old or new, and the next run
is like any other.

  file_faults_test.py SCR SAVING_PROCESS FILE_FAULTS_LIBRARY [TEST...]
"""
import errno
import os
import pathlib
import pwd
import subprocess

from faulty_files import (DOWNLOADED, IN_MEMORY, INSTALLED, LIBRARY, OLD_STATE, SCR, FaultyFilesTest, blocklist,
                          environment, lasting, leftovers, remembered, run_tests)


# Full disks, missing rights, disks that can only be read or are broken, and names that are gone or not what they were.
ERRORS = (errno.ENOSPC, errno.EACCES, errno.EROFS, errno.EIO, errno.ENOENT, errno.EISDIR)
# A look takes no room and writes nothing.
ERRORS_OF_LOOKS = (errno.EACCES, errno.EIO, errno.ENOENT)
FROM_THEN = (f"+ {errno.ENOSPC}", f"+ {errno.EACCES}")

# What a signal can interrupt.
INTERRUPTIBLE = ("open", "create", "read", "write", "flush", "lock", "close")

# A user that no machine has.
NOBODY = 54321


def each_in_turn(operation):
    """Says how an operation alone fails, with each error that it can have."""
    return [f" {error}" for error in (ERRORS_OF_LOOKS if operation[1] == "look" else ERRORS)]


def each_from_then_on(operation):
    """Says how an operation and all behind it fail."""
    return FROM_THEN


class FileFaultsTest(FaultyFilesTest):
    place = IN_MEMORY

    # ---- Operations that fail

    def faults(self, operations, moments):
        """The numbers, operations and faults that the moments of each operation come to."""
        for number, operation in enumerate(operations, 1):
            for moment in moments(operation):
                with self.subTest(operation=operation, moment=moment):
                    yield number, operation, f"{number}{moment}"

    def break_runs(self, run, moments, expect_result):
        """Makes the operations of a run fail."""
        expected = self.report()
        self.assertIn("installed", expected.stdout)
        self.start_anew()
        usual = run()
        self.assertEqual((usual.returncode, usual.stderr), (0, ""))
        operations = self.operations()
        self.assertGreater(len(operations), 100)
        old, new = remembered(OLD_STATE), remembered(self.state())
        self.assertNotEqual(old, new)
        # A state that cannot be read counts as none.
        states = (old, new, {key: value for key, value in new.items() if key != "show_issues_at_startup"})
        for number, operation, fault in self.faults(operations, moments):
            self.start_anew()
            result = run(fail=fault)
            behind = self.operations()[number - 1:]
            failed = behind if "+" in fault else behind[:1]
            # A list that is there and cannot be read is said to be so; all else is done without.
            is_list_hit = any(path == str(self.application / INSTALLED) for _, _, path, _ in failed)
            self.expect_clear_end(result, may_fail=is_list_hit)
            self.assertIn(remembered(self.state()), states)
            if not is_list_hit:
                expect_result(result, usual)
            self.expect_usable(expected.stdout)
            self.assertEqual(remembered(self.state())["warn_matches"], new["warn_matches"])

    def expect_report(self, result, usual):
        self.assertIn("System Components:", result.stdout)
        self.assertIn("installed", result.stdout)

    def expect_counts(self, result, usual):
        self.assertEqual(result.stdout, usual.stdout)

    def test_every_operation_of_a_report_fails_in_turn(self):
        self.break_runs(self.report, each_in_turn, self.expect_report)

    def test_every_operation_of_a_report_from_one_on_fails(self):
        self.break_runs(self.report, each_from_then_on, self.expect_report)

    def test_every_operation_of_a_launch_fails_in_turn(self):
        self.break_runs(self.launch, lambda operation: [f" {errno.EIO}"], self.expect_counts)

    def test_every_operation_of_a_written_report_fails_in_turn(self):
        self.write(self.output, "the old one\n")
        self.assertEqual(self.report_to_file().returncode, 0)
        whole = lasting(self.output.read_text())
        self.report_to_file(under=self.output.parent)
        operations = self.operations()
        self.assertGreater(len(operations), 3)
        moments = lambda operation: (*each_in_turn(operation), *FROM_THEN)  # noqa: E731
        for _, operation, fault in self.faults(operations, moments):
            self.start_anew()
            self.write(self.output, "the old one\n")
            result = self.report_to_file(fail=fault, under=self.output.parent)
            self.expect_clear_end(result, may_fail=True)
            if result.returncode == 1:
                self.assertIn(str(self.output), result.stderr)
                self.assertEqual(self.state(), OLD_STATE)
            else:
                # A report is written when its file is there after it was made; one that is not seen is left alone.
                is_unseen = operation[1] == "look"
                self.assertEqual(lasting(self.output.read_text()), [] if is_unseen else whole)
            result = self.report_to_file()
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertEqual(lasting(self.output.read_text()), whole)

    def break_downloads(self, old):
        """Makes every operation of a download fail in turn, where a list was downloaded before or no folder is."""
        url = self.serve(blocklist("downloaded"))

        def begin():
            self.start_anew()
            if old is not None:
                self.write(self.preferences / DOWNLOADED, old)

        def stored():
            path = self.preferences / DOWNLOADED
            return path.read_text() if path.exists() else None

        begin()
        self.assertEqual(self.refresh(url).returncode, 0)
        operations = self.operations()
        # Until the new list is in its place.
        place = [operation[1] for operation in operations].index("move") + 1
        self.assertLess(place, len(operations))
        for number, _, fault in self.faults(operations, each_in_turn):
            begin()
            result = self.refresh(url, fail=fault)
            self.expect_clear_end(result, may_fail=number <= place)
            self.assertEqual(stored(), old if result.returncode == 1 else blocklist("downloaded"))
            self.assertEqual(self.state(), OLD_STATE)
            self.assertEqual(leftovers(self.preferences), [])
            again = self.refresh(url)
            self.assertEqual((again.returncode, again.stderr), (0, ""))
            self.assertEqual(stored(), blocklist("downloaded"))

    def test_every_operation_of_a_download_fails_in_turn(self):
        self.break_downloads(blocklist("old"))

    def test_every_operation_of_the_first_download_fails_in_turn(self):
        self.break_downloads(None)

    def test_leftovers_that_cannot_be_removed_hinder_nobody(self):
        old = self.preferences / ".save-00000000-0000-0000-0000-000000000001.tmp"
        self.write(old, "{")
        os.utime(old, (1, 1))
        expected = self.report()
        removals = [number for number, name, *_ in self.operations() if name == "remove"]
        self.assertFalse(old.exists())
        self.assertEqual(len(removals), 1)
        self.start_anew()
        old = self.preferences / old.name
        self.write(old, "{")
        os.utime(old, (1, 1))
        result = self.report(fail=f"{removals[0]} {errno.EACCES}")
        self.assertEqual((result.returncode, lasting(result.stdout)), (0, lasting(expected.stdout)))
        # The next save tries again.
        self.assertFalse(old.exists())

    # ---- Operations that do less, or are interrupted

    def test_reads_and_writes_that_do_a_part_are_gone_on_with(self):
        expected = self.report()
        state = remembered(self.state())
        for most in ("1", "7"):
            with self.subTest(most=most):
                self.start_anew()
                result = self.report(short=most)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertEqual(lasting(result.stdout), lasting(expected.stdout))
                self.assertEqual(remembered(self.state()), state)
                self.assertEqual(self.refresh(self.serve(blocklist("downloaded")), short=most).returncode, 0)
                self.assertEqual((self.preferences / DOWNLOADED).read_text(), blocklist("downloaded"))
                self.write(self.output, "")
                self.assertEqual(self.report_to_file(short=most).returncode, 0)
                self.assertIn("downloaded", self.output.read_text())

    def test_an_interrupted_operation_is_done_again(self):
        expected = self.report()
        state = remembered(self.state())
        operations = self.operations()
        interrupted = [number for number, operation in enumerate(operations, 1) if operation[1] in INTERRUPTIBLE]
        self.assertEqual({operations[number - 1][1] for number in interrupted}, set(INTERRUPTIBLE))
        for number in interrupted:
            with self.subTest(operation=operations[number - 1]):
                self.start_anew()
                result = self.report(fail=f"{number} {errno.EINTR}")
                self.assertEqual(result.returncode, 0)
                # A record that is written as a stream is given up, with a word.
                if ".jsonl" not in operations[number - 1][2]:
                    self.assertEqual(result.stderr, "")
                self.assertEqual(lasting(result.stdout), lasting(expected.stdout))
                self.assertEqual(remembered(self.state()), state)
                self.assertEqual(leftovers(self.preferences), [])

    # ---- Places that cannot be written, and homes that are not there

    def expect_report_of_installed_list(self, result):
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("System Components:", result.stdout)
        self.assertIn("installed", result.stdout)

    def test_a_machine_whose_files_can_only_be_read_gets_its_report(self):
        self.expect_report_of_installed_list(self.report(fail=f"w {errno.EROFS}"))
        self.assertEqual(self.state(), OLD_STATE)

    def test_a_home_directory_that_is_not_there_gets_its_report(self):
        # Not even an administrator makes the first of them.
        for home in ("/proc/nonexistent/home", "/dev/null"):
            with self.subTest(home=home):
                self.expect_report_of_installed_list(
                    self.scr("report", "--app-dir", str(self.application), HOME=home))

    def test_without_the_home_variable_there_is_a_report(self):
        # The account's own home is read then, and must not be written to by a test.
        try:
            home = pwd.getpwuid(os.getuid()).pw_dir
        except KeyError:
            home = "/proc/no-home-directory"
        for variable in ("", None):
            with self.subTest(variable=variable):
                result = self.scr("report", "--app-dir", str(self.application), HOME=variable, under=home,
                                  fail=f"w {errno.EROFS}")
                self.expect_report_of_installed_list(result)

    def as_nobody(self, command, **variables):
        """Runs the command as a user who has no account and no rights but everybody's."""
        if os.getuid() != 0:
            self.skipTest("only the administrator can run a program as somebody else")
        for directory in (self.directory, self.run_directory):
            directory.chmod(0o755)
        program = pathlib.Path(command[0])
        if any(not parent.stat().st_mode & 0o001 for parent in program.parents):
            self.skipTest(f"others cannot get at {program}")
        return subprocess.run(command, env=environment(LD_PRELOAD=LIBRARY, **variables), user=NOBODY, group=NOBODY,
                              extra_groups=[], cwd="/", capture_output=True, text=True, timeout=60)

    def test_a_user_without_an_account_and_a_home_gets_a_report(self):
        self.expect_report_of_installed_list(
            self.as_nobody([SCR, "report", "--app-dir", str(self.application)], HOME=None))

    def test_a_home_that_its_user_cannot_write_gets_its_report(self):
        home = self.run_directory / "home"
        home.mkdir()
        os.chown(home, NOBODY, NOBODY) if os.getuid() == 0 else None
        home.chmod(0o555)
        result = self.as_nobody([SCR, "report", "--app-dir", str(self.application)], HOME=str(home))
        self.expect_report_of_installed_list(result)
        self.assertEqual(list(home.iterdir()), [])


if __name__ == "__main__":
    run_tests(3, FileFaultsTest)
