"""Counts instructions under valgrind, so that what else the machine does has no part in them.

What a processor offers must not matter, so the parser and the C library are held to what all have. Counts of
functions do not depend on which function is called first: all are bound at the start.
"""
import functools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from ReleaseBuild import BUILD  # noqa: E402

ENVIRONMENT = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "TZ": "UTC", "TMPDIR": "/tmp",
               "SIMDJSON_FORCE_IMPLEMENTATION": "westmere",
               "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX512BW,-AVX2,-AVX,-AVX2_Usable,-AVX_Usable,-ERMS,-FSRM"}
BOUND = ENVIRONMENT | {"LD_BIND_NOW": "1"}
MEASURED = "RunMeasured"


def callgrind(counts, environment, options, command):
    """Runs a command whose counts go to the file. Returns the instructions and what the command printed."""
    if not shutil.which("valgrind"):
        sys.exit("valgrind is missing, which counts instructions: packaging/install-packages benchmark")
    command = ["valgrind", "--tool=callgrind", "--demangle=no", f"--callgrind-out-file={counts}", *options, *map(str, command)]
    result = subprocess.run(command, env=environment, capture_output=True, text=True, check=False)
    found = re.search(r"Collected : (\d+)", result.stderr)
    if result.returncode != 0 or not found or int(found[1]) == 0:
        sys.exit(f"{command} was not counted:\n{result.stdout}{result.stderr}")
    return int(found[1]), result.stdout


def count_process(command):
    """The instructions of a whole process, and what it printed."""
    return callgrind("/dev/null", ENVIRONMENT, [], command)


def count_function(function, *command):
    """The instructions below the functions that match, and the names of all functions that ran there."""
    with tempfile.TemporaryDirectory() as directory:
        counts = pathlib.Path(directory) / "counts"
        instructions, _ = callgrind(counts, BOUND, [f"--toggle-collect={function}"], command)
        return instructions, set(re.findall(r"fn=\(\d+\) (\S+)", counts.read_text(encoding="utf-8")))


@functools.cache
def count_steps(rules, components):
    """The instructions of each step of a run, on generated lists and machines, which are always the same."""
    with tempfile.TemporaryDirectory() as directory:
        counts = pathlib.Path(directory) / "counts"
        options = [f"--toggle-collect={MEASURED}", f"--dump-after={MEASURED}"]
        _, names = callgrind(counts, BOUND, options, [BUILD / "bin" / "steps", "once", rules, components])
        # Each step has left a file, with a number behind its name.
        dumps = [pathlib.Path(f"{counts}.{number}") for number, _ in enumerate(names.split(), 1)]
        totals = [re.search(r"^totals: (\d+)", dump.read_text(encoding="utf-8"), re.MULTILINE) for dump in dumps]
        return {name: int(total[1]) for name, total in zip(names.split(), totals)}
