#!/usr/bin/python3
"""Reads the player's files with Python's JSON reader and compares them member by member.

Run by ctest: read_back.py WRITE_RECORDS, the program that writes them.
"""

import json
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SETTINGS = {
    "language": "zh-TW", "soundOn": False, "musicVolume": 0.1, "sfxVolume": 1, "fullscreen": True, "maximized": False,
    "windowX": -5, "windowY": -1000000, "windowW": 801, "windowH": 602,
}
PROGRESS = {
    "currentLevel": 12, "totalSolves": 34,
    "bests": {"10": {"stars": 1, "aids": 7, "elapsedMs": 5000000000}, "2": {"stars": 3, "aids": 0, "elapsedMs": 61234}},
}
GAME = {
    "level": 1, "seed": 4294967295, "selectedId": 5, "rngState": 4000000000, "hintsUsed": 2, "shufflesUsed": 1,
    "elapsedMs": 123456,
}
SOLVES = [
    {"id": "b", "level": 4, "tiles": 0, "seed": 0, "elapsedMs": 0, "solvedAt": 0, "shot": "", "stars": 0, "aids": 0},
    {"id": "1718000000123_4821", "level": 3, "tiles": 36, "seed": 4294967295, "elapsedMs": 61234,
     "solvedAt": 1718000000123, "shot": "a \"picture\"\\ \t\x01 é.png", "stars": 2, "aids": 1},
]


def no_constant(name):
    raise ValueError(f"{name} is no JSON")


def without_repeats(members):
    result = dict(members)
    assert len(result) == len(members), f"repeated names among {members}"
    assert list(result) == sorted(result), f"names out of order: {list(result)}"
    return result


def read(path):
    text = path.read_text(encoding="utf-8")
    assert "\n" not in text, f"{path} is more than one line"
    return json.loads(text, parse_constant=no_constant, object_pairs_hook=without_repeats)


def expect_equal(found, expected):
    # Compared as text because in Python 1, 1.0 and True are equal.
    found, expected = (json.dumps(value, sort_keys=True, indent=1) for value in (found, expected))
    assert found == expected, f"found {found}\nexpected {expected}"


def check_game(document):
    assert list(document) == ["current_mahjong"], document.keys()
    game = document["current_mahjong"]
    faces, history, saved_at = (game.pop(name) for name in ("faces", "history", "savedAt"))
    expect_equal(game, GAME)
    assert type(saved_at) is int and abs(saved_at - 1000 * time.time()) < 60000, saved_at
    assert len(faces) == 36 and all(type(face) is str for face in faces), faces
    assert len(history) == 2, history
    for pair in history:
        assert list(pair) == ["a", "b", "fa", "fb"], pair
        assert type(pair["a"]) is int and type(pair["b"]) is int, pair
        assert pair["fa"] and pair["fb"], pair
        assert faces[pair["a"]] == faces[pair["b"]] == "", pair
    assert faces.count("") == 4, faces


def main():
    with tempfile.TemporaryDirectory() as home:
        subprocess.run(sys.argv[1], env=os.environ | {"XDG_DATA_HOME": home}, check=True)
        files = Path(home) / "veskara"
        assert sorted(f.name for f in files.iterdir()) == ["progress.json", "save.json", "settings.json", "solves.json"]
        expect_equal(read(files / "settings.json"), SETTINGS)
        expect_equal(read(files / "progress.json"), PROGRESS)
        expect_equal(read(files / "solves.json"), SOLVES)
        check_game(read(files / "save.json"))


if __name__ == "__main__":
    main()
