"""A machine of its own: Debian's kernel in an emulator, with the few programs of the distribution that stand between
it and ours, and an emulated mouse."""

import glob
import os
import re
import shutil
import socket
import subprocess
import tempfile
from collections import namedtuple

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
KERNEL = os.path.join(ROOT, "build/kernel")  # as script/bootstrap unpacks it
MODULES = ("kernel/drivers/usb/common", "kernel/drivers/usb/core", "kernel/drivers/usb/usbip", "kernel/drivers/hid",
           "kernel/drivers/input/evdev.ko*")
QT = "/usr/lib/*/qt6/"
FILES = ("/bin/busybox", "/bin/kmod", "/bin/udevadm", "/sbin/modprobe", "/lib/systemd/systemd-udevd",
         "/lib/udev/rules.d", "/usr/bin/setpriv", "/etc/group", "/etc/fonts", "/etc/ld.so.c*",
         "/usr/share/fontconfig/conf.avail", "/usr/share/fonts/truetype/dejavu",
         QT + "plugins/platforms/libqoffscreen.so", QT + "plugins/iconengines", QT + "plugins/imageformats",
         QT + "qml/QtQml", QT + "qml/QtQuick")


AS_USER = ("/usr/bin/setpriv --reuid 1000 --regid 1000 --clear-groups env HOME=/home/user "
           "XDG_RUNTIME_DIR=/run/user/1000 QT_QPA_PLATFORM=offscreen ")
TIMEOUT = 120  # seconds, for a boot or a command on a busy machine

Outcome = namedtuple("Outcome", "status out err")


class Image:
    """The guest's file system, in the making."""

    def __init__(self, root):
        self._root = root
        for directory in ("usr/bin", "usr/sbin", "usr/lib", "usr/lib64", "proc", "sys", "dev", "run", "tmp", "root",
                          "home/user", "etc/udev/rules.d"):
            os.makedirs(os.path.join(root, directory))
        for name in ("bin", "sbin", "lib", "lib64"):
            os.symlink("usr/" + name, os.path.join(root, name))

    def path(self, name):
        """Of a file in the guest."""
        return os.path.join(self._root, name.lstrip("/"))

    def write(self, name, text, mode=0o644):
        with open(os.open(self.path(name), os.O_CREAT | os.O_WRONLY, mode), "w", encoding="utf-8") as file:
            file.write(text)

    def add(self, source, name=None):
        """A file or a whole directory, under the same name where no other is given."""
        target = self.path(name or source)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        if os.path.isdir(source):
            shutil.copytree(source, target, symlinks=True, dirs_exist_ok=True)
        elif not os.path.exists(target):
            shutil.copy(source, target)

    def add_libraries(self):
        """Those of all that is in it."""
        binaries = [os.path.join(directory, name) for directory, _, names in os.walk(self._root) for name in names
                    if ".so" in name or "/bin" in directory or "/systemd" in directory]
        said = subprocess.run(["ldd", *binaries], capture_output=True, text=True, check=False).stdout
        for library in sorted(set(re.findall(r"(/\S+) \(0x", said))):
            self.add(library)

    def packed(self, target):
        names = subprocess.run(["find", ".", "-print0"], cwd=self._root, stdout=subprocess.PIPE, check=True).stdout
        with open(target, "wb") as file:
            subprocess.run(["busybox", "cpio", "-0", "-o", "-H", "newc", "-R", "0:0"], cwd=self._root, input=names,
                           stdout=file, stderr=subprocess.DEVNULL, check=True)


class Port:
    """A serial port of the guest."""

    def __init__(self, path):
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.settimeout(TIMEOUT)
        self._listener.bind(path)
        self._listener.listen()
        self.path = path

    def connect(self):
        """To the emulator, which has been started."""
        with self._listener:
            connection, _ = self._listener.accept()
        connection.settimeout(TIMEOUT)
        self._stream = connection.makefile("rwb")

    def say(self, line):
        self._stream.write(line.encode() + b"\n")
        self._stream.flush()

    def line(self):
        line = self._stream.readline()
        if not line:
            raise EOFError("the guest is gone")
        return line.decode().rstrip("\n")

    def read(self, size):
        return self._stream.read(size).decode()


