"""A desktop whose display is sway, which needs no screen; what it shows, and a hand on its mouse."""

import itertools
import json
import os
import socket
import struct
import subprocess
import time

from desktop import Desktop
from screen import PANEL, Area

CONFIGURATION = """xwayland {}
output * resolution 1280x1024 background #000000 solid_color
focus_follows_mouse no
exec echo "$WAYLAND_DISPLAY" "$DISPLAY" >"/dev/fd/$READY"
"""


def as_user():
    """sway refuses to run as root: there it becomes a user, who to everybody else is still root."""
    return [] if os.geteuid() else ["unshare", "--user", "--map-user=1000", "--map-group=1000", "--"]


class SwayDesktop(Desktop):
    def __init__(self, has_x):
        super().__init__()
        self._has_x = has_x

    def start_screen(self):
        os.environ.pop("DISPLAY", None)
        os.environ.update(WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1", WLR_RENDERER="pixman",
                          SWAYSOCK=os.path.join(self.home, "sway"))
        configuration = os.path.join(self.home, "configuration")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION.format("enable" if self._has_x else "disable"))
        names = self.start_server(["env", "READY={fd}", *as_user(), "sway", "--config", configuration])[0]
        os.environ.update(zip(["WAYLAND_DISPLAY", "DISPLAY"], names.split()))


class Pointer:
    """A mouse at the compositor, which has no other. No package of the distribution's moves one: these are the few
    requests of the protocol for virtual pointers that it takes."""

    BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}  # as the kernel numbers them
    DISPLAY, REGISTRY = 1, 2

    def __init__(self, size):
        self._size, self._ids = size, itertools.count(self.REGISTRY)  # none may be left out
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"]))
        self._request(self.DISPLAY, 1, next(self._ids))
        interface = b"zwlr_virtual_pointer_manager_v1\0"
        name, = (struct.unpack_from("=I", body)[0] for body in self._answers(self.REGISTRY) if interface in body)
        manager, self._pointer = next(self._ids), next(self._ids)
        self._request(self.REGISTRY, 0, name, interface, 1, manager)
        self._request(manager, 0, 0, self._pointer)

    def _request(self, receiver, opcode, *arguments):
        body = b"".join(struct.pack("=I", each) if isinstance(each, int)
                        else struct.pack("=I", len(each)) + each + bytes(-len(each) % 4) for each in arguments)
        self._socket.sendall(struct.pack("=II", receiver, len(body) + 8 << 16 | opcode) + body)

    def _answers(self, sender=None):
        """What an object has said by the time that everything asked for is done."""
        callback, bodies = next(self._ids), []
        self._request(self.DISPLAY, 0, callback)
        while True:
            source, word = struct.unpack("=II", self._socket.recv(8, socket.MSG_WAITALL))
            body = self._socket.recv((word >> 16) - 8, socket.MSG_WAITALL)
            if source == callback:
                return bodies
            bodies += [body] if source == sender else []

    def _act(self, opcode, *arguments):
        self._request(self._pointer, opcode, time.monotonic_ns() // 1_000_000 & 0xFFFFFFFF, *arguments)
        self._request(self._pointer, 4)  # a frame, which is whole
        self._answers()

    def move(self, point):
        self._act(1, *point, *self._size)

    def click(self, point, button=1):
        self.move(point)
        self._act(2, self.BUTTONS[button], 1)
        self._act(2, self.BUTTONS[button], 0)


class SwayScreen(Pointer):
    width, height = 1280, 1024

    def __init__(self):
        super().__init__((self.width, self.height))

    def _panel(self):
        with socket.socket(socket.AF_UNIX) as sway:  # swaymsg has a timeout of 3 s
            sway.connect(os.environ["SWAYSOCK"])
            sway.sendall(b"i3-ipc" + struct.pack("=II", 0, 4))  # for the tree
            size, _ = struct.unpack_from("=II", sway.recv(14, socket.MSG_WAITALL), 6)
            pending = [json.loads(sway.recv(size, socket.MSG_WAITALL))]
        for node in pending:
            if node.get("app_id") == "com.kelmoth.app" or node.get("window_properties", {}).get("class") == "kelmoth":
                return node
            pending += node["nodes"] + node["floating_nodes"]
        return None

    def panel(self):
        """The area of the panel; none while it is hidden. A frame may be around it, or a shadow."""
        if node := self._panel():
            frame, inner = node["rect"], node["window_rect"]
            return Area(frame["x"] + inner["x"] + (inner["width"] - PANEL[0]) // 2,
                        frame["y"] + frame["height"] - inner["height"] + (inner["height"] - PANEL[1]) // 2, *PANEL)
        return None

    def panel_is_in_front(self):
        node = self._panel()
        return bool(node) and node["focused"]

    def picture(self, area):
        """What is seen there: the samples of all pixels in rows, blue, green, red and an unused one of each."""
        command = ["grim", "-t", "ppm", "-g", "{},{} {}x{}".format(*area), "-"]
        samples = subprocess.run(command, check=True, capture_output=True).stdout[-3 * area.width * area.height:]
        picture = bytearray(4 * area.width * area.height)
        picture[0::4], picture[1::4], picture[2::4] = samples[2::3], samples[1::3], samples[0::3]
        return bytes(picture)
