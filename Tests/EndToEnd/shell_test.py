#!/usr/bin/python3
"""The program as the desktop's shell meets it: its item, menu and popover, its one instance, its end.

shell_test.py PROGRAM CASE, with CASE one of the classes below.
"""

import fcntl
import os
import re
import shutil
import signal
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../Testbed"))
from desktop import Desktop  # noqa: E402

PROGRAM = sys.argv[1]
REFUSAL = "Kelmoth: another instance is running or instance lock is unavailable"


class ShellTest(unittest.TestCase):
    kind, arguments, host = "SystemTray", (), None

    def setUp(self):
        shutil.rmtree(os.environ["XDG_CONFIG_HOME"], ignore_errors=True)

    def open(self, *edge, kind=None, **options):
        """A host of that kind or the test's own, which has the item from now on."""
        self.host = getattr(hosts, kind or self.kind)(DESKTOP, SCREEN, *edge, **options)
        self.addCleanup(self.host.close)
        return self.host

    def start(self, *arguments, command=(PROGRAM,), **environment):
        program = Panel([*command, *arguments], os.environ | environment)
        self.addCleanup(program.quit)
        return program

    def launch(self, *arguments, **options):
        """Starts the program, with its item in a host; gives it."""
        if not self.host:
            self.open()
        self.program = self.start(*self.arguments, *arguments, **options)
        wait_for("the item", self.host.item)
        return self.program

    def toggle(self):
        self.host.click(1)

    def show(self):
        self.toggle()
        self.in_front()

    def hide(self):
        self.toggle()
        self.hidden()

    def choose_polish(self):
        self.program.press("Settings", "PL · Polski")
        self.program.find("Ustawienia")

    def open_window(self):
        self.addCleanup(SCREEN.close, SCREEN.open_window(OTHER))

    def hidden(self):
        wait_for("the panel to go", lambda: not SCREEN.panel())

    def in_front(self):
        wait_for("the panel in front", SCREEN.panel_is_in_front)

    def ended(self, program):
        """The program ends by itself, well, and leaves nothing that would stop the next start."""
        self.assertEqual(program.process.wait(TIMEOUT), 0, program.log())
        self.assertFalse(self.is_locked())

    def is_locked(self):
        with open(os.path.join(os.environ["HOME"], ".local/share/com.kelmoth.app.lock"), "rb") as lock:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                return True
        return False


class HostTest:
    """What holds for every kind of tray."""

    arguments = "--simulate", "basilisk-v3-pro-wired"

    def test_clicks(self):
        self.launch()
        self.assertFalse(SCREEN.panel())
        for _ in range(2):
            self.show()
            self.assertLessEqual({"ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"}, SCREEN.panel_state())
            self.hide()
        self.host.click(2)
        self.toggle()  # or the click before would have opened it
        self.in_front()

    def test_presses_elsewhere_close_the_popover(self):
        self.launch()
        self.open_window()
        for point, button in ((OTHER.centre, 1), (OTHER.centre, 3), (BARE, 1)):
            self.show()
            SCREEN.click(point, button)
            self.hidden()
        self.show()
        for name in ("Settings", "About Kelmoth", "Close"):  # a page, the footer, the sheet
            SCREEN.click(extents(self.program.find(name)).centre)
        self.program.gone("Close")
        self.assertTrue(SCREEN.panel())
        entries = self.host.menu()
        self.assertTrue(SCREEN.panel())
        entries[2][1]()
        self.program.find("Close")
        self.assertTrue(SCREEN.panel())

    def test_menu(self):
        self.launch()
        entries = self.host.menu()
        self.assertEqual([title for title, _ in entries], ["Open Kelmoth", "", "About Kelmoth", "", "Quit"])
        quit_program = entries[4][1]
        entries[0][1]()
        self.in_front()
        self.choose_polish()
        self.hide()
        entries = self.host.menu()
        self.assertEqual([title for title, _ in entries], ["Otwórz Kelmoth", "", "O programie Kelmoth", "", "Zakończ"])
        entries[2][1]()
        self.program.find("Zamknij")
        self.in_front()
        self.host.menu()
        quit_program()  # as hosts do that keep the numbers of entries
        self.ended(self.program)

    def test_the_popover_lies_beside_the_item(self):
        self.launch()
        for edge in ("left", "right", "top", "bottom"):
            self.host.close()
            self.open(edge)
            item = wait_for("the item in the new host", self.host.item)
            self.show()
            panel = SCREEN.panel()
            self.hide()
            with self.subTest(edge, item=item, panel=panel):
                self.assertEqual((panel.width, panel.height), (340, 610))
                self.assertTrue(0 <= panel.x <= SCREEN.width - 340 and 0 <= panel.y <= SCREEN.height - 610)
                gap = {"left": panel.x - item.x - item.width, "right": item.x - panel.x - panel.width,
                       "top": panel.y - item.y - item.height, "bottom": item.y - panel.y - panel.height}[edge]
                self.assertTrue(0 <= gap <= 12, gap)
                x, y = item.centre
                self.assertTrue(panel.y <= y < panel.y + panel.height if edge in ("left", "right")
                                else panel.x <= x < panel.x + panel.width)

    def test_a_host_may_come_later(self):
        self.program = self.start("--show")
        self.in_front()
        self.open()
        wait_for("the item", self.host.item)
        self.hide()
        self.show()
        self.assertIn("SKIP_TASKBAR", SCREEN.panel_state())


