"""What an X server shows of the program, and a hand on its mouse."""

import contextlib
from typing import NamedTuple

from Xlib import X, XK, Xatom, Xutil, display, error
from Xlib.ext import xtest
from Xlib.protocol import event

PANEL = 340, 610  # its size


class Area(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2


class Screen:
    def __init__(self):
        self._display = display.Display()
        self._display.set_error_handler(lambda *_: None)  # windows of others may be gone at any time
        screen = self._display.screen()
        self._root = screen.root
        self.width, self.height = screen.width_in_pixels, screen.height_in_pixels

    def _property(self, window, name):
        found = window.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        return list(found.value) if found else []

    def _windows(self, parent=None):
        for window in (parent or self._root).query_tree().children:
            with contextlib.suppress(error.XError):
                if window.get_attributes().map_state == X.IsViewable:
                    if (window.get_wm_class() or [""])[0] == "kelmoth":
                        yield window
                    yield from self._windows(window)

    def _area(self, window):
        size, origin = window.get_geometry(), window.translate_coords(self._root, 0, 0)
        return Area(-origin.x, -origin.y, size.width, size.height)

    def _panel(self):
        # The item and its menu are smaller.
        return next((window for window in self._windows() if window.get_geometry().height > 400), None)

    def panel(self):
        """The area of the panel's window; none while it is hidden."""
        with contextlib.suppress(error.XError):
            window = self._panel()
            return window and self._area(window)

    def panel_is_in_front(self):
        """It has the keyboard, and no managed window lies over it."""
        window = self._panel()
        stack = self._property(self._root, "_NET_CLIENT_LIST_STACKING")
        active = self._property(self._root, "_NET_ACTIVE_WINDOW")
        return bool(window) and stack[-1:] == active == [window.id]

    def panel_state(self):
        """What the window manager makes of it, such as "ABOVE"."""
        atoms = self._property(self._panel(), "_NET_WM_STATE")
        return {self._display.get_atom_name(atom).removeprefix("_NET_WM_STATE_") for atom in atoms} - {"FOCUSED"}

    def close_panel(self):
        """As a button of the window's frame does."""
        self._ask_manager(self._panel(), "_NET_CLOSE_WINDOW", X.CurrentTime, 2)

    def _ask_manager(self, window, name, *data):
        """As a pager does, whose source indication is 2."""
        message = event.ClientMessage(window=window, client_type=self._display.intern_atom(name),
                                      data=(32, [*data, 0, 0, 0]))
        self._root.send_event(message, X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()

    def has_tray(self):
        """Whether a system tray takes items in."""
        return self._display.get_selection_owner(self._display.intern_atom("_NET_SYSTEM_TRAY_S0")) != X.NONE

    def _item(self):
        with contextlib.suppress(error.XError):
            return next((window for window in self._windows() if max(self._area(window)[2:]) < 64), None)

    def item(self):
        """The area of the program's window in a system tray."""
        with contextlib.suppress(error.XError):
            window = self._item()
            return window and self._area(window)

    def destroy_item(self):
        self.close(self._item())

    def click(self, point, button=1):
        self.move(point)
        xtest.fake_input(self._display, X.ButtonPress, button)
        xtest.fake_input(self._display, X.ButtonRelease, button)
        self._display.sync()

    def press_command(self, letter):
        """With the modifier for commands."""
        codes = [self._display.keysym_to_keycode(XK.string_to_keysym(name)) for name in ("Control_L", letter)]
        for kind, code in [*((X.KeyPress, code) for code in codes), *((X.KeyRelease, code) for code in codes)]:
            xtest.fake_input(self._display, kind, code)
        self._display.sync()

    def move(self, point):
        xtest.fake_input(self._display, X.MotionNotify, x=point[0], y=point[1])
        self._display.sync()

    def paint_ground(self, color):
        """The colour of what no window covers, 0xRRGGBB."""
        self._root.change_attributes(background_pixel=color)
        self._root.clear_area()
        picture = self._root.create_pixmap(1, 1, self._display.screen().root_depth)  # for compositors
        picture.fill_rectangle(picture.create_gc(foreground=color), 0, 0, 1, 1)
        self._root.change_property(self._display.intern_atom("_XROOTPMAP_ID"), Xatom.PIXMAP, 32, [picture.id])

    def picture(self, area):
        """What is seen there: the samples of all pixels in rows, blue, green, red and an unused one of each."""
        return bytes(self._root.get_image(*area, X.ZPixmap, 0xFFFFFFFF).data)

    def open_window(self, area, is_managed=True):
        """A window of another program, which takes the focus unless it is none of the window manager's business."""
        window = self._root.create_window(*area, 0, X.CopyFromParent, override_redirect=not is_managed)
        window.set_wm_normal_hints(flags=Xutil.USPosition, x=area.x, y=area.y)
        window.map()
        self._ask_manager(window, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime)
        return window

    def close(self, window):
        window.destroy()
        self._display.sync()
