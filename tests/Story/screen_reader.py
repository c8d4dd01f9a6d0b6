# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Windows as a screen reader finds them: by role and name alone. To be imported on a desktop that has a session bus."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from desktop import wait_for  # noqa: E402

Role = Atspi.Role
State = Atspi.StateType
BUTTONS = (Role.PUSH_BUTTON, Role.PUSH_BUTTON_MENU, Role.TOGGLE_BUTTON, Role.CHECK_BOX, Role.RADIO_BUTTON)


class Gone(Exception):
    """What was looked at is no longer there."""


def _asked(question, *arguments):
    try:
        return question(*arguments)
    except GLib.Error as error:
        raise Gone(str(error)) from error


class Thing:
    """A window, or anything in one."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def name(self):
        return _asked(Atspi.Accessible.get_name, self._accessible)

    @property
    def description(self):
        return _asked(Atspi.Accessible.get_description, self._accessible)

    @property
    def role(self):
        return _asked(Atspi.Accessible.get_role, self._accessible)

    def has(self, state):
        return _asked(Atspi.Accessible.get_state_set, self._accessible).contains(state)

    @property
    def is_showing(self):
        return self.has(Atspi.StateType.SHOWING)

    @property
    def is_enabled(self):
        return self.has(Atspi.StateType.ENABLED)

    @property
    def children(self):
        count = _asked(Atspi.Accessible.get_child_count, self._accessible)
        found = (_asked(Atspi.Accessible.get_child_at_index, self._accessible, index) for index in range(count))
        return [Thing(child) for child in found if child is not None]

    @property
    def everything(self):
        """Itself and all that is in it, from the outside to the inside."""
        yield self
        for child in self.children:
            yield from child.everything

    def find(self, name, *roles):
        """The first of that name and one of the roles, or None."""
        try:
            return next((thing for thing in self.everything
                         if (not roles or thing.role in roles) and thing.name == name), None)
        except Gone:
            return None

    def awaited(self, name, *roles):
        return wait_for(f"“{name}” in “{self.name}”", lambda: self.find(name, *roles))

    def press(self):
        """Other actions, such as showing a menu, may stand before the one that presses."""
        action = self._accessible.get_action_iface()
        names = [Atspi.Action.get_action_name(action, index) for index in range(Atspi.Action.get_n_actions(action))]
        assert "Press" in names, f"“{self.name}” cannot be pressed: {names}"
        assert _asked(Atspi.Action.do_action, action, names.index("Press"))

    @property
    def extents(self):
        """(x, y, width, height) on the screen, in its pixels."""
        area = _asked(Atspi.Component.get_extents, self._accessible.get_component_iface(), Atspi.CoordType.SCREEN)
        return area.x, area.y, area.width, area.height


def windows_of(program):
    """The windows that the program shows now."""
    desktop = Atspi.get_desktop(0)
    desktop.set_cache_mask(Atspi.Cache.NONE)
    windows = []
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is None or application.get_name() != program:
            continue
        application.set_cache_mask(Atspi.Cache.NONE)
        try:
            windows += [child for child in Thing(application).children if child.is_showing]
        except Gone:
            pass
    return windows


def window(program, title):
    """The shown window of this title, waited for."""
    return wait_for(f"the window “{title}”",
                    lambda: next((shown for shown in windows_of(program) if shown.name == title), None))


KEYS = {"Escape": 0xFF1B, "Home": 0xFF50, "Return": 0xFF0D, "Right": 0xFF53, "Space": 0x20}


def type_key(name):
    """One of KEYS, to the window that has the keyboard."""
    assert Atspi.generate_keyboard_event(KEYS[name], None, Atspi.KeySynthType.SYM)


def type_text(text):
    """To whatever has the keyboard."""
    assert Atspi.generate_keyboard_event(0, text, Atspi.KeySynthType.STRING)