class InASystemTray(HostTest, ShellTest):
    def test_losing_the_focus_stands_in_for_presses(self):
        program = self.launch(WAYLAND_DISPLAY="none", QT_QPA_PLATFORM="xcb")
        self.show()
        wait_for("the program to know it has the focus", program.is_active)  # till then it may ask for it once more
        self.open_window()
        self.hidden()

    def test_a_low_screen(self):
        self.launch(QT_SCALE_FACTOR="2")  # 640 × 512 points, of which the tray takes 14
        self.show()
        self.assertEqual(SCREEN.panel()[1::2], (0, SCREEN.height - 28))

    def test_the_panel_waits_for_a_tray_that_takes_the_item_along(self):
        self.launch()
        self.show()
        place = SCREEN.panel()
        SCREEN.destroy_item()  # as happens when the tray is killed
        self.host.close()
        self.program.find("Settings")  # by then it has heard of that, too
        self.assertEqual(SCREEN.panel(), place)
        self.open("top")
        wait_for("the panel beside the new item", lambda: (now := SCREEN.panel()) and now.x == place.x and now.y < 100)

    def test_opens_beside_the_item_from_the_start(self):
        self.open()
        self.start("--show")
        self.in_front()
        wait_for("the panel beside the item", lambda: (item := self.host.item()) and (panel := SCREEN.panel())
                 and 0 <= item.y - panel.y - panel.height <= 12 and panel.x <= item.centre[0] < panel.x + panel.width)

    def test_the_menu_answers_to_its_keys(self):
        self.launch()
        self.host.menu()
        SCREEN.press_command("q")
        self.ended(self.program)


class InANotifierHost(HostTest, ShellTest):
    kind = "NotifierHost"

    def test_is_preferred_to_a_system_tray(self):
        self.open(kind="SystemTray")
        self.open()
        self.launch()
        self.assertEqual(len(self.host.menu()), 5)
        self.show()
        self.assertIsNone(SCREEN.item())

    def test_a_host_may_take_over_at_once(self):
        self.launch()
        self.show()
        first = self.host
        self.open().wait_in_queue()
        first.close()
        wait_for("the item in the new host", self.host.item)
        self.assertEqual(len(self.host.menu()), 5)
        self.assertTrue(SCREEN.panel())
        self.hide()

    def test_a_host_may_have_its_name_before_it_answers(self):
        self.launch()
        self.host.close()
        self.open(is_bare=True)
        self.start("--show")
        self.in_front()  # by then it has heard of the new name, and asked there
        self.host.listen()
        wait_for("the item in the new host", self.host.item)

    def test_a_busy_shell_tells_of_a_click_late(self):
        self.launch()
        self.show()
        SCREEN.click(self.host.item().centre)
        self.hidden()
        time.sleep(0.6)
        self.host.tell(1)
        self.toggle()  # which would close what that has opened
        self.in_front()

    def test_opens_in_the_corner_where_the_pointer_is_not_known(self):
        self.open("left")
        self.launch(WAYLAND_DISPLAY="none", QT_QPA_PLATFORM="xcb")
        self.show()
        self.assertEqual(SCREEN.panel()[:2], (SCREEN.width - 346, 6))


class WithoutAHost(ShellTest):
    def test_the_panel_is_a_window(self):
        program = self.start()
        for _ in range(3):
            self.in_front()
            self.assertEqual(SCREEN.panel_state(), set())
            SCREEN.close_panel()
            self.hidden()
            self.assertIsNone(program.process.poll())
            self.assertEqual(self.start().process.wait(TIMEOUT), 0)


