# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a program shows, as those see it who read it over the accessibility bus."""
from gi.repository import GLib

from session import Failure, wait_for

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_PROPERTIES = "org.freedesktop.DBus.Properties"
_STATES = {"checked": 4, "enabled": 8, "editable": 7, "focused": 12, "selected": 23, "sensitive": 24,
           "showing": 25, "visible": 30}


class Node:
    """One control. What is asked of it is asked of the program each time; nothing is kept."""

    def __init__(self, bus, owner, path):
        self._bus, self._owner, self._path = bus, owner, path

    def __eq__(self, other):
        return isinstance(other, Node) and (self._owner, self._path) == (other._owner, other._path)

    def __hash__(self):
        return hash((self._owner, self._path))

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    def _call(self, interface, method, arguments=None):
        return self._bus.call_sync(self._owner, self._path, interface, method, arguments, None, 0, 5000,
                                   None).unpack()

    def _ask(self, interface, method, arguments=None, otherwise=None):
        """Controls come and go while they are asked."""
        try:
            return self._call(interface, method, arguments)
        except GLib.Error:
            return otherwise

    def _property(self, name):
        answer = self._ask(_PROPERTIES, "Get", GLib.Variant("(ss)", (_ACCESSIBLE, name)))
        return answer[0] if answer else ""

    @property
    def name(self):
        return self._property("Name")

    @property
    def description(self):
        return self._property("Description")

    @property
    def role(self):
        answer = self._ask(_ACCESSIBLE, "GetRoleName")
        return answer[0] if answer else ""

    @property
    def children(self):
        answer = self._ask(_ACCESSIBLE, "GetChildren")
        return [Node(self._bus, *child) for child in answer[0]] if answer else []

    @property
    def states(self):
        answer = self._ask(_ACCESSIBLE, "GetState")
        low = answer[0][0] if answer else 0
        return {name for name, bit in _STATES.items() if low >> bit & 1}

    @property
    def text(self):
        answer = self._ask("org.a11y.atspi.Text", "GetText", GLib.Variant("(ii)", (0, -1)))
        return answer[0] if answer else ""

    @property
    def extents(self):
        """x, y, width, height on the screen; nothing while it is not shown."""
        answer = self._ask("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))
        return answer[0] if answer and answer[0][2] > 0 and answer[0][3] > 0 else None

    @property
    def centre(self):
        x, y, width, height = wait_for(f"{self!r} on the screen", lambda: self.extents)
        return x + width // 2, y + height // 2

    def actions(self):
        answer = self._ask("org.a11y.atspi.Action", "GetActions")
        return [action[0] for action in answer[0]] if answer else []

    def act(self, action):
        """What assistive programs do instead of clicking."""
        actions = self.actions()
        if action not in actions:
            raise Failure(f"{self!r} has no action {action!r}, but {actions}")
        self._call("org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (actions.index(action),)))

    def write(self, text):
        """In place of what the field holds."""
        self._call("org.a11y.atspi.EditableText", "SetTextContents", GLib.Variant("(s)", (text,)))

    def select_row(self, row):
        self._call("org.a11y.atspi.Table", "AddRowSelection", GLib.Variant("(i)", (row,)))

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()

    def all(self, role=None, name=None):
        return [node for node in self.walk()
                if (role is None or node.role == role) and (name is None or node.name == name)]

    def first(self, role=None, name=None):
        for node in self.walk():
            if (role is None or node.role == role) and (name is None or node.name == name):
                return node
        return None

    def find(self, role=None, name=None):
        """Waits for it to be there and shown."""
        def shown():
            node = self.first(role, name)
            return node if node and "showing" in node.states else None
        return wait_for(f"a {role or 'control'} {name!r} in {self!r}", shown)


def applications(session):
    root = Node(session.accessibility_bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
    return root.children
