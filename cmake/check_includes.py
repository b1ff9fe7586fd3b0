#!/usr/bin/env python3
"""Checks that each source folder includes only the folders it may.

Library floors, from the bottom: include/ (public API), book/ (strings,
addresses, the failure frame, memory and I/O helpers), formula/, then the
two back ends, biff/ (with officeart/ below it) and ooxml/ (over zip/ and
its own lmx/, binding/ and package/ rooms), which never include each other.
The module, the host and the tool reach the library only through include/.
The tool may also include the module's own headers: both read separated
text, and the module's reader is the one reader (module/csv_fields.h,
which needs neither the host nor the library), so the tool takes it from
there rather than keeping a second one.
Usage: check_includes.py SOURCE_DIR; prints every include that breaks the
rule and exits 1 if there is one.
"""
import os
import re
import sys

LIBRARY = {
    'include': {'include'},
    'book': {'include', 'book'},
    'formula': {'include', 'book', 'formula'},
    'officeart': {'include', 'book', 'officeart'},
    'biff': {'include', 'book', 'formula', 'officeart', 'biff'},
    'zip': {'include', 'book', 'zip'},
    'ooxml/lmx': {'include', 'book', 'ooxml/lmx'},
    'ooxml/binding': {'include', 'book', 'ooxml/lmx', 'ooxml/binding'},
    'ooxml/package': {'include', 'book', 'zip', 'ooxml/lmx', 'ooxml/binding', 'ooxml/package'},
    'ooxml': {'include', 'book', 'formula', 'officeart', 'zip', 'ooxml/lmx', 'ooxml/binding',
              'ooxml/package', 'ooxml'},
    'module': {'include', 'module'},
    'host': {'include', 'host'},
    'tools': {'include', 'module', 'tools'},
}
ANY_LIBRARY = set(LIBRARY) | {'tests/support'}
# Tests, fuzz targets, benchmarks and examples may use whatever they test,
# and the shared test support; tests of one folder not another's fakes.
OTHERS = {
    'fuzz': ANY_LIBRARY | {'fuzz'},
    'bench': ANY_LIBRARY | {'bench'},
    'examples': {'include', 'examples'},
}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def room(path):
    """The folder a repository path belongs to, or None outside the rules."""
    parts = path.split('/')
    if parts[0] == 'ooxml' and len(parts) > 2 and parts[1] in ('lmx', 'binding', 'package'):
        return 'ooxml/' + parts[1]
    if parts[0] == 'tests':
        return 'tests/support' if len(parts) > 2 and parts[1] == 'support' else 'tests'
    if parts[0] in LIBRARY or parts[0] in OTHERS:
        return parts[0]
    return None


def resolve(root, source, name):
    for base in (os.path.dirname(source), '', 'include', 'tests'):
        candidate = os.path.normpath(os.path.join(base, name))
        if os.path.isfile(os.path.join(root, candidate)):
            return candidate
    return None


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else '.'
    bad = []
    for folder in list(LIBRARY) + list(OTHERS) + ['tests']:
        top = os.path.join(root, folder.split('/')[0])
        for dirpath, _, files in os.walk(top):
            for f in files:
                if not f.endswith(('.h', '.cpp', '.c')):
                    continue
                source = os.path.relpath(os.path.join(dirpath, f), root)
                here = room(source)
                if here != folder and not (folder == 'tests' and here == 'tests/support'):
                    continue
                with open(os.path.join(root, source), encoding='utf-8', errors='replace') as fh:
                    text = fh.read()
                for name in INCLUDE.findall(text):
                    target = resolve(root, source, name)
                    there = room(target) if target else None
                    if there is None:
                        continue
                    if here in ('tests', 'tests/support'):
                        ok = there in ANY_LIBRARY or there == 'tests'
                    else:
                        ok = there in (LIBRARY.get(here) or OTHERS.get(here))
                    if not ok:
                        bad.append(f'{source}: includes {target} ({here} -> {there})')
    for line in sorted(set(bad)):
        print(line)
    if bad:
        print(f'{len(set(bad))} includes break the folder layout')
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main())
