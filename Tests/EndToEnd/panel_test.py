#!/usr/bin/python3
"""The whole program on an X server, worked through its accessibility tree alone.

panel_test.py PROGRAM [HOST]: with HOST the mouse is one mocked at the kernel's side, behind real hidraw ioctls, and the
wire itself is read; without it a simulated mouse, and what the program logs of its reports is read.
"""

import os
import signal
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../Testbed"))
from desktop import Desktop  # noqa: E402

MODEL = "basilisk-v3-pro-wired"
PROGRAM, HOST = sys.argv[1], (sys.argv[2:3] or [None])[0]

# Class and id, bytes 6 and 7, of the commands that change a mouse.
WRITES = {(0x04, 0x06), (0x0F, 0x02), (0x0F, 0x04), (0x02, 0x0C), (0x0B, 0x03), (0x0B, 0x0B)}


def stages(active, *dpis):
    """The command that sets the stages, `active` 1-based."""
    body = b"".join(bytes([number]) + dpi.to_bytes(2, "big") * 2 + bytes(2) for number, dpi in enumerate(dpis, 1))
    return [bytes([0x04, 0x06, 1, active, len(dpis)]) + body]


def light(zone, brightness, *effect):
    return [bytes([0x0F, 0x04, 1, zone, brightness]), bytes([0x0F, 0x02, 1, zone, *effect])]


def button(number, *function):
    """A button is assigned in profile 0, then in the chosen one."""
    return [bytes([0x02, 0x0C, profile, number, 0, *function]) for profile in (0, 1)]


class PanelTest(unittest.TestCase):
    def setUp(self):
        self.wire = os.path.join(os.environ["HOME"], "wire")
        if HOST:
            command = ["umockdev-wrapper", HOST, MODEL, self.wire, PROGRAM, "--show"]
            # The mock's monitor is a socket among its files, which the confined program may make only here.
            os.environ["TMPDIR"] = os.path.join(os.environ["XDG_RUNTIME_DIR"], "com.kelmoth.app")
            os.makedirs(os.environ["TMPDIR"])
        else:
            command = [PROGRAM, "--verbose", "--show", "--simulate", MODEL]
        self.panel = Panel(command)
        self.addCleanup(self.panel.quit)
        self.expected = []

    def check_writes(self):
        """Ends the program and compares every change that reached the mouse, as far as each is known."""
        self.assertEqual(self.panel.quit(), 0)
        if HOST:
            with open(self.wire, encoding="ascii") as wire:
                reports = [bytes.fromhex(line) for line in wire]
        else:
            reports = self.panel.reports()
        writes = [report[6:] for report in reports if (report[6], report[7]) in WRITES]
        self.assertEqual([write[:len(wanted)].hex(" ") for write, wanted in zip(writes, self.expected)],
                         [wanted[:len(write)].hex(" ") for write, wanted in zip(writes, self.expected)])
        self.assertEqual(len(writes), len(self.expected))

    def change_dpi(self):
        panel = self.panel
        panel.find("Stage 1", Atspi.Role.LABEL)  # the mouse has been read
        panel.press("Stage 3")
        panel.find("1 600")
        self.expected += stages(3, 400, 800, 1600, 3200, 6400)
        panel.set_value("DPI", 2000)
        panel.find("2 000")
        self.expected += stages(3, 400, 800, 2000, 3200, 6400)
        panel.press("12K")
        panel.find("12 000")
        self.expected += stages(3, 400, 800, 12000, 3200, 6400)

    def go_and_come_back(self):
        self.panel.process.send_signal(signal.SIGUSR1)
        self.panel.find("No Device Connected")
        self.panel.process.send_signal(signal.SIGUSR1)
        self.panel.find("12 000")

    def change_light(self):
        panel = self.panel
        panel.press("RGB", "Logo", "Color preset 7")
        panel.has_state("Color preset 7", Atspi.StateType.SELECTED)
        self.expected += light(0x04, 0xFF, 1, 0, 0, 1, 229, 22, 22)
        panel.press("Wave")
        self.expected += light(0x04, 0xFF, 4, 1, 0x28, 0)
        panel.press("Underglow")
        panel.set_value("Brightness", 0.5)
        panel.find("50%")
        self.expected += light(0x0A, 0x7F, 1, 0, 0, 1, 22, 229, 22)
        panel.set_value("Hue", 0)
        self.expected += light(0x0A, 0x7F, 1, 0, 0, 1, 229, 22, 22)

    def change_buttons(self):
        panel = self.panel
        panel.press("Buttons", "Forward", "Keyboard Key", "⌃ Ctrl", "⇧ Shift", "A")
        panel.described("Forward", "ctrl+shift+a")
        self.expected += button(0x05, 0x02, 0x02, 0x03, 0x04)
        panel.press("Back", "Profile Switch", "3")
        panel.described("Back", "Profile 3")
        self.expected += button(0x04, 0x07, 0x02, 0x03, 0x03)

    def change_settings(self):
        panel = self.panel
        panel.press("Settings", "High")
        panel.find("High (3 mm)")
        self.expected += [bytes([0x0B, 0x03, 0x00, 0x04, 0x00]), bytes([0x0B, 0x0B, 0x00, 0x04, 0x01, 0x02])]
        panel.press("PL · Polski")
        panel.find("Ustawienia")
        panel.press("Ciemny")
        panel.has_state("Ciemny", Atspi.StateType.CHECKED)
        panel.press("O programie Kelmoth", "Zamknij")
        panel.gone("Zamknij")

    def test_every_setting_reaches_the_mouse(self):
        self.change_dpi()
        if HOST:
            self.go_and_come_back()
        self.change_light()
        self.change_buttons()
        self.change_settings()
        self.check_writes()
        with open(os.path.join(os.environ["XDG_CONFIG_HOME"], "com.kelmoth.app", "defaults.ini"),
                  encoding="utf-8") as defaults:
            kept = defaults.read()
        for value in ("languageMode=1", "appearanceMode=2", "12000", "ctrl+shift+a"):
            self.assertIn(value, kept)


if __name__ == "__main__":
    with Desktop():
        from panel import Atspi, Panel  # connects to the desktop's buses

        unittest.main(argv=sys.argv[:1])
