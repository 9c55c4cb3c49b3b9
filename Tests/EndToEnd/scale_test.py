#!/usr/bin/python3
"""The panel's pixels on an X server, at every scale that desktops compute from a screen's resolution.

scale_test.py PROGRAM
"""

import os
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../Testbed"))
from desktop import Desktop  # noqa: E402

PROGRAM = sys.argv[1]
GROUND = 0xC040C0  # nothing of the panel looks like it
CORNER = 12


class Picture:
    """What is seen of an area."""

    def __init__(self, area):
        self.width, self.height = area.width, area.height
        self.data = SCREEN.picture(area)

    def __eq__(self, other):
        return self.data == other.data

    def blacks(self):
        """How many pixels are darker than the text."""
        table = bytes(int(value < 12) for value in range(256))
        planes = [int.from_bytes(self.data[channel::4].translate(table), "big") for channel in range(3)]
        return (planes[0] & planes[1] & planes[2]).bit_count()

    def holes(self):
        """How many pixels show what lies behind."""
        ground = GROUND.to_bytes(3, "little")
        return sum(self.data[i:i + 3] == ground for i in range(0, len(self.data), 4))

    def rows(self):
        """Of each pixel: True for the ground, else its darkest sample. Without rows and columns of ground alone."""
        ground = GROUND.to_bytes(3, "little")
        pixels = [self.data[i:i + 3] == ground or min(self.data[i:i + 3]) for i in range(0, len(self.data), 4)]
        rows = [pixels[i:i + self.width] for i in range(0, len(pixels), self.width)]
        for _ in range(2):
            rows = list(zip(*[row for row in rows if any(pixel is not True for pixel in row)]))
        return rows

    def corners(self, size):
        rows = self.rows()
        for lines in (rows, rows[::-1]):
            for step in (1, -1):
                yield [row[::step][:size] for row in lines[:size]]


class ScaleTest(unittest.TestCase):
    def whole(self, area, is_inside=False):
        """What is seen there once nothing moves and no gap is left; inside the panel none to what lies behind."""
        last, since = Picture(area), time.monotonic()

        def look():
            nonlocal last, since
            picture = Picture(area)
            if picture != last:
                last, since = picture, time.monotonic()
            return time.monotonic() - since > 0.4 and not last.blacks() and not (is_inside and last.holes())
        wait_for("the panel to be drawn without gaps", look)
        return last

    def check(self, program, scale):
        program.find("Stage 1", Atspi.Role.LABEL)  # the mouse has been read
        area = wait_for("the panel", SCREEN.panel)
        size = round(CORNER * scale)
        inside = Area(area.x + size, area.y + size, area.width - 2 * size, area.height - 2 * size)
        for page in ("RGB", "DPI"):
            SCREEN.move(inside.centre)
            program.press(page)
            SCREEN.move((area.x + area.width // 3, area.y + area.height // 2))
            program.has_state(page, Atspi.StateType.SELECTED)
            plain = self.whole(area)
        corners = list(plain.corners(size))
        for corner in corners:
            self.assertIs(corner[0][0], True)
            self.assertEqual([[pixel is True for pixel in row] for row in corner],
                             [[pixel is True for pixel in row] for row in corners[0]])
            self.assertGreater(min(pixel for row in corner for pixel in row if pixel is not True), 180)
        compositor = DESKTOP.start(["picom", "--config", "/dev/null", "--backend", "xrender"])
        try:
            wait_for("the shadow", lambda: SCREEN.panel().width > area.width)
            for page in ("RGB", "DPI"):
                program.press(page)
                program.has_state(page, Atspi.StateType.SELECTED)
                self.whole(area)
                self.whole(inside, True)
        finally:
            compositor.kill()
        wait_for("the shadow to go", lambda: SCREEN.panel() == area)
        self.whole(area)

    def test(self):
        for scale in (1, 1.02, 1.0417, 1.06, 1.1, 1.146, 1.25, 1.33, 1.5, 1.75, 2):
            with self.subTest(scale):
                program = Panel([PROGRAM, "--show", "--simulate", "basilisk-v3-pro-wired"],
                                {**os.environ, "QT_SCALE_FACTOR": str(scale)})
                try:
                    self.check(program, scale)
                finally:
                    program.quit()


if __name__ == "__main__":
    with Desktop("1280x1400") as DESKTOP:
        import os

        from panel import Atspi, Panel, wait_for
        from screen import Area, Screen

        SCREEN = Screen()
        SCREEN.paint_ground(GROUND)
        DESKTOP.start(["trayer", "--edge", "bottom", "--align", "right"])
        wait_for("the tray", SCREEN.has_tray)
        unittest.main(argv=sys.argv[:1])
