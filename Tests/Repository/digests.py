"""Prints a line for each C++ file named: a digest of everything it is compiled from in build/dev, and its path.

Run in the repository's root after a build. Paths within the checkout do not count: the next one lies elsewhere.
"""

import hashlib
import json
import os
import re
import subprocess
import sys

BUILD = 'build/dev'
root = os.getcwd()


def contents(path, known={}):
    if path not in known:
        with open(os.path.join(BUILD, path), 'rb') as file:
            known[path] = hashlib.sha256(file.read()).hexdigest()
    return known[path]


def inputs():
    """For each object file the files that went into it, in their order, as paths from the build directory."""
    found = {}
    for line in subprocess.run(['ninja', '-C', BUILD, '-t', 'deps'], check=True, stdout=subprocess.PIPE,
                               text=True).stdout.splitlines():
        if line.startswith('    '):
            found[current].append(line.strip())
        elif ': #deps' in line:
            current = line.split(': #deps')[0]
            found[current] = []
    return found


with open(os.path.join(BUILD, 'compile_commands.json'), encoding='utf-8') as file:
    commands = {entry['file']: entry for entry in json.load(file)}
objects = inputs()
for path in sys.argv[1:]:
    entry = commands.get(os.path.join(root, path))
    if entry is None:
        sys.exit(f'{path} is not compiled by the debug build')
    target = re.search(r' -o (\S+)', entry['command'])[1]
    parts = [entry['command'].replace(root, '')] + [contents(name) for name in objects[target]]
    print(hashlib.sha256('\n'.join(parts).encode()).hexdigest(), path)
