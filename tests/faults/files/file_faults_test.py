"""Files that fail, processes that are killed, and power that goes: what is remembered, the blocklist and the report are
whole afterwards, old or new.

  file_faults_test.py SCR SAVING_PROCESS FILE_FAULTS_LIBRARY [TEST...]
"""
import errno
import http.server
import itertools
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import threading
import time
import unittest

SCR, SAVING_PROCESS, LIBRARY = sys.argv[1:4]

STATE = "SCRPriorState.json"
DOWNLOADED = "SystemCompatibilityReport/1.0/win/blocklist.en_US.json"
DOWNLOADED_WITHOUT_VERSION = "SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json"
INSTALLED = "SystemCompatibilityReport/blocklist.en_US.json"
OLD_STATE = '{"show_issues_at_startup":false,"warn_matches":["HASH:of-an-issue-that-is-gone"]}'

# What the saving process remembers.
NO_MATCH = '"last_match_job":"00000000-0000-0000-0000-000000000000"'
SAVED_IN_TURN = (f"{{{NO_MATCH}}}", f'{{{NO_MATCH},"show_issues_at_startup":false}}')

# Full disks, missing rights, disks that can only be read or are broken, and names that are gone or not what they were.
ERRORS = (errno.ENOSPC, errno.EACCES, errno.EROFS, errno.EIO, errno.ENOENT, errno.EISDIR)


def blocklist(message):
    """A list that hits every machine and is complete enough to be downloaded."""
    kinds = ("OS", "Video", "Audio", "Network", "File", "Property")
    texts = {kind: {"info_message": f"{message} {kind}", "info_url": "https://example.com/"} for kind in kinds}
    rule = {"type": "OS", "name": ".*", "error_level": "WARN", "info_message": message}
    return json.dumps({"blocklist_version": 1, "blocklist": [rule], "default_info": texts})


def remembered(state):
    """What a state says, but for the machine's identifier, which follows every change of the machine."""
    return {key: value for key, value in json.loads(state).items() if key != "last_match_job"}


def lasting(report):
    """A report without what changes by itself."""
    return [line for line in report.splitlines() if "disk.free_gb" not in line]


class Server(http.server.ThreadingHTTPServer):
    """Gives the texts in turn."""

    def __init__(self, texts):
        self.texts = itertools.cycle(texts)
        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, request, client_address):
        """Who asked was killed."""

    @property
    def url(self):
        return f"http://127.0.0.1:{self.server_port}"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = next(self.server.texts).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *arguments):
        pass


class FaultsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)
        self.start_anew()

    def start_anew(self):
        """A machine with a remembered state and an installed list, in directories of their own."""
        self.run_directory = pathlib.Path(tempfile.mkdtemp(dir=self.directory))
        self.preferences = self.run_directory / "preferences"
        self.application = self.run_directory / "application"
        self.log = self.run_directory / "log"
        self.write(self.preferences / STATE, OLD_STATE)
        self.write(self.application / INSTALLED, blocklist("installed"))

    def write(self, path, text):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def scr(self, *arguments, fail="", kill="", under=None, home=None):
        environment = dict(os.environ, LD_PRELOAD=LIBRARY, FILE_FAULTS_UNDER=str(under or self.run_directory),
                           FILE_FAULTS_LOG=str(self.log), FILE_FAULTS_FAIL=fail, FILE_FAULTS_KILL=kill,
                           HOME=str(home or self.run_directory / "home"), DISPLAY="", WAYLAND_DISPLAY="")
        for name in ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"):
            environment.pop(name, None)
        self.log.unlink(missing_ok=True)
        return subprocess.run([SCR, *arguments], env=environment, capture_output=True, text=True, timeout=60)

    def directories(self):
        return "--pref-dir", str(self.preferences), "--app-dir", str(self.application)

    def report(self, **faults):
        return self.scr("report", *self.directories(), **faults)

    def refresh(self, url, **faults):
        return self.scr("refresh", "--now", "--base", url, *self.directories(), **faults)

    def operations(self):
        return [line.split("\t") for line in self.log.read_text().splitlines()]

    def state(self):
        return (self.preferences / STATE).read_text()

    def expect_clear_end(self, result):
        self.assertIn(result.returncode, (0, 1), result.stderr)
        if result.returncode == 1:
            self.assertRegex(result.stderr, r"(?m)^scr: .+")

    def expect_usable(self, expected_report):
        """Nothing that was left behind hinders the next run."""
        result = self.report()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(lasting(result.stdout), lasting(expected_report))

    # ---- Operations that fail

    def break_reports(self, moments):
        """Makes operations of a report fail as each of the moments says, which get the operation's number."""
        expected = self.report()
        self.assertIn("installed", expected.stdout)
        operations = self.operations()
        self.assertGreater(len(operations), 20)
        old, new = remembered(OLD_STATE), remembered(self.state())
        # A state that cannot be read counts as none.
        states = (old, new, {key: value for key, value in new.items() if key != "show_issues_at_startup"})
        for number, operation in enumerate(operations, 1):
            for moment in moments:
                with self.subTest(operation=operation, moment=moment):
                    self.start_anew()
                    result = self.report(fail=moment.format(number))
                    self.expect_clear_end(result)
                    self.assertIn(remembered(self.state()), states)
                    if result.returncode == 0:
                        self.assertIn("System Components:", result.stdout)
            self.expect_usable(expected.stdout)

    def test_every_operation_of_a_report_fails_in_turn(self):
        self.break_reports([f"{{}} {error}" for error in ERRORS])

    def test_every_operation_from_one_on_fails(self):
        self.break_reports([f"{{}}+ {errno.ENOSPC}", f"{{}}+ {errno.EACCES}"])

    def test_every_operation_of_a_download_fails_in_turn(self):
        server = Server([blocklist("downloaded")])
        result = self.refresh(server.url)
        self.assertEqual(result.returncode, 0, result.stderr)
        operations = self.operations()
        self.assertGreater(len(operations), 10)
        self.assertEqual((self.preferences / DOWNLOADED).read_text(), blocklist("downloaded"))
        for number, error in itertools.product(range(1, len(operations) + 1), ERRORS):
            with self.subTest(operation=operations[number - 1], error=error):
                self.start_anew()
                self.write(self.preferences / DOWNLOADED, blocklist("old"))
                result = self.refresh(server.url, fail=f"{number} {error}")
                self.expect_clear_end(result)
                stored = (self.preferences / DOWNLOADED).read_text()
                self.assertIn(stored, (blocklist("old"), blocklist("downloaded")))
                if result.returncode == 0:
                    self.assertEqual(stored, blocklist("downloaded"))
                self.assertEqual(self.state(), OLD_STATE)
        server.shutdown()

    # ---- Places that cannot be written

    def test_a_machine_whose_files_can_only_be_read_gets_its_report(self):
        result = self.report(fail=f"w {errno.EROFS}")
        self.assertIn("System Components:", result.stdout)
        self.assertIn("installed", result.stdout)
        self.assertEqual(self.state(), OLD_STATE)

    def test_a_home_directory_that_is_not_there_gets_its_report(self):
        # Not even an administrator makes the first of them.
        for home in ("/proc/nonexistent/home", "/dev/null"):
            with self.subTest(home=home):
                environment = dict(os.environ, HOME=home, DISPLAY="", WAYLAND_DISPLAY="")
                for name in ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"):
                    environment.pop(name, None)
                result = subprocess.run([SCR, "report", "--app-dir", str(self.application)], env=environment,
                                        capture_output=True, text=True, timeout=60)
                self.assertIn("System Components:", result.stdout, result.stderr)
                self.assertIn("installed", result.stdout)

    # ---- Processes that are killed

    def test_a_report_is_killed_at_every_operation(self):
        expected = self.report()
        operations = self.operations()
        states = [remembered(OLD_STATE), remembered(self.state())]
        seen = []
        for number in range(1, len(operations) + 1):
            with self.subTest(operation=operations[number - 1]):
                self.start_anew()
                self.assertEqual(self.report(kill=str(number)).returncode, -9)
                if remembered(self.state()) not in seen:
                    seen.append(remembered(self.state()))
                self.expect_usable(expected.stdout)
        self.assertEqual(seen, states)

    def kill_at_random(self, count, command, path, wholes):
        """Kills the process that many times, anywhere in its saves. Returns what was found and how often."""
        moments = random.Random(count)
        found = dict.fromkeys(wholes, 0)
        longest = 0.012
        for number in range(count):
            # Where disks are slow, saves take longer.
            if number % 100 == 99 and min(found.values()) < number / 20:
                longest = min(2 * longest, 0.1)
            process = subprocess.Popen([SAVING_PROCESS, str(self.preferences), *command], stdout=subprocess.PIPE)
            self.assertEqual(process.stdout.readline(), b"ready\n")
            time.sleep(moments.uniform(0, longest))
            process.kill()
            self.assertEqual(process.stdout.read(), b"")
            process.wait()
            text = path.read_text()
            self.assertIn(text, found)
            found[text] += 1
        leftovers = [entry for entry in path.parent.iterdir() if entry.name != path.name]
        return found, leftovers

    def test_two_thousand_kills_during_saves(self):
        wholes = SAVED_IN_TURN
        self.write(self.preferences / STATE, wholes[0])
        found, leftovers = self.kill_at_random(2000, ["state"], self.preferences / STATE, wholes)
        for text, times in found.items():
            self.assertGreater(times, 10, text)
        # What was killed in the middle is what the test is about.
        self.assertGreater(len(leftovers), 10)

    def test_two_thousand_kills_during_downloads(self):
        wholes = (blocklist("one"), blocklist("two " * 2000))
        server = Server(wholes)
        self.write(self.preferences / DOWNLOADED_WITHOUT_VERSION, wholes[0])
        found, _ = self.kill_at_random(2000, ["download", server.url], self.preferences / DOWNLOADED_WITHOUT_VERSION, wholes)
        server.shutdown()
        for text, times in found.items():
            self.assertGreater(times, 10, text[:60])

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

    # ---- Power that goes

    def disks_after(self, operations, before):
        """Every content of the disk that a power cut can leave after these operations on files: what was not flushed is
        gone, there by half or there, and of the changed names a part, in their order, has reached the disk."""
        names = {name: name for name in before}
        files = {name: [text, text] for name, text in before.items()}  # what was flushed, and what was written
        pending = []
        disks = []

        def settle():
            return {name: files[file] for name, file in names.items()}

        durable = settle()
        for _, name, path, more in operations:
            if name == "create":
                if path not in names:
                    key = object()
                    files[key] = ["", ""]
                    names[path] = key
                    pending.append(settle())
            elif name == "write":
                files[names[path]][1] += bytes.fromhex(more).decode()
            elif name == "flush":
                if path in names:
                    files[names[path]][0] = files[names[path]][1]
                else:
                    # A directory: all names are on the disk.
                    durable = settle()
                    pending = []
            elif name == "move":
                names[more] = names.pop(path)
                pending.append(settle())
            elif name == "remove":
                names.pop(path, None)
                pending.append(settle())
            for tree in (durable, *pending):
                for share in (0, 0.5, 1):
                    disks.append({entry: flushed + written[len(flushed):][:int(len(written[len(flushed):]) * share)]
                                  for entry, (flushed, written) in tree.items()})
        last = [{entry: flushed for entry, (flushed, _) in tree.items()} for tree in (durable, *pending)]
        return disks, last

    def expect_whole_after_power_cuts(self, path, old, new):
        before = {str(path): old}
        disks, last = self.disks_after(self.operations(), before)
        found = {disk.get(str(path)) for disk in disks}
        self.assertEqual(found, {old, new})
        self.assertEqual({disk.get(str(path)) for disk in last}, {new}, "what was saved can still be lost")

    def test_power_cuts_during_the_save_of_the_state(self):
        self.assertEqual(self.report().returncode, 0)
        self.assertNotEqual(self.state(), OLD_STATE)
        self.expect_whole_after_power_cuts(self.preferences / STATE, OLD_STATE, self.state())

    def test_power_cuts_during_the_save_of_a_download(self):
        server = Server([blocklist("downloaded")])
        self.write(self.preferences / DOWNLOADED, blocklist("old"))
        self.assertEqual(self.refresh(server.url).returncode, 0)
        server.shutdown()
        self.expect_whole_after_power_cuts(self.preferences / DOWNLOADED, blocklist("old"), blocklist("downloaded"))

    # ---- Two at once

    def test_two_processes_save_at_once(self):
        wholes = SAVED_IN_TURN
        self.write(self.preferences / STATE, wholes[0])
        processes = [subprocess.Popen([SAVING_PROCESS, str(self.preferences), "state"], stdout=subprocess.PIPE)
                     for _ in range(2)]
        for process in processes:
            self.assertEqual(process.stdout.readline(), b"ready\n")
        found = set()
        for _ in range(20000):
            found.add((self.preferences / STATE).read_text())
        for process in processes:
            self.assertIsNone(process.poll())
            process.kill()
            process.wait()
            process.stdout.close()
        self.assertEqual(found, set(wholes))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + [f"FaultsTest.{test}" for test in sys.argv[4:]])
