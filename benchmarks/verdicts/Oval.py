"""Plain rules as OVAL definitions, each with one textfilecontent54 test of a file that lists the components."""
import re
from xml.sax.saxutils import escape

from PlainRules import devices, interval

HEAD = """<?xml version="1.0" encoding="UTF-8"?>
<oval_definitions xmlns="http://oval.mitre.org/XMLSchema/oval-definitions-5"
    xmlns:ind="http://oval.mitre.org/XMLSchema/oval-definitions-5#independent"
    xmlns:oval="http://oval.mitre.org/XMLSchema/oval-common-5">
<generator>
<oval:schema_version>5.11</oval:schema_version>
<oval:timestamp>2000-01-01T00:00:00</oval:timestamp>
</generator>
"""
IDENTIFIERS = {"object": "obj", "state": "ste"}


class Oval:
    def __init__(self, components, shares):
        self.components = components
        self.shares = shares
        self.parts = {"definition": [], "test": [], "object": [], "state": []}
        self.known = {}

    def reference(self, part, text):
        """The number of an object or a state with that text; with sharing, what is said twice is written once."""
        if self.shares and (part, text) in self.known:
            return self.known[part, text]
        number = len(self.parts[part]) + 1
        self.known[part, text] = number
        name = f"textfilecontent54_{part}"
        self.parts[part].append(f'<ind:{name} id="oval:scr:{IDENTIFIERS[part]}:{number}" version="1">{text}</ind:{name}>')
        return number

    def add(self, number, rule):
        name = re.sub(r"([\\^$.*+?()\[\]{}|])", r"\\\1", f"{rule['type']}\t{rule['name']}")
        subject = self.reference(
            "object", f"<ind:filepath>{escape(str(self.components))}</ind:filepath>"
            f'<ind:pattern operation="pattern match">^{escape(name)}\t(.*)$</ind:pattern>'
            '<ind:instance datatype="int" operation="greater than or equal">1</ind:instance>')
        references = f'<ind:object object_ref="oval:scr:obj:{subject}"/>'
        for operation, version in self.bounds(rule):
            state = self.reference(
                "state", f'<ind:subexpression datatype="version" operation="{operation}">{version}</ind:subexpression>')
            references += f'<ind:state state_ref="oval:scr:ste:{state}"/>'
        self.parts["test"].append(
            f'<ind:textfilecontent54_test id="oval:scr:tst:{number}" version="1" check="at least one" '
            f'check_existence="at_least_one_exists" comment="rule">{references}</ind:textfilecontent54_test>')
        self.parts["definition"].append(
            f'<definition id="oval:scr:def:{number}" version="1" class="inventory"><metadata><title>rule</title>'
            f'<description>rule</description></metadata><criteria><criterion test_ref="oval:scr:tst:{number}"/>'
            "</criteria></definition>")

    @staticmethod
    def bounds(rule):
        affected = interval(rule)
        if not affected:
            return []
        first, last = affected
        return [("equals", first)] if first == last else [("greater than or equal", first), ("less than or equal", last)]

    def text(self):
        parts = (f"<{part}s>\n" + "\n".join(elements) + f"\n</{part}s>\n" for part, elements in self.parts.items())
        return HEAD + "".join(parts) + "</oval_definitions>\n"


def write_components(path, machine):
    path.write_text("".join("\t".join(device) + "\n" for device in devices(machine)), encoding="utf-8")


def write_definitions(path, rules, components, shares):
    """`shares`: whether an object or a state that several rules need is written once."""
    document = Oval(components, shares)
    for number, rule in enumerate(rules, 1):
        document.add(number, rule)
    path.write_text(document.text(), encoding="utf-8")


def hits(output):
    """The numbers of the rules that hit, from what `oscap oval eval` prints."""
    return {int(number) for number in re.findall(r"^Definition oval:scr:def:(\d+): true$", output, re.MULTILINE)}
