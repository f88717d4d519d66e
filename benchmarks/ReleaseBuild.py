"""The release build that the scripts of this folder measure, and the lists and machines that it generates."""
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "release"


def run(*command, **options):
    return subprocess.run([str(part) for part in command], check=True, **options)


def build(programs):
    """Builds the programs, quietly; a failure ends the script and names the log."""
    log = BUILD / "benchmarks.log"
    BUILD.mkdir(parents=True, exist_ok=True)
    with open(log, "w", encoding="utf-8") as file:
        try:
            run("cmake", "-S", ROOT, "--preset", "release", "-D", "QELSCR_BUILD_BENCHMARKS=ON", cwd=ROOT, stdout=file,
                stderr=file)
            run("cmake", "--build", BUILD, "--target", *programs, stdout=file, stderr=file)
        except subprocess.CalledProcessError:
            sys.exit(f"the build failed; the log is {log}")


def generate(kind, count):
    """The path of a generated "blocklist" or "machine" of that size."""
    path = BUILD / "benchmark-data" / f"{kind}_{count}.json"
    path.parent.mkdir(exist_ok=True)
    with open(path, "wb") as file:
        run(BUILD / "bin" / "generate_data", kind, count, stdout=file)
    return path
