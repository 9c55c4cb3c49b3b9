"""Runs clang-tidy over the C++ files named that changed since it found nothing in them.

    tidy.py CLANG-TIDY CACHE FILE...

Run in the repository's root after a debug build. Most of what clang-tidy does for one file goes into the headers of
Qt and of the standard library, which the next file includes again. So files that are compiled alike are put one
after the other into units of at most UNIT_LINES lines and looked at together; a finding is told with the place in
the file it was made in. (Including the files in the unit would not do: path analysis looks at the main file only.)

A file in which nothing was found is not looked at again until something changes that the finding depends on: the
file, the project's headers it includes, how it is compiled, the rules, the linter, the headers installed. CACHE
holds an empty file named by a digest of those for each file found clean.

Prints the findings; exits 1 when there are any.
"""

import concurrent.futures
import hashlib
import itertools
import json
import os
import re
import shlex
import shutil
import subprocess
import sys

BUILD = 'build/dev'
UNIT_LINES = 3000
INCLUDE = re.compile(r'\s*#\s*include\s*(<[^>]+>|"[^"]+")')
CONDITION = re.compile(r'\s*#\s*(if|endif)')
FINDING = re.compile(r'^(?P<unit>\S+/unit\.cpp):(?P<line>\d+):(?P<rest>.*)$')
# The counts of what was suppressed in other people's headers are no news.
NOISE = re.compile(r'^(\d+ warnings? (and \d+ errors? )?generated|Suppressed )')

root = os.getcwd()


def text_of(path, known={}):
    if path not in known:
        with open(path, encoding='utf-8') as file:
            known[path] = file.read()
    return known[path]


def compile_arguments():
    """For each source file how it is compiled: the arguments without the file and what is written, and the target."""
    found = {}
    with open(f'{BUILD}/compile_commands.json', encoding='utf-8') as file:
        entries = json.load(file)
    for entry in entries:
        # A launcher and the compiler come before the first option.
        arguments = list(itertools.dropwhile(lambda word: not word.startswith('-'), shlex.split(entry['command'])))
        output = arguments[arguments.index('-o') + 1]
        del arguments[arguments.index('-o'):arguments.index('-o') + 2]
        arguments.remove('-c')
        arguments.remove(entry['file'])
        target = re.match(r'.*?\.dir(?=/)', output)[0]
        sources = [entry['file']]
        if re.fullmatch(r'unity_\d+_cxx\.cxx', os.path.basename(entry['file'])):
            sources = re.findall(r'^#include "(.*)"$', text_of(entry['file']), re.MULTILINE)
        for source in sources:
            found[os.path.relpath(source, root)] = (target, tuple(arguments))
    return found


def own_headers(path, found):
    """Adds to the set found the project's headers that the file includes, at any depth."""
    for name in re.findall(r'^\s*#\s*include\s*"([^"]+)"', text_of(path), re.MULTILINE):
        if name not in found and os.path.isfile(name):
            found.add(name)
            own_headers(name, found)
    return found


def rules_for(path):
    """The file of rules nearest to the source file."""
    directory = os.path.dirname(path)
    while directory and not os.path.isfile(f'{directory}/.clang-tidy'):
        directory = os.path.dirname(directory)
    return os.path.join(directory, '.clang-tidy')


def installed_headers():
    """What tells one set of installed headers from another; nothing where packages are not dpkg's."""
    if not shutil.which('dpkg-query'):
        return ''
    return subprocess.run(['dpkg-query', '-W', '*-dev', 'qcoro*', 'libgtest*', 'libgmock*'], check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout


def digest(*parts):
    return hashlib.sha256('\0'.join(parts).encode()).hexdigest()


class Unit:
    """Files that are looked at as one, and where each of its lines came from."""

    def __init__(self, number, arguments, rules):
        self.directory = f'{BUILD}/lint/{number}'
        self.path = f'{self.directory}/unit.cpp'
        self.arguments = arguments
        self.rules = rules
        self.files = []
        self.lines = []
        self.origins = []
        self.included = {}

    def add(self, path):
        self.files.append(path)
        depth = 0
        for number, line in enumerate(text_of(path).splitlines(), start=1):
            if condition := CONDITION.match(line):
                depth += 1 if condition[1] == 'if' else -1
            # What an earlier file of the unit included is there already.
            if depth == 0 and (include := INCLUDE.match(line)):
                if self.included.setdefault(include[1], path) != path:
                    line = ''
            self.lines.append(line)
            self.origins.append((path, number))

    def write(self):
        os.makedirs(self.directory)
        with open(self.path, 'w', encoding='utf-8') as file:
            file.write('\n'.join(self.lines) + '\n')
        # Rules are looked for from the file upwards, and a folder's own build on those of the root.
        if os.path.dirname(self.rules):
            shutil.copyfile(self.rules, f'{self.directory}/.clang-tidy')

    def look(self, clang_tidy):
        """The findings as they are to be read; an empty text when there are none."""
        # What one file calls something hides nothing from the next.
        arguments = [*self.arguments, '-Wno-unknown-warning-option', '-Wno-shadow']
        run = subprocess.run([clang_tidy, '--quiet', self.path, '--', *arguments],
                             check=False, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             text=True)
        if run.returncode == 0:
            return ''
        findings = []
        for line in run.stdout.splitlines():
            if place := FINDING.match(line):
                path, number = self.origins[int(place['line']) - 1]
                line = f'{path}:{number}:{place["rest"]}'
            if not NOISE.match(line):
                findings.append(line)
        return '\n'.join(findings) or f'clang-tidy failed in one of {" ".join(self.files)}'


def main():
    clang_tidy, cache, *paths = sys.argv[1:]
    version = subprocess.run([clang_tidy, '--version'], check=True, stdout=subprocess.PIPE, text=True).stdout
    headers = installed_headers()
    compiled = compile_arguments()

    stamps = {}
    groups = {}
    for path in paths:
        if path not in compiled:
            sys.exit(f'{path} is not compiled by the debug build')
        rules = rules_for(path)
        sources = [path, *sorted(own_headers(path, set()))]
        # The next checkout may lie elsewhere.
        flags = ' '.join(compiled[path][1]).replace(root, '')
        stamps[path] = os.path.join(cache, digest(version, headers, text_of(__file__), text_of('.clang-tidy'),
                                                  text_of(rules), flags, *map(text_of, sources)))
        if os.path.exists(stamps[path]):
            os.utime(stamps[path])
        else:
            groups.setdefault((*compiled[path], rules), []).append(path)

    shutil.rmtree(f'{BUILD}/lint', ignore_errors=True)
    units = []
    for (_, arguments, rules), group in groups.items():
        unit = None
        for path in group:
            if unit is None or len(unit.lines) + text_of(path).count('\n') > UNIT_LINES:
                unit = Unit(len(units), arguments, rules)
                units.append(unit)
            unit.add(path)

    failed = False
    units.sort(key=lambda unit: len(unit.lines), reverse=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        def look(unit):
            unit.write()
            return unit, unit.look(clang_tidy)

        for done in concurrent.futures.as_completed([pool.submit(look, unit) for unit in units]):
            unit, findings = done.result()
            if findings:
                failed = True
                print(findings, file=sys.stderr, flush=True)
            else:
                for path in unit.files:
                    open(stamps[path], 'w', encoding='utf-8').close()
    sys.exit(failed)


if __name__ == '__main__':
    main()
