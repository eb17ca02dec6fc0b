"""Tests ./play and ./check on machines without apt, without packages, or without the right to install them.

Such a machine is a PATH with the commands of every system, and stand-ins that do what a test wants."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]

EVERYWHERE = ("awk", "bash", "cat", "chmod", "dirname", "env", "grep", "mkdir", "nproc", "sed", "sort", "touch")
NEEDED = ("Xvfb", "appstreamcli", "clang++", "clang-format-19", "clang-tidy-19", "cppcheck", "desktop-file-validate",
          "file", "git", "localedef", "ninja", "openbox", "patchelf", "python3", "rsvg-convert", "setxkbmap", "strace",
          "weston", "xprop")
INSTALLS = {"dnf": "dnf install SDL2-devel", "pacman": "pacman -S sdl2-compat",
            "zypper": "zypper install sdl2-compat-devel", "apk": "apk add sdl2-dev"}

# Instead of building, makes a program that prints that it plays.
CMAKE = 'mkdir -p build/release; echo "echo it plays" >build/release/veskara; chmod +x build/release/veskara'
NO_SDL = '[ "$2" != sdl2 ]'


class Machine(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="veskara-machine-")
        self.addCleanup(directory.cleanup)
        self.project = Path(directory.name) / "project"
        self.commands = Path(directory.name) / "commands"
        self.commands.mkdir()
        shutil.copytree(SOURCE / "tools", self.project / "tools")
        for name in ("play", "check"):
            shutil.copy(SOURCE / name, self.project)
        for name in EVERYWHERE:
            (self.commands / name).symlink_to(shutil.which(name))
        for name in NEEDED:
            self.command(name)
        self.command("c++")
        self.command("pkg-config")
        self.command("fc-list", 'echo "DejaVuSans.ttf NotoSansCJK-Regular.ttc"')
        self.command("cmake", CMAKE)
        self.command("ctest", "echo all tests pass")

    def command(self, name, script="true"):
        path = self.commands / name
        path.write_text(f"#!/bin/bash\n{script}\n")
        path.chmod(0o755)

    def run_script(self, name):
        environment = {"PATH": str(self.commands), "HOME": "/nowhere", "DISPLAY": ":nowhere"}
        return subprocess.run([self.project / name], env=environment, capture_output=True, text=True, check=False,
                              stdin=subprocess.DEVNULL, timeout=60)

    def expect_end(self, done, *words):
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        for word in words:
            self.assertIn(word, done.stderr)
        self.assertFalse((self.project / "build").exists())


class WithoutApt(Machine):
    def test_play_builds_and_opens_the_game_if_nothing_is_missing(self):
        done = self.run_script("play")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "it plays\n", ""))

    def test_check_runs_the_tests_if_nothing_is_missing(self):
        self.command("cmake", "mkdir -p build")
        done = self.run_script("check")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "all tests pass\n", ""))

    def test_what_is_missing_is_named_as_the_system_calls_it(self):
        self.command("pkg-config", NO_SDL)
        for manager, install in INSTALLS.items():
            with self.subTest(manager):
                self.command(manager)
                for script in ("play", "check"):
                    self.expect_end(self.run_script(script), "libsdl2-dev", f"{install}\n")
                (self.commands / manager).unlink()

    def test_what_is_missing_is_named_where_no_package_manager_is_known(self):
        self.command("pkg-config", NO_SDL)
        done = self.run_script("play")
        self.expect_end(done)
        self.assertEqual(done.stderr, "Missing, as Debian calls it: libsdl2-dev\n")

    def test_a_compiler_that_is_too_old_counts_as_missing(self):
        self.command("dnf")
        self.command("c++", "false")
        self.expect_end(self.run_script("play"), "g++", "dnf install gcc-c++\n")

    def test_every_package_is_asked_for_without_pkg_config(self):
        (self.commands / "pkg-config").unlink()
        self.command("dnf")
        self.expect_end(self.run_script("play"), "pkgconf-pkg-config", "SDL2_mixer-devel", "fontconfig-devel")


class WithoutTheRight(Machine):
    ADVICE = "apt-get install --no-install-recommends g++ cmake"

    def setUp(self):
        super().setUp()
        self.command("dpkg-query", "false")
        self.command("apt-get", "echo $* >>apt-get.log")
        self.command("id", "echo 1000")

    def test_to_install_they_say_which_command_would(self):
        for script in ("play", "check"):
            self.expect_end(self.run_script(script), self.ADVICE)

    def test_of_sudo_too(self):
        self.command("sudo", "echo no >&2; false")
        self.expect_end(self.run_script("play"), self.ADVICE)
        self.assertFalse((self.project / "apt-get.log").exists())

    def test_sudo_gives_it(self):
        self.command("sudo", '"$@"')
        done = self.run_script("play")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("install -y -qq --no-install-recommends g++ cmake", (self.project / "apt-get.log").read_text())


if __name__ == "__main__":
    unittest.main()
