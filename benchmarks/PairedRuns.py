"""Whole processes, measured in turn, so that a machine that is busy with other work slows all of them alike."""
import os
import statistics
import subprocess
import tempfile
import time


class Program:
    """A command that is run again and again; its output goes to a file."""

    def __init__(self, name, command, exit_codes=(0,)):
        self.name = name
        self.command = [str(part) for part in command]
        self.exit_codes = exit_codes
        self.walls = []
        self.processors = []

    def prepare(self):
        """What has to be done before each run."""

    def check(self, output):
        """Raises an error when a run did not do what is to be measured."""

    def run(self):
        """Runs once and returns what was printed; an unexpected exit code is an error."""
        self.prepare()
        with tempfile.TemporaryFile() as output:
            begin = time.perf_counter()
            process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=output)
            _, status, usage = os.wait4(process.pid, 0)
            self.walls.append(1000 * (time.perf_counter() - begin))
            self.processors.append(1000 * (usage.ru_utime + usage.ru_stime))
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode not in self.exit_codes:
                raise RuntimeError(f"{self.name} ended with {process.returncode}: {' '.join(self.command)}")
            output.seek(0)
            text = output.read().decode()
            self.check(text)
            return text

    def observe(self, observer):
        """Runs once under a function that takes the command, and returns a figure and what was printed."""
        self.prepare()
        figure, text = observer(self.command)
        self.check(text)
        return figure

    def forget(self):
        self.walls.clear()
        self.processors.clear()

    @property
    def wall(self):
        """Milliseconds from start to end, the median."""
        return statistics.median(self.walls)

    @property
    def processor(self):
        """Milliseconds of processor time, the median."""
        return statistics.median(self.processors)


def run_in_turn(programs, times):
    """Measures all programs `times` times, each once in every round, after a round that does not count."""
    for program in programs:
        program.run()
        program.forget()
    for _ in range(times):
        for program in programs:
            program.run()
