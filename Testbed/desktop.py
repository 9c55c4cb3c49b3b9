"""A desktop of a test's own: X server, window manager, session bus and accessibility bus, in a home of its own, with
the fonts that were built for the program that is its first argument, of the family that KELMOTH_FONT names.

Nothing of the user's is touched, and everything that is started ends with the `with` statement.
"""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile


class Desktop:
    """Entered, the environment of this process is that of the desktop: set before the accessibility library is
    asked for anything, since it connects once for a process."""

    def __init__(self, size="1280x1024"):
        self._size = size

    def __enter__(self):
        signal.signal(signal.SIGTERM, signal.default_int_handler)  # or the children would outlive an ended test
        self._children = []
        self.home = tempfile.mkdtemp(prefix="kelmoth-desktop-")
        runtime = os.path.join(self.home, "run")
        os.mkdir(runtime, 0o700)
        for name in [name for name in os.environ if re.match("XDG_|WAYLAND|QT_|GTK_|LC_|LANG|FONTCONFIG", name)]:
            del os.environ[name]
        fonts = os.path.join(os.path.dirname(sys.argv[1]), "../fonts", os.environ.get("KELMOTH_FONT", "DejaVu Sans"))
        # The confined program may read the whole of that path.
        os.environ.update(FONTCONFIG_PATH=fonts, FONTCONFIG_FILE=os.path.join(fonts, "fonts.conf"))
        os.environ.update(HOME=self.home, XDG_RUNTIME_DIR=runtime, LC_ALL="C.UTF-8", LANGUAGE="en",
                          XDG_CONFIG_HOME=os.path.join(self.home, "config"),
                          QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        try:
            self.start_screen()
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.start_bus()[0]
            # The first question on a fresh bus starts the accessibility bus; a program's would be answered too late.
            subprocess.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                            "--method", "org.a11y.Bus.GetAddress"], check=True, stdout=subprocess.DEVNULL)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for child in reversed(self._children):
            child.terminate()
            try:
                child.wait(10)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()
        shutil.rmtree(self.home, ignore_errors=True)

    def start(self, command, **options):
        """A process that ends with the desktop, or before."""
        child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self._children.append(child)
        return child

    def start_screen(self):
        """What shows windows and manages them, and the names by which programs find it."""
        os.environ["DISPLAY"] = self.start_display()[0]
        self.start(["openbox", "--sm-disable"])

    def start_display(self):
        """The name and the process of another X server."""
        number, server = self.start_server(
            ["Xvfb", "-displayfd", "{fd}", "-screen", "0", self._size + "x24", "-nolisten", "tcp", "-noreset"])
        return ":" + number, server

    def start_bus(self):
        """The address and the process of another session bus."""
        return self.start_server(["dbus-daemon", "--session", "--nofork", "--print-address={fd}"])

    def start_server(self, command):
        """Starts a server; gives the line that it writes to {fd} once it is ready, and its process."""
        reader, writer = os.pipe()
        server = self.start([word.format(fd=writer) for word in command], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as ready:
            line = ready.readline().strip()
        if not line:
            raise RuntimeError(command[0] + " did not start")
        return line, server
