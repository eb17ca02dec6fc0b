"""Tests that tools/check_includes.py finds bad includes."""

import subprocess
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[1] / "tools" / "check_includes.py"


def check(files):
    with tempfile.TemporaryDirectory(prefix="veskara-includes-") as directory:
        for name, included in files.items():
            path = Path(directory) / name
            path.parent.mkdir(exist_ok=True)
            path.write_text("".join(f'#include "{other}"\n' for other in included) + "#include <string>\n")
        done = subprocess.run([CHECK, directory], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout


class Includes(unittest.TestCase):
    def test_that_point_down_or_stay_on_their_floor_are_silent(self):
        self.assertEqual(check({"main.cpp": ["screens/a.h", "rules/c.h"], "screens/a.h": ["screens/b.h", "rules/c.h"],
                                "screens/b.h": ["version.h"], "rules/c.h": []}), (0, ""))

    def test_that_point_up_are_told(self):
        self.assertEqual(check({"ui/a.cpp": ["app/b.h"], "app/b.h": []}),
                         (1, "ui/a.cpp includes app/b.h, which is above it\n"))
        self.assertEqual(check({"screens/a.cpp": ["roof.h"], "roof.h": []}),
                         (1, "screens/a.cpp includes roof.h, which is above it\n"))

    def test_that_go_round_in_a_circle_are_told(self):
        status, told = check({"ui/a.h": ["ui/b.h"], "ui/b.h": ["ui/c.h"], "ui/c.h": ["ui/a.h"], "ui/d.h": ["ui/a.h"]})
        self.assertEqual(status, 1)
        self.assertRegex(told, r"^include each other: ui/[abc]\.h, ui/[abc]\.h, ui/[abc]\.h\n$")


if __name__ == "__main__":
    unittest.main()
