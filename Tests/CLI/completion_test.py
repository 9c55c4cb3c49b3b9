"""Completion in real shells: completion_test.py SHELL PROGRAM COMPLETIONS. Each shell runs on a terminal of its own."""

import os
import pty
import select
import shlex
import sys
import tempfile
import time

shell, program, completions = sys.argv[1:]
TIMEOUT = 60  # seconds

START = {
    "bash": ["bash", "--norc", "-i"],
    "zsh": ["zsh", "-f", "-i"],
    "fish": ["fish", "--no-config", "-i"],
}
LOAD = {
    "bash": f"source {shlex.quote(completions)}/kelmothctl.bash",
    "zsh": f"fpath=({shlex.quote(completions)} $fpath); autoload -Uz compinit; compinit -u -D",
    "fish": f"source {shlex.quote(completions)}/kelmothctl.fish",
}
# What is typed behind the program's name, and the words that the program gets.
CASES = [
    ("set button back k\tctrl+z", ["set", "button", "back", "key:ctrl+z"]),
    ("--product 0x009\tlist", ["--product", "0x0099", "list"]),
    ("--product 0x00aa se\tlig\tlo\t--ef\twav\t", ["--product", "0x00aa", "set", "light", "logo", "--effect", "wave"]),
    ("set button dpi-u\tdpi-stage:\t4", ["set", "button", "dpi-up", "dpi-stage:4"]),
    ("get li\tg\tunder\t", ["get", "light", "underglow"]),
    ("--simulate unknown,basilisk-v3-x-h\t read", ["--simulate", "unknown,basilisk-v3-x-hyperspeed", "read"]),
    ("export on\t", ["export", "one file"]),
    ("help res\t", ["help", "reset"]),
]


def main():
    home = tempfile.mkdtemp()
    seen = os.path.join(home, "seen")
    # Stands for the program: completes as it does, and else only notes what it was told.
    stand_in = os.path.join(home, "kelmothctl")
    with open(stand_in, "w") as script:
        script.write(f"""#!/bin/sh
[ "$1" = complete ] && exec {shlex.quote(program)} "$@"
printf '%s\\n' "$@" >{seen}.new && mv {seen}.new {seen}
""")
    os.chmod(stand_in, 0o755)
    open(os.path.join(home, "one file"), "w").close()

    child, terminal = pty.fork()
    if child == 0:
        os.chdir(home)
        environment = {"HOME": home, "TERM": "xterm", "PATH": f"{home}:/usr/bin:/bin", "LC_ALL": "C.UTF-8"}
        os.execvpe(START[shell][0], START[shell], environment)

    def wait_for_words(what):
        output = b""
        deadline = time.monotonic() + TIMEOUT
        while not os.path.exists(seen):
            if time.monotonic() > deadline:
                sys.exit(f"{shell}: nothing came of {what!r}:\n{output.decode(errors='replace')}")
            if select.select([terminal], [], [], 0.05)[0]:
                output += os.read(terminal, 65536)
        with open(seen) as file:
            words = file.read().splitlines()
        os.unlink(seen)
        return words

    os.write(terminal, f"{LOAD[shell]}; kelmothctl ready\n".encode())
    wait_for_words("the start")
    faults = 0
    for typed, expected in CASES:
        os.write(terminal, f"kelmothctl {typed}\n".encode())
        words = wait_for_words(typed)
        if words != expected:
            print(f"{shell}: {typed!r} gives {words}, not {expected}")
            faults += 1
    os.close(terminal)
    os.waitpid(child, 0)
    sys.exit(1 if faults else 0)


main()
