#!/usr/bin/python3
"""The program in a real shell, worked through the mouse and seen on the screen, as people do.

desktops_test.py PROGRAM SHELL, with SHELL one of those in shells.py.
"""

import contextlib
import itertools
import os
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../Testbed"))
from shells import SHELLS, THICKNESS  # noqa: E402
from sway import SwayDesktop, SwayScreen, as_user  # noqa: E402

PROGRAM, NAME = sys.argv[1:3]
SHELL = SHELLS[NAME]
BARE = 640, 100  # with nothing on it


def steady(look):
    """Gives what `look` gives once that has not changed for a while: bars lay themselves out several times."""
    seen, since = None, 0

    def again():
        nonlocal seen, since
        if (now := look()) != seen:
            seen, since = now, time.monotonic()
        return seen if time.monotonic() - since > 0.3 else None
    return again


def rows_of(area):
    """What is seen there: rows with a byte for each pixel, how bright the green in it is."""
    green = SCREEN.picture(area)[1::4]
    return [green[start:start + area.width] for start in range(0, len(green), area.width)]


def drawn(rows, grey):
    """The area of all that is not of that grey; none where nothing is."""
    bare = bytes([grey])
    spans = [(y, len(row) - len(row.lstrip(bare)), len(row.rstrip(bare)))
             for y, row in enumerate(rows) if row.strip(bare)]
    if not spans:
        return None
    left, right = min(span[1] for span in spans), max(span[2] for span in spans)
    return Area(left, spans[0][0], right - left, spans[-1][0] + 1 - spans[0][0])


def distance(one, other):
    """Between two areas, along the axis where it is larger; below zero where they overlap."""
    return max(other.x - one.x - one.width, one.x - other.x - other.width,
               other.y - one.y - one.height, one.y - other.y - other.height)


