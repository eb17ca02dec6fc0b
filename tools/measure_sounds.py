#!/usr/bin/python3
"""Measures the sounds as they are decoded and prints the table of assets/audio/README.md.

Run:    /usr/bin/python3 tools/measure_sounds.py [directory]
Needs:  Debian's python3-numpy, python3-scipy and vorbis-tools.
"""

import sys
from pathlib import Path

import numpy as np

from loudness import integrated, loudest_moment
from synth import RATE, read_ogg

DEFAULT_DIRECTORY = Path(__file__).resolve().parent.parent / "assets/audio"


def row(path):
    sound = read_ogg(path)
    loudness = integrated(sound) if path.name.startswith("bgm") else loudest_moment(sound)
    peak = 20.0 * np.log10(np.max(np.abs(sound)))
    return (f"| `{path.name}` | {len(sound) / RATE:.2f} s | {sound.shape[1]} | {peak:.1f} dBFS "
            f"| {loudness:.1f} LUFS | {path.stat().st_size} |")


def main():
    directory = Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT_DIRECTORY
    print("| File | Length | Channels | Peak | Loudness | Bytes |\n|---|---|---|---|---|---|")
    for path in sorted(directory.glob("*.ogg")):
        print(row(path))


if __name__ == "__main__":
    main()
