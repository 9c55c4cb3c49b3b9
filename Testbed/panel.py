"""The panel as an assistive technology meets it: found by role and name, worked by the actions it offers."""

import contextlib
import os
import re
import signal
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

TIMEOUT = 60  # seconds; a loaded machine is slow, a broken program is never done
Atspi.set_timeout(TIMEOUT * 1000, TIMEOUT * 1000)  # milliseconds; its default is 800


def wait_for(what, condition, timeout=TIMEOUT):
    """Gives what `condition` gives as soon as that is true. Objects that vanish meanwhile are looked up again."""
    deadline = time.monotonic() + timeout
    context = GLib.MainContext.default()
    while True:
        with contextlib.suppress(GLib.Error):
            if result := condition():
                return result
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {timeout} s for {what}")
        alarm = GLib.timeout_add(20, lambda: False)
        context.iteration(True)
        with contextlib.suppress(Exception):
            GLib.source_remove(alarm)


class Program:
    """The program, running."""

    def __init__(self, command, environment=None):
        self._log = tempfile.TemporaryFile()
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log,
                                        env=environment)

    def quit(self):
        """Asks the program to end; gives its exit status."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        return self.process.wait(TIMEOUT)

    def log(self):
        size = os.fstat(self._log.fileno()).st_size
        return os.pread(self._log.fileno(), size, 0).decode(errors="replace")


class Panel(Program):
    """The program, and its panel if that is shown."""

    def _application(self):
        if self.process.poll() is not None:
            raise AssertionError("the program ended:\n" + self.log())
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            if child and child.get_name() == "kelmoth" and child.get_child_count():
                child.set_cache_mask(Atspi.Cache.NONE)
                child.clear_cache()
                return child
        return None

    def __iter__(self):
        pending = list(filter(None, [self._application()]))
        while pending:
            node = pending.pop(0)
            with contextlib.suppress(GLib.Error):
                yield node
                pending[:0] = filter(None, (node.get_child_at_index(i) for i in range(node.get_child_count())))

    def look(self, name, role=None):
        """The element of that name that is to be seen, within the window; none when there is none now."""
        for node in self:
            states = node.get_state_set()
            if node.get_name() == name and role in (None, node.get_role()) and states.contains(
                    Atspi.StateType.VISIBLE):
                return node
        return None

    def find(self, name, role=None):
        return wait_for(f"{name!r}; there are {self.names()}", lambda: self.look(name, role))

    def names(self):
        return [node.get_name() for node in self if node.get_name()]

    def gone(self, name):
        wait_for(f"{name!r} to go", lambda: not self.look(name))

    def press(self, *names):
        """Works the first action of one element after the other, each once it can be."""
        for name in names:
            node = wait_for(f"{name!r} to be enabled; there are {self.names()}", lambda name=name: self._enabled(name))
            node.do_action(0)

    def _enabled(self, name, role=None):
        node = self.look(name, role)
        return node if node and node.get_state_set().contains(Atspi.StateType.ENABLED) else None

    def set_value(self, name, value):
        node = wait_for(f"{name!r} to be enabled", lambda: self._enabled(name, Atspi.Role.SLIDER))
        node.set_current_value(value)

    def value(self, name):
        return self.find(name, Atspi.Role.SLIDER).get_current_value()

    def has_state(self, name, state):
        return wait_for(f"{name!r} to be {state.value_nick}", lambda: (node := self.look(name))
                        and node.get_state_set().contains(state))

    def described(self, name, description):
        wait_for(f"{name!r} to be {description!r}", lambda: (node := self.look(name))
                 and node.get_description() == description)

    def is_active(self):
        return any(node.get_state_set().contains(Atspi.StateType.ACTIVE) for node in self)

    def reports(self):
        """The requests that the program says it sent: their first sixteen bytes."""
        return [bytes.fromhex(found) for found in re.findall("Report sent: ([0-9A-F ]+)", self.log())]
