"""The program with a library between it and the file operations of its system: see FileFaults.cpp."""
import json
import pathlib
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).parents[1]))

from machine import (IN_MEMORY, INSTALLED, STATE, MachineTest, blocklist, environment,  # noqa: E402,F401
                     run_tests)

SCR, SAVING_PROCESS, LIBRARY = sys.argv[1:4]

DOWNLOADED = "SystemCompatibilityReport/1.0/win/blocklist.en_US.json"
DOWNLOADED_WITHOUT_VERSION = "SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json"
OLD_STATE = '{"show_issues_at_startup":false,"warn_matches":["HASH:of-an-issue-that-is-gone"]}'

# What the saving process remembers.
NO_MATCH = '"last_match_job":"00000000-0000-0000-0000-000000000000"'
SAVED_IN_TURN = (f"{{{NO_MATCH}}}", f'{{{NO_MATCH},"show_issues_at_startup":false}}')


def remembered(state):
    """What a state says, but for the machine's identifier, which follows every change of the machine."""
    return {key: value for key, value in json.loads(state).items() if key != "last_match_job"}


def lasting(report):
    """A report without what changes by itself."""
    return [line for line in report.splitlines() if "disk.free_gb" not in line]


def leftovers(directory):
    """What saves left beside the files that they were for."""
    return [path for path in directory.rglob("*") if path.name.startswith(".save-")]


class FaultyFilesTest(MachineTest):
    def start_anew(self):
        super().start_anew()
        self.log = self.run_directory / "log"
        self.output = self.run_directory / "reports/report.txt"
        self.write(self.preferences / STATE, OLD_STATE)

    def start_scr(self, *arguments, fail=None, kill=None, short=None, under=None, **variables):
        home = variables.pop("HOME", str(self.run_directory / "home"))
        self.log.unlink(missing_ok=True)
        faults = environment(LD_PRELOAD=LIBRARY, FILE_FAULTS_UNDER=str(under or self.run_directory),
                             FILE_FAULTS_LOG=str(self.log), FILE_FAULTS_FAIL=fail, FILE_FAULTS_KILL=kill,
                             FILE_FAULTS_SHORT=short, HOME=home, **variables)
        return subprocess.Popen([SCR, *arguments], env=faults, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                text=True)

    def scr(self, *arguments, **faults):
        process = self.start_scr(*arguments, **faults)
        output, errors = process.communicate(timeout=60)
        return subprocess.CompletedProcess(process.args, process.returncode, output, errors)

    def report(self, **faults):
        return self.scr("report", *self.directories(), **faults)

    def launch(self, **faults):
        return self.scr("launch", *self.directories(), **faults)

    def report_to_file(self, **faults):
        return self.scr("report", "--output", str(self.output), *self.directories(), **faults)

    def refresh(self, url, **faults):
        return self.scr("refresh", "--now", "--base", url, *self.directories(), **faults)

    def operations(self):
        return [line.split("\t") for line in self.log.read_text().splitlines()]

    def state(self):
        return (self.preferences / STATE).read_text()

    def expect_clear_end(self, result, may_fail):
        self.assertIn(result.returncode, (0, 1) if may_fail else (0,), result.stderr)
        if result.returncode == 1:
            self.assertRegex(result.stderr, r"(?m)^scr: .+")

    def expect_usable(self, expected_report):
        """Nothing that was left behind hinders the next run."""
        result = self.report()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(lasting(result.stdout), lasting(expected_report))
