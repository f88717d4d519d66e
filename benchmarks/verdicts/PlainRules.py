"""Rules that say no more than the other programs can say, too, and the machine that they are about.

A plain rule names a component exactly, and affects all of its versions, one version, or an interval. It has no mask,
no modulus, no list of ranges and no dependencies. Its message is "rule <number>", so that an issue tells which rule it
comes from.
"""
import json
import re

KINDS = ("Video", "Audio", "Network")
KEYS = ("name", "type", "version", "max_version", "error_level", "osblc_version", "osc_version")
NOT_PLAIN = {"versions", "version_mask", "version_mod", "dependencies"}
# How the expressions of generated lists begin.
EXPRESSION = re.compile(r"\^|\.\*|\(\?")


def is_plain(rule):
    return rule["type"] in KINDS and not NOT_PLAIN & rule.keys() and not EXPRESSION.match(rule["name"])


def plain_blocklist(document, count):
    """The document with its first `count` plain rules and no others."""
    rules = [rule for rule in document["blocklist"] if is_plain(rule)][:count]
    if len(rules) < count:
        raise RuntimeError(f"there are only {len(rules)} plain rules")
    document["blocklist"] = [{key: rule[key] for key in KEYS if key in rule} | {"info_message": f"rule {number}"}
                             for number, rule in enumerate(rules, 1)]
    return document


def devices(machine):
    """The components that plain rules can be about: kind, name, version as text."""
    return [(component["type"], component["name"], component["version"]) for component in machine["components"]
            if component["type"] in KINDS]


def interval(rule):
    """The first and the last version that a plain rule affects, as texts; nothing when it affects all."""
    first = rule.get("version")
    last = rule.get("max_version", first)
    return (first or "0.0.0.0", last) if last else None


def numbers(version):
    """The four numbers of a version."""
    parts = [int(part) for part in version.split(".")]
    return parts + [0] * (4 - len(parts))


def hits_of_issues(output):
    """The numbers of the rules that hit, from what `scr check --json` prints about one machine."""
    return {int(issue["info_message"].removeprefix("rule ")) for issue in json.loads(output)["issues"]}