class Guest:
    """Booted when entered, gone when left."""

    def __init__(self, programs):
        self._programs = programs

    def __enter__(self):
        self._directory = tempfile.mkdtemp(prefix="kelmoth-kernel-")
        self._console = os.path.join(self._directory, "console")
        self._machine = None
        self._background = 0
        try:
            self._boot()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self._machine:
            self._machine.kill()
            self._machine.wait()
        shutil.rmtree(self._directory)

    def console(self):
        """What the kernel had to say."""
        with open(self._console, encoding="utf-8", errors="replace") as file:
            return file.read()

    def waited(self):
        """The seconds for which its processors had to wait for one of this machine's, so far."""
        delays = 0
        for path in glob.glob(f"/proc/{self._machine.pid}/task/*/schedstat"):
            with open(path, encoding="ascii") as file:
                delays += int(file.read().split()[1])
        return delays / 1e9

    def run(self, command, user=False):
        """A line of shell: its status, stdout and stderr. With `user`, a program and its arguments, run as the user
        who sits at the machine; else as root."""
        self._shell.say(AS_USER + command if user else command)
        status, *lengths = map(int, self._shell.line().split())
        return Outcome(status, *map(self._shell.read, lengths))

    def start(self, command, user=False):
        """As `run`, but not waited for: what gives the outcome once it has ended."""
        self._background += 1
        name = f"/tmp/{self._background}."
        process = self.run(f"{AS_USER if user else ''}{command} >{name}out 2>>{name}err & echo $!").out.strip()
        return Background(self, process, name)

    def mouse(self, command=None):
        """Has the emulated mouse do something (see usbip_mouse.cpp), and gives its answer's lines."""
        if command:
            self._mouse.say(command)
        lines = []
        while (line := self._mouse.line()) != ".":
            lines.append(line)
        return lines

    def _boot(self):
        kernel = glob.glob(os.path.join(KERNEL, "boot/vmlinuz-*"))[0]
        version = os.path.basename(kernel).partition("-")[2]
        initrd = os.path.join(self._directory, "initrd")
        self._image(version).packed(initrd)
        ports = [Port(os.path.join(self._directory, name)) for name in ("shell", "mouse")]
        self._shell, self._mouse = ports
        self._machine = subprocess.Popen(
            ["qemu-system-x86_64", "-accel", "tcg", "-smp", "2", "-m", "1024", "-nodefaults", "-display", "none",
             "-no-reboot", "-kernel", kernel, "-initrd", initrd,
             "-append", "console=ttyS0 quiet panic=-1", "-serial", "file:" + self._console,
             *(word for port in ports for word in ("-serial", "unix:" + port.path))], stdin=subprocess.DEVNULL)
        try:
            for port in ports:
                port.connect()
            self._shell.line()
            self.mouse()
        except (EOFError, TimeoutError):
            print(self.console())
            raise

    def _image(self, version):
        root = os.path.join(self._directory, "root")
        image = Image(root)
        modules = "lib/modules/" + version
        for pattern in (*MODULES, "modules.*"):
            for found in glob.glob(os.path.join(KERNEL, "**", modules, pattern), recursive=True):
                image.add(found, found[found.index(modules):])
        subprocess.run(["depmod", "-b", os.path.join(root, "usr"), version], check=True)
        for pattern in FILES:
            for found in glob.glob(pattern):
                image.add(found)
        for program in self._programs:
            image.add(program, "/usr/bin/" + os.path.basename(program))
        image.add(os.path.join(ROOT, "Resources/70-kelmoth.rules"), "/etc/udev/rules.d/70-kelmoth.rules")
        image.write("/etc/passwd", "root:x:0:0::/root:/bin/sh\nuser:x:1000:1000::/home/user:/bin/sh\n")
        image.add(os.path.join(os.path.dirname(__file__), "init"), "/init")
        image.add_libraries()
        return image


class Background:
    """A program that runs in the guest. Its standard error so far, and its outcome once it has ended."""

    def __init__(self, guest, process, name):
        self._guest, self.process, self._name = guest, process, name

    def size(self, stream):
        """In bytes, of what it has written to "out" or "err"."""
        return int(self._guest.run(f"stat -c %s {self._name}{stream}").out)

    def said(self):
        return self._guest.run(f"cat {self._name}err").out

    def forget(self):
        """What it has said so far."""
        self._guest.run(f": >{self._name}err")

    def signal(self, name):
        self._guest.run(f"kill -{name} {self.process}")

    def outcome(self):
        status = self._guest.run(f"wait {self.process}").status
        return Outcome(status, self._guest.run(f"cat {self._name}out").out, self.said())
