#!/usr/bin/python3
"""The release programs on Debian's own kernel, whose USB stack has an emulated mouse plugged in.

kernel_test.py DIRECTORY-OF-PROGRAMS DIRECTORY-OF-MOUSE [CASE]...
"""

import json
import os
import random
import sys
import time
import unittest
from collections import namedtuple

from guest import AS_USER, TIMEOUT, Guest

PROGRAMS, MOUSE = sys.argv[1:3]

Product = namedtuple("Product", "id index dpi_transaction pause zones buttons has_battery reports_charging")
V3 = Product(0x0099, 3, 0xff, 10_000, "01 04 0a", "01 02 03 05 04 60 6a 09 0a 0f 0e", False, False)
PRO = V3._replace(id=0x00aa, index=0, dpi_transaction=0x1f, pause=60_000, has_battery=True, reports_charging=True)
X = PRO._replace(id=0x00b9, zones="01", buttons="01 02 03 05 04 60", reports_charging=False)
PRODUCTS = {
    "basilisk-v3": V3,
    "basilisk-v3-x-hyperspeed": X,
    "basilisk-v3-pro-wired": PRO,
    "basilisk-v3-pro-wireless": PRO._replace(id=0x00ab),
    "basilisk-v3-pro": PRO._replace(id=0x00ac),
    "basilisk-v3-x-hyperspeed-2": X._replace(id=0x00ba),
}

# What `kelmothctl set` is told, the requests in their order, and where in the exported settings which value is.
Change = namedtuple("Change", "words requests place value")
CHANGES = (
    Change("dpi 1200", ["0406 0101050104b004b00000"], ("dpiStages", 0, "dpi"), 1200),
    Change("stage 2", ["0406 0102050104b004b00000"], ("currentDPIStage",), 1),
    Change("light scroll_wheel --effect static --color ff0000 --brightness 50",
           ["0f04 01017f", "0f02 010101000001ff0000"], ("rgbSettings", 1, "color"), {"r": 255, "g": 0, "b": 0}),
    Change("button back rightClick", ["020c 00040001010200000000", "028c 000400"], ("buttonMappings", 9),
           {"rightClick": {}}),
    Change("lift-off high", ["0b03 000400", "0b0b 00040102", "0b8b 000400"], ("liftOffLevel",), 2),
)

Transfer = namedtuple("Transfer", "time setup report status")
STALLED, NEVER_COMPLETED = -32, -110


def full_read(product):
    """The requests that ask for every setting but the battery, in their order."""
    return ["0486 01", *(f"{kind} 01{zone}" for zone in product.zones.split() for kind in ("0f82", "0f84")),
            *(f"028c 00{button}00" for button in product.buttons.split()), "0b8b 000400"]


def wait_for(what, condition):
    deadline = time.monotonic() + TIMEOUT
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise AssertionError("never: " + what)
        time.sleep(0.05)
    return result


def plug(name, fault=""):
    """Waits until the kernel and udev are done with it."""
    said = GUEST.mouse(f"plug {name} {fault}")
    assert not said, said
    nodes = f"ls -d /sys/bus/hid/devices/0003:1532:{PRODUCTS[name].id:04X}.*/hidraw/* | wc -l"
    wait_for("four interfaces", lambda: GUEST.run(nodes).out == "4\n")
    GUEST.run("udevadm settle")
    return PRODUCTS[name]


def unplug():
    GUEST.mouse("unplug")
    wait_for("no mouse", lambda: GUEST.run("ls -d /sys/bus/hid/devices/0003:1532:*").status)
    GUEST.run("udevadm settle")


def transfers():
    """What went over the wire since the last time."""
    return [Transfer(int(time), setup, bytes.fromhex(report.strip("-")), int(status))
            for time, setup, report, status in map(str.split, GUEST.mouse("log"))]