class Bar:
    """The shell's, with one item in it."""

    def __init__(self, edge):
        self.area = {"bottom": Area(0, SCREEN.height - THICKNESS, SCREEN.width, THICKNESS),
                     "left": Area(0, 0, THICKNESS, SCREEN.height)}[edge]
        self._process = DESKTOP.start(SHELL.configured(DESKTOP.home, edge), start_new_session=True,
                                      stdout=subprocess.DEVNULL)
        self._item, self._offsets, self._takes_clicks = None, itertools.cycle((-5, 5)), False

    def close(self):
        """It dies, and the helpers that some shells have with it."""
        if self._process.poll() is None:
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()
        wait_for("the bar to go", lambda: not self.is_there())

    def is_there(self):
        rows = rows_of(self.area)
        return sum(row.count(SHELL.grey) for row in rows) > self.area.width * self.area.height / 2

    def _drawn(self):
        return self.is_there() and drawn(rows_of(self.area), SHELL.grey)

    def _look(self):
        area = self._drawn()
        return area and max(area.width, area.height) <= THICKNESS and area._replace(
            x=area.x + self.area.x, y=area.y + self.area.y)

    def item(self):
        """Its area on the screen."""
        SCREEN.move(BARE)
        self._item = wait_for("the item", steady(self._look))
        if not self._takes_clicks and is_on_bus():
            wait_for("the bar to take clicks", self._tells_of_a_click)
            self._takes_clicks = True
            return self.item()
        return self._item

    def _tells_of_a_click(self):
        """One that does nothing: a bar that is laid out anew just then loses it."""
        clicks = len(told_of("SecondaryActivate"))
        SCREEN.click(self._item.centre, 2)
        SCREEN.move(BARE)
        with contextlib.suppress(AssertionError):
            return wait_for("the shell to tell of the click", lambda: len(told_of("SecondaryActivate")) > clicks, 5)
        self._item = wait_for("the item", steady(self._look))
        return False

    def item_gone(self):
        SCREEN.move(BARE)
        wait_for("the item to go", lambda: self._drawn() is None)

    def contrast(self):
        """Between the bar and the fortieth pixel of the item, in the order in which they stand out: a rim has more."""
        bar, *lights = (((value / 255 + 0.055) / 1.055) ** 2.4 + 0.05
                        for value in (SHELL.grey, *b"".join(rows_of(self._item))))
        return sorted(max(light / bar, bar / light) for light in lights)[-40]

    def click(self, button=1):
        """Each beside the one before, or some shells make a double click of two."""
        x, y = self._item.centre
        SCREEN.click((x, y + next(self._offsets)), button)

    def menu(self):
        """Opens it; gives its picture, and where each of its entries is. A shell that has yet to read it opens one of
        its own."""
        for _ in range(20):
            SCREEN.move(BARE)
            self.click(3)
            with contextlib.suppress(AssertionError):  # the shell has lost the click
                picture, entries = wait_for("a menu", steady(self._menu), 10)
                if len(entries) == 3:
                    return picture, entries
            SCREEN.click(BARE)
            wait_for("the shell's menu to go", lambda: not self._menu())
        raise AssertionError("the shell does not read the menu")

    def _menu(self):
        """Its upper left corner is above the bar, and it has lines of words with lines of one colour between them."""
        rows = rows_of(Area(0, 0, SCREEN.width, SCREEN.height))
        menu = drawn(rows[:self.area.y], 0)
        if not menu or menu.width > PANEL[0]:
            return None
        rows = [row[menu.x:menu.x + menu.width] for row in rows[menu.y:]]
        inner = [row[menu.width // 8:-menu.width // 8] for row in rows]
        lines = [[y for y, _ in line] for has_words, line in itertools.groupby(
            enumerate(inner), lambda row: max(row[1]) - min(row[1]) > 0x40) if has_words]
        entries = [(menu.centre[0], menu.y + sum(line) // len(line)) for line in lines if len(line) > 3]
        return (rows[:lines[-1][-1]], entries) if entries else None


class DesktopsTest(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(os.path.join(os.environ["XDG_CONFIG_HOME"], "com.kelmoth.app"), ignore_errors=True)
        self.open()

    def open(self, edge="bottom"):
        self.bar = Bar(edge)
        self.addCleanup(self.bar.close)
        wait_for("the bar", self.bar.is_there)
        wait_for("its tray", lambda: watcher_says("IsStatusNotifierHostRegistered") if SHELL.has_watcher
                 else SCREEN.has_tray())

    def start(self, *arguments):
        program = Panel([PROGRAM, "--simulate", "basilisk-v3-pro", *arguments])
        self.addCleanup(program.quit)
        return program

    def launch(self):
        self.program = self.start()
        self.bar.item()
        self.assertFalse(SCREEN.panel())

    def in_front(self):
        wait_for("the panel in front", SCREEN.panel_is_in_front)
        wait_for("the program to know it has the focus", self.program.is_active)  # which it can then lose

    def hidden(self):
        wait_for("the panel to go", lambda: not SCREEN.panel())

    def toggle(self, is_shown):
        clicks = len(told_of("Activate"))
        self.bar.click()
        # The press itself closes the panel: a hand is too slow to press again before the item is told of the click,
        # and has answered what comes after it.
        if is_on_bus():
            wait_for("the shell to tell of the click", lambda: len(told_of("Activate")) > clicks)
            get_property(told_of("Activate")[-1], "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Id")
        self.in_front() if is_shown else self.hidden()

    def beside(self, area):
        """The panel is beside the area and clear of the bar, where the shell lets windows be placed."""
        if SHELL.places_windows:
            panel = SCREEN.panel()
            with self.subTest(area=area, panel=panel, bar=self.bar.area):
                self.assertTrue(0 <= distance(panel, area) <= 16)
                self.assertLessEqual(0, distance(panel, self.bar.area))

    def choose(self, entry):
        """Of the menu, which closes; gives how it looked. One that is laid out anew just then loses the click."""
        choices = choices_told()
        for _ in range(20):
            picture, entries = self.bar.menu()
            SCREEN.click(entries[entry])
            if not is_on_bus():
                break
            with contextlib.suppress(AssertionError):
                wait_for("the shell to tell of the choice", lambda: choices_told() > choices, 10)
                break
            SCREEN.click(BARE)
        return picture

    def choose_each(self, close):
        """Gives how the menu looked; ends with the program."""
        picture = self.choose(0)
        self.in_front()
        self.toggle(False)
        self.choose(1)
        self.program.press(close)
        self.program.gone(close)
        self.toggle(False)
        self.choose(2)
        self.ended()
        return picture

    def ended(self):
        self.assertEqual(self.program.process.wait(TIMEOUT), 0, self.program.log())
        self.bar.item_gone()

    def test_clicks(self):
        self.launch()
        self.assertGreaterEqual(self.bar.contrast(), 3)
        for _ in range(2):
            self.toggle(True)
            self.beside(self.bar.item())
            self.toggle(False)

    def test_presses_elsewhere(self):
        self.launch()
        points = [BARE]
        if isinstance(SCREEN, Screen):
            other = Area(400, 300, 200, 200)
            self.addCleanup(SCREEN.close, SCREEN.open_window(other))
            points += [other.centre, self.bar.area.centre]
        for point in points:
            self.toggle(True)
            SCREEN.click(point)
            with self.subTest(point):
                self.hidden()

    def test_menu(self):
        self.launch()
        english = self.choose_each("Close")
        self.launch()
        self.toggle(True)
        self.program.press("Settings", "PL · Polski")
        self.program.find("Ustawienia")
        self.toggle(False)
        polish = self.choose_each("Zamknij")
        self.launch()  # with a menu that never was another
        self.assertEqual(polish, self.choose_each("Zamknij"))
        self.assertNotEqual(polish, english)

    def test_the_bar_dies_and_comes_back(self):
        self.launch()
        self.toggle(True)
        place = SCREEN.panel()
        for _ in range(3):
            self.bar.close()
            self.program.find("Settings")  # it answers, and so has seen what came before
            if SHELL.places_windows:
                self.assertEqual(SCREEN.panel(), place)
            self.open()
            self.bar.item()
        self.toggle(False)
        self.toggle(True)
        self.beside(self.bar.item())
        self.toggle(False)
        self.bar.close()
        self.open()
        self.bar.item()
        self.choose(2)
        self.ended()

    def test_the_program_comes_before_the_bar(self):
        self.bar.close()
        self.program = self.start()
        self.in_front()  # as a window, or nobody would see that it runs
        self.open()
        self.bar.item()
        self.toggle(False)
        self.toggle(True)
        self.beside(self.bar.item())

    @unittest.skipUnless("left" in SHELL.edges, "not tried")
    def test_a_bar_at_the_left(self):
        self.bar.close()
        self.open("left")
        self.launch()
        self.toggle(True)
        self.beside(self.bar.item())
        self.program.quit()
        self.program = self.start("--show")
        self.in_front()
        self.beside(self.bar.area)  # not every shell tells where the item is

    def test_quit(self):
        self.launch()
        self.assertEqual(self.start("--quit").process.wait(TIMEOUT), 0)
        self.ended()


def told_of(what):
    """Whom the shell has told of such clicks over the bus, each time."""
    with open(CLICKS, encoding="utf-8") as log:
        return re.findall(rf"destination=(\S+) .* member={what}\b", log.read())


def choices_told():
    """How often it has told of an entry that was chosen."""
    with open(CLICKS, encoding="utf-8") as log:
        return log.read().count('string "clicked"')


def get_property(name, path, interface, what):
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        name, path, "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", [interface, what]), None,
        Gio.DBusCallFlags.NONE, -1).unpack()[0]


def watcher_says(what):
    return get_property("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", what)


def is_on_bus():
    """Whether the item is told of its clicks, and is not a window in a tray."""
    return bool(SHELL.has_watcher and watcher_says("RegisteredStatusNotifierItems"))


def missing():
    """What keeps the shell from running here."""
    for program in (*SHELL.programs, SHELL.command[0], "dbus-monitor"):
        if not shutil.which(program):
            return program + " is not installed"
    if not os.access("/dev/shm", os.W_OK):
        return "there is no shared memory"
    if "sway" in SHELL.programs and subprocess.run([*as_user(), "true"], check=False).returncode:
        return "there are no user namespaces"
    return None


if __name__ == "__main__":
    if reason := missing():
        print(f"SKIPPED: {NAME}: {reason}")
        sys.exit()
    with SHELL.desktop() as DESKTOP:
        from gi.repository import Gio, GLib
        from panel import TIMEOUT, Panel, wait_for
        from screen import PANEL, Area, Screen

        CLICKS = os.path.join(DESKTOP.home, "clicks")
        with open(CLICKS, "wb") as log:
            DESKTOP.start(["dbus-monitor", "--session", "interface='org.kde.StatusNotifierItem'",
                       "interface='com.canonical.dbusmenu'"], stdout=log)
        wait_for("the monitor", lambda: os.path.getsize(CLICKS))
        SCREEN = SwayScreen() if isinstance(DESKTOP, SwayDesktop) else Screen()
        unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
