#!/usr/bin/env python3
"""Finds an include in src/ that points up, from a floor to one above it, and files that include each other.

Run: tools/check_includes.py [DIRECTORY]    the directory is the src/ to look at; status 1 with what was found
"""
import graphlib
import pathlib
import re
import sys

FLOORS = ['rules', 'storage', 'resources', 'ui', 'app', 'screens']  # from the ground up; src/ itself is the roof


def floor_of(file):
    return FLOORS.index(file.split('/')[0]) if '/' in file else len(FLOORS)


def includes_below(root):
    """Each file by its path below the root, with those of the root's files that it includes."""
    files = {str(path.relative_to(root)): path for path in sorted(root.rglob('*')) if path.suffix in ('.h', '.cpp')}
    return {name: [included for included in re.findall(r'^\s*#\s*include\s+"([^"]+)"', path.read_text(), re.MULTILINE)
                   if included in files]
            for name, path in files.items()}


def faults(includes):
    for file, included in includes.items():
        for other in included:
            if floor_of(other) > floor_of(file):
                yield f'{file} includes {other}, which is above it'
    try:
        graphlib.TopologicalSorter(includes).prepare()
    except graphlib.CycleError as error:
        yield 'include each other: ' + ', '.join(error.args[1][1:])


if __name__ == '__main__':
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / 'src'
    found = list(faults(includes_below(root)))
    print('\n'.join(found), end='\n' if found else '')
    sys.exit(bool(found))