class OneInstance(ShellTest):
    def item_gone(self):
        wait_for("the item to go", lambda: not SCREEN.item())

    def second(self, *arguments, **environment):
        """Another start, which is to end at once; gives what it says."""
        program = self.start(*arguments, **environment)
        self.assertEqual(program.process.wait(TIMEOUT), 0, program.log())
        return program.log()

    def test_a_second_start_shows_the_first(self):
        first = self.launch()
        self.assertIn(REFUSAL, self.second())
        self.in_front()
        self.open_window()
        wait_for("another window's focus", lambda: not SCREEN.panel_is_in_front())
        self.second("--show")
        self.in_front()
        self.assertIsNone(first.process.poll())

    def test_of_many_starts_one_survives(self):
        self.open()
        programs = [self.start() for _ in range(20)]
        wait_for("all but one to end", lambda: [each.process.poll() for each in programs].count(0) == 19)
        self.in_front()
        survivor, = (each for each in programs if each.process.poll() is None)
        self.assertTrue(self.is_locked())
        survivor.quit()
        self.ended(survivor)

    def test_what_is_left_of_a_crash_is_no_hindrance(self):
        crashed = self.launch()
        crashed.process.kill()
        crashed.process.wait()
        self.item_gone()
        self.launch()
        self.assertTrue(self.is_locked())

    def test_runs_unguarded_without_a_place_for_the_lock(self):
        for place in ("/proc", "/dev/null/data"):  # cannot be written, is no directory
            with self.subTest(place):
                program = self.launch(XDG_DATA_HOME=place)
                self.assertIn(REFUSAL, self.second(XDG_DATA_HOME=place))  # the bus still knows
                self.in_front()
                self.assertEqual(program.quit(), 0)
                self.item_gone()

    def test_without_a_bus_the_lock_guards(self):
        nothing = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        program = self.launch(**nothing)
        self.assertIn(REFUSAL, self.second(**nothing))
        self.show()
        self.assertEqual(self.start("--quit", **nothing).process.wait(TIMEOUT), 1)  # whom it cannot find
        program.process.terminate()
        self.ended(program)

    def test_is_started_at_login_when_it_is_installed(self):
        place = os.path.join(os.environ["HOME"], ".local/bin")
        os.makedirs(place)
        installed = shutil.copy(PROGRAM, place)
        entry = os.path.join(os.environ["XDG_CONFIG_HOME"], "autostart/com.kelmoth.app.desktop")
        program = self.launch(command=[installed])
        self.toggle()
        program.press("Settings", "Launch at Login")
        wait_for("the entry", lambda: os.path.exists(entry))
        with open(entry, encoding="utf-8") as text:
            self.assertIn(f'Exec="{installed}"', text.read())
        program.press("Launch at Login")
        wait_for("the entry to go", lambda: not os.path.exists(entry))

    def test_writes_nowhere_else(self):
        first = self.launch()
        settings, elsewhere = (os.path.join(os.environ[name], place) for name, place in (
            ("XDG_CONFIG_HOME", "com.kelmoth.app"), ("HOME", "elsewhere")))
        os.mkdir(elsewhere)
        shutil.rmtree(settings)
        os.symlink(elsewhere, settings)  # what the program writes by this path would land there
        self.toggle()
        self.choose_polish()
        self.assertEqual(first.quit(), 0)
        if "Not confined" not in first.log():  # the kernel's fault, if so
            self.assertEqual(os.listdir(elsewhere), [])

    def test_talks_to_this_machine_alone(self):
        calls = os.path.join(os.environ["HOME"], "calls")
        program = self.launch(command=["strace", "-f", "-qq", "-e", "trace=socket", "-e", "signal=none", "-o", calls,
                                       PROGRAM])
        self.toggle()
        self.choose_polish()
        self.second("--quit")
        self.assertEqual(program.process.wait(TIMEOUT), 0)
        with open(calls, encoding="utf-8") as lines:
            families = set(re.findall(r"socket\((\w+)", lines.read()))
        self.assertLessEqual({"AF_UNIX"}, families)
        self.assertLessEqual(families, {"AF_UNIX", "AF_NETLINK"})  # the latter is udev's

    def test_ends(self):
        address, bus = DESKTOP.start_bus()
        ways = {
            "asked to": lambda _: self.second("--quit"),
            "bus lost": lambda _: bus.terminate(),
            **{way.name: lambda program, way=way: program.process.send_signal(way)
               for way in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)},
        }
        display, server = DESKTOP.start_display()
        elsewhere = self.start("--show", DISPLAY=display)
        wait_for("the start", lambda: "started" in elsewhere.log())
        server.kill()
        self.ended(elsewhere)
        for name, end in ways.items():
            with self.subTest(name):
                program = self.launch(**({"DBUS_SESSION_BUS_ADDRESS": address} if name == "bus lost" else {}))
                self.assertTrue(self.is_locked())
                end(program)
                self.ended(program)
                self.item_gone()
        self.second("--quit")  # where none runs


class ALongSession(ShellTest):
    """Of a program whose mouse each SIGUSR1 pulls out or puts back. Built with sanitizers, it ends badly when it
    leaks or misuses anything."""

    def test_leaves_nothing_behind(self):
        program = self.launch()
        for turn in range(100):
            program.process.send_signal(signal.SIGUSR1)
            wait_for("the mouse to go", lambda: program.log().count("device disconnected") > turn)
            (self.hide if turn % 2 else self.show)()
            program.process.send_signal(signal.SIGUSR1)
            if turn % 10 == 0:
                program.press(*(("Settings", "PL · Polski") if turn % 20 == 0 else ("Ustawienia", "EN · English")))
            wait_for("the mouse", lambda: program.log().count("device connected") > turn + 1)
        self.toggle()
        program.find("Razer Basilisk V3 Pro (Wired)")
        self.assertEqual(program.quit(), 0, program.log())


if __name__ == "__main__":
    with Desktop() as DESKTOP:
        import hosts
        from hosts import extents
        from panel import TIMEOUT, Panel, wait_for
        from screen import Area, Screen

        SCREEN, OTHER, BARE = Screen(), Area(100, 300, 200, 200), (600, 100)  # the last with nothing on it
        unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
