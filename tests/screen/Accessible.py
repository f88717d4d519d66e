"""The windows of a program as a screen reader finds them: named parts with roles, states, places and actions.

Every question goes over the message bus to the program itself; nothing is kept between two questions.
"""
import functools
import subprocess
import time

from gi.repository import Gio, GLib

TIMEOUT_SECONDS = 30
POLL_SECONDS = 0.02
ONE_CALL_MILLISECONDS = 5000
READABLE_ROLES = ("label", "push button", "icon", "panel")
# Bits of the sets of states.
STATES = {"ACTIVE": 1, "CHECKED": 4, "EDITABLE": 7, "FOCUSED": 12, "SELECTED": 23, "SENSITIVE": 24, "SHOWING": 25,
          "VISIBLE": 30}
SCREEN_COORDINATES = 0


def wait_for(what, condition):
    """Asks until the answer is true and returns it. What goes away while it is asked is asked for once more."""
    end = time.monotonic() + TIMEOUT_SECONDS
    while True:
        try:
            answer = condition()
            if answer:
                return answer
        except GLib.Error as error:
            answer = error
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}; the last answer was {answer!r}")
        time.sleep(POLL_SECONDS)


def call(bus, owner, path, interface, method, signature="()", *arguments):
    reply = bus.call_sync(owner, path, interface, method, GLib.Variant(signature, arguments), None,
                          Gio.DBusCallFlags.NONE, ONE_CALL_MILLISECONDS, None)
    return reply.unpack()


@functools.cache
def accessibility_bus():
    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    address, = call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
    flags = Gio.DBusConnectionFlags
    return Gio.DBusConnection.new_for_address_sync(
        address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)


def process_of(owner):
    return call(accessibility_bus(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", "(s)", owner)[0]


def windows_of(process):
    """The windows of a process that can be seen."""
    desktop = Part("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
    return [window for application in desktop.children() if process_of(application.owner) == process
            for window in application.children() if window.is_showing()]


class Part:
    """A window or something in it. All that it tells is as of now; what is gone raises GLib.Error."""

    def __init__(self, owner, path):
        self.owner = owner
        self.path = path

    def __eq__(self, other):
        return isinstance(other, Part) and (self.owner, self.path) == (other.owner, other.path)

    def __repr__(self):
        try:
            return f"{self.role} {self.name!r}"
        except GLib.Error as error:
            return f"{self.path}: {error.message}"

    def ask(self, interface, method, signature="()", *arguments):
        return call(accessibility_bus(), self.owner, self.path, "org.a11y.atspi." + interface, method, signature,
                    *arguments)

    @property
    def name(self):
        return call(accessibility_bus(), self.owner, self.path, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                    "org.a11y.atspi.Accessible", "Name")[0]

    @property
    def role(self):
        return self.ask("Accessible", "GetRoleName")[0]

    @property
    def text(self):
        """The content of a field."""
        return self.ask("Text", "GetText", "(ii)", 0, -1)[0]

    @text.setter
    def text(self, value):
        assert self.ask("EditableText", "SetTextContents", "(s)", value)[0], f"{self} takes no text"

    def has(self, *states):
        words = self.ask("Accessible", "GetState")[0]
        return all(words[0] >> STATES[state] & 1 for state in states)

    def is_showing(self):
        return self.has("SHOWING", "VISIBLE")

    def children(self):
        return [Part(owner, path) for owner, path in self.ask("Accessible", "GetChildren")[0]
                if not path.endswith("/null")]

    def walk(self):
        """This part and all in it, in the order in which they are read."""
        yield self
        for child in self.children():
            yield from child.walk()

    def all(self, role, name=None):
        """The parts of that role, and name, that can be seen."""
        return [part for part in self.walk()
                if part.role == role and (name is None or part.name == name) and part.is_showing()]

    def find(self, role, name=None):
        """The only part of that role, and name, that can be seen; waits until there is one."""
        found = wait_for(f"{role} {name!r} in {self}", lambda: self.all(role, name))
        assert len(found) == 1, f"{len(found)} times {role} {name!r}"
        return found[0]

    def readable(self):
        """(role, name) of everything in it that can be seen and has a name."""
        readable = [(part.role, part.name, part) for part in self.walk()]
        return [(role, name) for role, name, part in readable
                if role in READABLE_ROLES and name and part.is_showing()]

    def press(self):
        """Does what a press of it does."""
        assert self.has("SENSITIVE"), f"{self} cannot be pressed"
        assert self.ask("Action", "DoAction", "(i)", 0)[0], f"{self} refused to be pressed"

    def act(self, name):
        """Does the one of its actions that has this name."""
        count = call(accessibility_bus(), self.owner, self.path, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                     "org.a11y.atspi.Action", "NActions")[0]
        names = [self.ask("Action", "GetName", "(i)", index)[0] for index in range(count)]
        assert self.ask("Action", "DoAction", "(i)", names.index(name))[0], f"{self} refused to {name}"

    def press_by_keyboard(self):
        """Gives it the keyboard and presses the space bar."""
        assert self.ask("Component", "GrabFocus")[0], f"{self} does not take the keyboard"
        wait_for(f"{self} to have the keyboard", lambda: self.has("FOCUSED"))
        press_keys("space")

    def rectangle(self):
        """(left, top, right, bottom) on the screen."""
        left, top, width, height = self.ask("Component", "GetExtents", "(u)", SCREEN_COORDINATES)[0]
        return left, top, left + width, top + height

    def is_within(self, other):
        left, top, right, bottom = self.rectangle()
        other_left, other_top, other_right, other_bottom = other.rectangle()
        return other_left <= left and other_top <= top and right <= other_right and bottom <= other_bottom

    def focused(self):
        """The part of it that has the keyboard, or None."""
        return next((part for part in self.walk() if part.has("FOCUSED")), None)


def press_keys(*keys):
    """Sends keys to the window that is in front."""
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True, timeout=TIMEOUT_SECONDS)


def type_text(text):
    subprocess.run(["xdotool", "type", "--clearmodifiers", text], check=True, timeout=TIMEOUT_SECONDS)
