"""A machine of its own for each test of what goes wrong around the program: directories, a blocklist, a server."""
import http.server
import itertools
import json
import os
import pathlib
import sys
import tempfile
import threading
import unittest

# Files that no disk is waited for, where the system has a place for them.
IN_MEMORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

STATE = "SCRPriorState.json"
INSTALLED = "SystemCompatibilityReport/blocklist.en_US.json"


def blocklist(message):
    """A list that hits every machine and is complete enough to be downloaded."""
    kinds = ("OS", "Video", "Audio", "Network", "File", "Property")
    texts = {kind: {"info_message": f"{message} {kind}", "info_url": "https://example.com/"} for kind in kinds}
    rule = {"type": "OS", "name": ".*", "error_level": "WARN", "info_message": message}
    return json.dumps({"blocklist_version": 1, "blocklist": [rule], "default_info": texts})


def environment(**more):
    """This process's environment without a display and without directories of its user. None takes a variable out."""
    variables = dict(os.environ, DISPLAY="", WAYLAND_DISPLAY="", no_proxy="*")
    for name in ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"):
        variables.pop(name, None)
    variables.update(more)
    return {name: value for name, value in variables.items() if value is not None}


class Server(http.server.ThreadingHTTPServer):
    """Gives the texts in turn."""

    def __init__(self, *texts):
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


class MachineTest(unittest.TestCase):
    # Where the machine's files are; None for the usual place.
    place = None

    def setUp(self):
        directory = tempfile.TemporaryDirectory(dir=self.place)
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)
        self.start_anew()

    def start_anew(self):
        """A machine with an installed list, in directories of its own."""
        self.run_directory = pathlib.Path(tempfile.mkdtemp(dir=self.directory))
        self.preferences = self.run_directory / "preferences"
        self.application = self.run_directory / "application"
        self.write(self.application / INSTALLED, blocklist("installed"))

    def write(self, path, text):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def directories(self):
        return "--pref-dir", str(self.preferences), "--app-dir", str(self.application)

    def serve(self, *texts):
        """Returns the address of a server that gives the texts in turn until the test is over."""
        server = Server(*texts)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        return server.url


def run_tests(count, *cases):
    """Runs the tests that are named behind that many arguments; all when none is."""
    names = [f"{case.__name__}.{test}" for test in sys.argv[1 + count:] for case in cases if hasattr(case, test)]
    if len(names) != len(sys.argv[1 + count:]):
        sys.exit("there is no such test")
    unittest.main(argv=sys.argv[:1] + names)
