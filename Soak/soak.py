#!/usr/bin/python3
"""soak.py HOST SECONDS SEED: runs the soak on a desktop of its own."""

import os
import subprocess
import sys

sys.path.append(os.path.join(os.path.dirname(__file__), "..", "Testbed"))
from desktop import Desktop  # noqa: E402

with Desktop() as desktop:
    os.environ.setdefault("SOAK_LOG", os.path.join(desktop.home, "log"))
    # The mocked devices lie where the program, which confines itself, may use files: its temporary directory.
    os.environ["TMPDIR"] = os.path.join(os.environ["XDG_RUNTIME_DIR"], "com.kelmoth.app")
    os.mkdir(os.environ["TMPDIR"], 0o700)
    sys.exit(subprocess.run(["umockdev-wrapper", *sys.argv[1:]], check=False).returncode)
