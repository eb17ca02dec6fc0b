#!/usr/bin/env python3
"""Finds includes in src/ that point up, from a folder to one above it, and files that include each other.

Run: tools/check_includes.py [DIRECTORY]    checks src/ by default; prints what it finds and exits with status 1
"""
import graphlib
import pathlib
import re
import sys

FLOORS = ['rules', 'storage', 'resources', 'ui', 'app', 'screens']  # from the lowest up; src/ itself is above all


def floor_of(file):
    return FLOORS.index(file.split('/')[0]) if '/' in file else len(FLOORS)


def includes_below(root):
    """Maps the path of each file below the root to the paths of those that it includes."""
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