class KernelTest(unittest.TestCase):
    def setUp(self):
        unplug()
        GUEST.run("cd /home/user && rm -rf ~/.config .config; udevadm control --reload")
        transfers()
        self.addCleanup(GUEST.mouse, "move off")
        self.addCleanup(GUEST.mouse, "mend")

    def run_ctl(self, arguments, status=0, user=True):
        """Runs kelmothctl, as the user unless told otherwise."""
        outcome = GUEST.run("kelmothctl " + arguments, user)
        self.assertEqual(outcome.status, status, f"{arguments}: {outcome}")
        return outcome

    def exported(self, text=None):
        return json.loads(text or self.run_ctl("export").out)

    def check(self, product, wanted, log=None):
        """That the requests that begin so went to the mouse, each once, in this order, and each had its answer after the pause;
        where the battery is asked for, it is asked once and at any time."""
        seen = []
        log = transfers() if log is None else log
        if log and log[-1].setup[:2] == "21" and log[-1].report[6] == 0x07:
            log.pop()  # the program's end does not wait for the battery
        self.assertEqual(len(log) % 2, 0, log)
        for request, answer in zip(log[::2], log[1::2]):
            kind = request.report[6:8].hex()
            index = f"{product.index:02x}00"
            self.assertEqual((request.setup, answer.setup), (f"21090003{index}5a00", f"a1010003{index}5a00"))
            self.assertEqual((request.status, answer.status), (0, 0))
            self.assertEqual(request.report[1], product.dpi_transaction if kind in ("0406", "0486") else 0x1f, kind)
            self.assertEqual((answer.report[0], answer.report[6:8].hex()), (2, kind))
            self.assertGreaterEqual(answer.time - request.time, product.pause)
            seen.append(f"{kind} {request.report[8:88].hex()}")
        battery = [request[:4] for request in seen if request[:2] == "07"]
        self.assertIn(battery, ([], ["0780", "0784"][:product.has_battery + product.reports_charging]))
        seen = [request for request in seen if request[:2] != "07"]
        begun = [request[:len(beginning)] for request, beginning in zip(seen, wanted)]
        self.assertEqual(begun + seen[len(wanted):], wanted)

    def each_product(self, names):
        for name in names:
            with self.subTest(name):
                product = plug(name)
                self.assertIn(f"0x{product.id:04X}", self.run_ctl("list").out)
                self.check(product, [])
                before = self.run_ctl("read").out
                self.check(product, full_read(product))
                self.run_ctl("export /tmp/factory")
                factory = self.exported(GUEST.run("cat /tmp/factory").out)
                transfers()
                for change in CHANGES:
                    self.run_ctl("set " + change.words)
                    self.check(product, full_read(product) + change.requests)
                changed = self.exported()
                self.assertNotEqual(self.run_ctl("read").out, before)
                for _, _, place, value in CHANGES:
                    *way, last = place
                    holder = factory
                    for step in way:
                        holder = holder[step]
                    self.assertNotEqual(holder[last], value)
                    holder[last] = value
                factory["rgbSettings"][1]["brightness"] = 127 / 255
                self.assertEqual(changed, factory)
                transfers()
                self.run_ctl("import /tmp/factory")
                writes = [report[6:].hex() for _, setup, report, _ in transfers() if setup[0] == "2" and report[7] < 0x80]
                self.assertEqual(sorted(write[:4] for write in writes),
                                 ["020c", "0406", "0406", "0b03", "0b0b", "0f02", "0f04"])  # the stages, then which one
                self.assertEqual(self.run_ctl("read").out, before)
                unplug()

    def test_every_product(self):
        self.each_product(PRODUCTS)

    def test_two_products(self):
        self.each_product(("basilisk-v3", "basilisk-v3-x-hyperspeed"))

    def test_stall(self):
        """A stalled request is another attempt; the mouse that stalls for good is said to give no answer."""
        product = plug("basilisk-v3", "stall 0 1")
        said = self.run_ctl("-v read").err
        self.assertIn("USB SET_REPORT failed: 0x20", said)  # EPIPE
        log = transfers()
        self.assertEqual([log[0].status, log[1].status], [STALLED, 0])
        self.assertEqual(log[0].report, log[1].report)
        self.assertGreaterEqual(log[1].time - log[0].time, 10_000)
        self.assertEqual(len(log), 1 + 2 * len(full_read(product)))
        GUEST.mouse("fault stall 0 -1")
        self.run_ctl("export", status=1)
        requests = [transfer.report for transfer in transfers()]
        for request in set(requests):  # five attempts by each of the two ways
            self.assertEqual(requests.count(request), 10)

    def test_hang(self):
        """What never completes is given up by the kernel after five seconds, and asked again."""
        plug("basilisk-v3-pro", "hang 3 1")
        said = self.run_ctl("-v read").err
        self.assertIn("failed: 0x6E", said)  # ETIMEDOUT
        log = transfers()
        hanging = next(i for i, transfer in enumerate(log) if transfer.status == NEVER_COMPLETED)
        self.assertGreaterEqual(log[hanging + 1].time - log[hanging].time, 5_000_000)
        self.assertEqual(sum(transfer.report == log[hanging - 1].report for transfer in log), 2)

    def test_silence(self):
        """A mouse that takes requests and answers none: ten attempts of each, and an export writes nothing."""
        product = plug("basilisk-v3", "silent 0 -1")
        self.run_ctl("export /tmp/silent", status=1)
        self.assertEqual(GUEST.run("test -e /tmp/silent").status, 1)
        log = transfers()
        self.assertEqual([transfer.setup[:2] for transfer in log], ["21", "a1"] * (len(log) // 2))
        requests = [transfer.report[6:].hex() for transfer in log[::2]]
        self.assertEqual(requests, [request for request in dict.fromkeys(requests) for _ in range(10)])
        self.assertTrue(requests[0].startswith("0486"))
        for answer, request in zip(log[1::2], log[2::2]):
            self.assertGreaterEqual(request.time - answer.time, 10_000)
        self.assertGreaterEqual(min(answer.time - request.time for request, answer in zip(log[::2], log[1::2])),
                                product.pause)

    def test_unplugged_in_transfers(self):
        """At any transfer, and what comes next is like new."""
        for transfer in (0, 1, *random.sample(range(2, 30), 3)):
            with self.subTest(transfer=transfer):
                plug("basilisk-v3", f"unplug {transfer} 1")
                outcome = GUEST.run("kelmothctl export", user=True)
                self.assertIn(outcome.status, (1, 3), outcome)
                self.assertEqual(outcome.out, "")
                self.assertEqual(len(transfers()), transfer + 1)
        product = plug("basilisk-v3")
        self.exported()
        self.check(product, full_read(product))

    def test_unplugged_at_random(self):
        for moment in (random.uniform(0, 2) for _ in range(5)):
            with self.subTest(moment=moment):
                plug("basilisk-v3-pro")
                reading = GUEST.start("kelmothctl export", user=True)
                time.sleep(moment)
                unplug()
                outcome = reading.outcome()
                self.assertIn(outcome.status, (0, 1, 3), outcome)
                self.assertEqual(bool(outcome.out), outcome.status == 0)

    def test_twenty_replugs(self):
        """Twenty times in ten seconds, with the tray program and kelmothctl looking on."""
        with Tray(self) as tray:
            watch = GUEST.start("kelmothctl watch", user=True)
            started = time.monotonic()
            for i in range(20):
                GUEST.mouse("plug " + random.choice(list(PRODUCTS)))
                time.sleep(random.uniform(0, 0.4))
                GUEST.mouse("unplug")
                time.sleep(max(0, started + (i + 1) / 2 - time.monotonic()))
            unplug()
            transfers()
            product = plug("basilisk-v3")
            tray.reads(product)
            self.assertEqual(self.exported()["currentDPIStage"], 0)
            watch.signal("TERM")
            self.assertEqual(watch.outcome().status, 143)
            tray.quit()

    def test_rights(self):
        """The user at the machine may by the rule and not without it, nobody else may, and root may anyway."""
        someone = AS_USER.replace("1000", "1001").replace("/home/user", "/tmp") + "kelmothctl read"
        plug("basilisk-v3")
        self.run_ctl("read")
        self.assertEqual(GUEST.run(someone).status, 4)
        self.assertEqual(GUEST.run("test -r /dev/input/by-id/*-event-mouse", user=True).status, 1)
        unplug()
        GUEST.run("mv /etc/udev/rules.d/70-kelmoth.rules /tmp; udevadm control --reload")
        self.addCleanup(GUEST.run, "mv /tmp/70-kelmoth.rules /etc/udev/rules.d; udevadm control --reload")
        product = plug("basilisk-v3")
        transfers()
        self.run_ctl("read", status=4)
        self.assertIn("70-kelmoth.rules", self.run_ctl("doctor", status=4).out)
        self.assertEqual(transfers(), [])
        self.run_ctl("read", user=False)
        self.check(product, full_read(product))

    def test_pointer(self):
        """The kernel keeps driving it: the same device, which moves while settings are transferred."""
        plug("basilisk-v3-pro")
        devices = "ls /sys/class/input /sys/bus/usb/drivers/usbhid; dmesg | grep -c input:"
        before = GUEST.run(devices).out
        reader = GUEST.start("cat /dev/input/by-id/*-event-mouse")
        GUEST.mouse("move on")
        size = wait_for("a movement", lambda: reader.size("out"))
        for command in ("read", "set lift-off low", "set light logo --brightness 20"):
            self.run_ctl(command)
            self.assertGreater(reader.size("out"), size + 24 * 20, "the pointer stands still")  # 24 bytes an event
            size = reader.size("out")
        self.assertEqual(GUEST.run(devices).out, before)
        self.assertEqual(GUEST.run(f"kill {reader.process}").status, 0, "its device went")

    def test_tray(self):
        """Attach, detach, another model; the mouse is where the program says."""
        with Tray(self) as tray:
            for name in ("basilisk-v3", "basilisk-v3-pro", "basilisk-v3"):
                tray.reads(plug(name))
                unplug()
                tray.says("Razer device disconnected")
            tray.quit()

    def test_quit_during_a_hanging_transfer(self):
        with Tray(self) as tray:
            plug("basilisk-v3-pro", "hang 4 1")
            log = []
            wait_for("a hanging transfer", lambda: log.extend(transfers()) or
                     [transfer for transfer in log if transfer.status == NEVER_COMPLETED])
            self.assertLessEqual(tray.quit(), 5.5)
            self.assertEqual(transfers(), [])

    def test_confinement(self):
        """As far as this kernel's Landlock goes, which is older than that of the machine that tests the rest."""
        with Tray(self) as tray:
            self.assertNotIn("Not confined", tray.program.said())
            status = GUEST.run(f"cat /proc/{tray.program.process}/status").out
            self.assertRegex(status, "NoNewPrivs:\t1\n")
            self.assertRegex(status, "Seccomp:\t2\n")
            tray.quit()
        self.assertIn("Landlock 2", self.run_ctl("doctor", status=3).out)
        outcome = GUEST.run("app_tests --gtest_filter=SandboxTest.*", user=True)
        self.assertEqual(outcome.status, 0, outcome.out)


class Tray:
    """The tray program, as the user's; it has ended when this is left."""

    def __init__(self, test):
        self._test = test

    def __enter__(self):
        # Where no tray is, the panel opens by itself after a while, and asks for the DPI then: have it open now.
        self.program = GUEST.start("kelmoth --show -v", user=True)
        self.says("started as Menu Bar App")
        # It makes its panel beforehand, which takes seconds here and tenths of one elsewhere.
        ticks = f"cut -d' ' -f14,15 /proc/{self.program.process}/stat"
        wait_for("rest", lambda: GUEST.run(f"{{ {ticks}; sleep 1; {ticks}; }} | uniq").out.count("\n") == 1)
        return self

    def __exit__(self, kind, *_):
        if kind:
            self.program.signal("KILL")

    def says(self, line):
        """In what it has said since the last time."""
        wait_for(line, lambda: line in self.program.said())
        self.program.forget()

    def reads(self, product):
        """The whole mouse, and once."""
        log, wanted = transfers(), full_read(product)
        wait_for("the last answer", lambda: log.extend(transfers()) or
                 [transfer for transfer in log if transfer.setup[0] == "a" and transfer.report[6:8] == b"\x0b\x8b"])
        self._test.check(product, wanted, log)

    def quit(self):
        """It ends in order. The seconds that it takes, but for those in which a busy machine had no time for it."""
        waited = GUEST.waited()
        outcome = GUEST.run(f"cut -d' ' -f1 /proc/uptime; kill {self.program.process}; wait {self.program.process}; "
                            "status=$?; cut -d' ' -f1 /proc/uptime; eval '(exit $status)'")
        self._test.assertEqual(outcome.status, 0, self.program.said())
        started, ended = map(float, outcome.out.split())
        print(f"ended after {ended - started:.2f} s", end=" ", flush=True)
        return ended - started - (GUEST.waited() - waited)


SHORT = ("test_two_products", "test_stall", "test_unplugged_in_transfers")

if __name__ == "__main__":
    seed = int(os.environ.get("KELMOTH_SEED", time.time()))
    random.seed(seed)
    print(f"KELMOTH_SEED={seed}")
    cases = sys.argv[3:]
    if cases == ["short"]:
        cases = SHORT
    elif not cases:
        cases = [name for name in unittest.defaultTestLoader.getTestCaseNames(KernelTest) if name != SHORT[0]]
    programs = [os.path.join(PROGRAMS, name) for name in ("kelmothctl", "kelmoth")]
    tests = [os.path.join(MOUSE, name) for name in ("usbip_mouse", "app_tests")]
    started = time.monotonic()
    with Guest(programs + list(filter(os.path.exists, tests))) as GUEST:
        print(f"{GUEST.run('uname -rv').out.strip()}, booted in {time.monotonic() - started:.1f} s")
        suite = unittest.TestSuite(map(KernelTest, cases))
        result = unittest.TextTestRunner(verbosity=2).run(suite)
        sys.exit(not result.wasSuccessful())
