"""The tables of the steps of a run: what each takes beside its yardstick, and how it grows with its input."""
import itertools
import json
import math
import sys

sys.dont_write_bytecode = True
from Instructions import count_steps  # noqa: E402
from ReleaseBuild import BUILD, run  # noqa: E402
from Tables import print_table  # noqa: E402

# What a step stands beside.
YARDSTICKS = {"read": "bytes_read", "parse_to_dictionary": "bare_parse", "rules_from_dictionary": "bare_parse",
              "blocklist_from_text": "bare_parse", "hash": "bare_hash", "rematch_test": "bare_hash",
              "nothing_changed": "bare_parse", "match": "one_comparison_each", "sort": "issues_copied"}
# The sizes that growth is told from; the other one stays the same meanwhile.
RULES = (100, 1_000, 10_000, 100_000)
COMPONENTS = (30, 300, 3_000)
SAME_RULES = 1_000
SAME_COMPONENTS = 30
MOST_EXPONENT = 1.05


def ratio(values, step):
    """How many times its yardstick's value a step's is; empty for what has no yardstick."""
    yardstick = YARDSTICKS.get(step)
    return f"{values[step] / values[yardstick]:.1f}" if yardstick else ""


def print_steps():
    """The table of all steps and sizes."""
    command = (BUILD / "bin" / "steps", "--benchmark_format=json", "--benchmark_min_time=0.05")
    measured = {}
    for benchmark in json.loads(run(*command, capture_output=True, text=True).stdout)["benchmarks"]:
        step, rules, components = benchmark["name"].split("/")
        measured.setdefault((int(rules), int(components)), {})[step] = benchmark
    rows = []
    for (rules, components), benchmarks in measured.items():
        times = {step: benchmark["cpu_time"] for step, benchmark in benchmarks.items()}
        instructions = count_steps(rules, components)
        rows += [(step, f"{rules:,}", f"{components:,}", f"{times[step]:.3f}", ratio(times, step),
                  f"{instructions[step] / 1000:,.0f}", ratio(instructions, step),
                  f"{benchmark['peak'] / benchmark['bytes']:.2f}", f"{int(benchmark['allocations']):,}")
                 for step, benchmark in benchmarks.items()]
    print_table(("step", "rules", "components", "ms", "of its yardstick", "thousand instructions", "of its yardstick",
                 "peak memory of the file", "allocations"), rows)


def growth(kind, counted):
    """For each two sizes that follow each other a heading, and the power of the size that each step grows with."""
    for (fewer, few), (more, many) in itertools.pairwise(counted):
        yield f"{kind}, {fewer:,} to {more:,}", {step: math.log(many[step] / few[step], more / fewer) for step in many}


def marked(power):
    return "" if power is None else f"{power:.3f}" + (" *" if power > MOST_EXPONENT else "")


def print_growth():
    """The table of the exponents, those that are too high with a mark."""
    by_rules = [(rules, count_steps(rules, SAME_COMPONENTS)) for rules in RULES]
    by_components = [(components, count_steps(SAME_RULES, components)) for components in COMPONENTS]
    columns = dict([*growth("rules", by_rules), *growth("components", by_components)])
    steps = [step for step in by_rules[0][1] if step not in YARDSTICKS.values()]
    print_table(("step", *columns), [(step, *(marked(powers.get(step)) for powers in columns.values())) for step in steps])
    print(f"\nExponents of the instructions, rules with {SAME_COMPONENTS} components, components with {SAME_RULES:,} rules. "
          f"* is above {MOST_EXPONENT}.")
