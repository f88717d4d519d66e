"""Plain rules as rules of json-rules-engine, in the two forms that engine.mjs runs."""
import json

from PlainRules import interval, numbers


def conditions_of_each_component(rule):
    """Conditions on the facts of one component."""
    conditions = [{"fact": "name", "operator": "equal", "value": rule["name"]},
                  {"fact": "type", "operator": "equal", "value": rule["type"]}]
    affected = interval(rule)
    if affected:
        conditions += [{"fact": "version", "operator": "versionFrom", "value": numbers(affected[0])},
                       {"fact": "version", "operator": "versionUpTo", "value": numbers(affected[1])}]
    return conditions


def condition_of_the_machine(rule):
    """One condition on the table of all components."""
    affected = interval(rule)
    first, last = map(numbers, affected) if affected else (None, None)
    return [{"fact": "versions", "operator": "holdAffected",
             "value": {"key": f"{rule['type']}\t{rule['name']}", "first": first, "last": last}}]


def write_rules(path, rules, conditions):
    path.write_text(json.dumps([{"conditions": {"all": conditions(rule)},
                                 "event": {"type": "hit", "params": {"rule": number}}}
                                for number, rule in enumerate(rules, 1)]), encoding="utf-8")


def hits(output):
    """The numbers of the rules that hit, from what engine.mjs and the programs of jq print."""
    return {int(line.removeprefix("rule ")) for line in output.splitlines()}
