"""Tests the release build, an installation, and the packages.

ctest runs one class at a time, with the build directory in VESKARA_BUILD_DIR. A test that needs a missing tool skips
and says so."""

import gzip
import json
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unittest
import xml.etree.ElementTree
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["VESKARA_BUILD_DIR"])
PROGRAM = BUILD / "veskara"

ID = "example.quenlock.Veskara"
TITLE = "Quenlock's Mahjong"
WINDOW_CLASS = f'WM_CLASS(STRING) = "{ID}", "{ID}"'
DESKTOP_ENTRY = f"share/applications/{ID}.desktop"
METAINFO = f"share/metainfo/{ID}.metainfo.xml"
MANUALS = ("share/man/man6/veskara.6.gz", "share/man/de/man6/veskara.6.gz")
DOCUMENTS = "share/doc/veskara"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
# Files of both the Debian package and an ordinary installation.
SHARED_FILES = {
    DESKTOP_ENTRY,
    METAINFO,
    *MANUALS,
    f"{DOCUMENTS}/copyright",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in ICON_SIZES),
}

# Only a failing test waits this long.
PATIENCE_SECONDS = 60


def need(*tools):
    for tool in tools:
        if shutil.which(tool) is None:
            raise unittest.SkipTest(f"{tool} is not installed")


def run(*command, **options):
    """Returns standard output. A failure shows all output."""
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def files_below(root):
    """Returns everything but directories, as paths relative to root."""
    return {str(path.relative_to(root)) for path in root.rglob("*") if path.is_symlink() or not path.is_dir()}


def library_places(file=PROGRAM):
    """Maps the names of the libraries that a program or a library loads to their paths."""
    return {name: Path(place) for name, place in re.findall(r"(?m)^\t(\S+) => (/\S+)", run("ldd", file))}


def needed_by(file):
    """Returns the names of the libraries that the file itself needs."""
    return set(re.findall(r"NEEDED.*\[(.+)\]", run("readelf", "--dynamic", file)))


def graphics_driver():
    """Returns the files of Mesa's OpenGL that are loaded at run time only."""
    directory = library_places()["libX11.so.6"].parent
    files = [directory / "libGL.so.1", directory / "libGLX_mesa.so.0", directory / "libEGL_mesa.so.0",
             directory / "dri/swrast_dri.so"]
    found = [file for file in files if file.exists()]
    if not found:
        raise unittest.SkipTest("there is no OpenGL driver")
    return found


def owners_of(libraries):
    """Returns the Debian packages that contain the libraries."""
    owners = set()
    places = library_places()
    for name in libraries:
        place = str(places[name].resolve())
        # With a merged /usr, dpkg knows the file under one of two paths.
        found = subprocess.run(["dpkg-query", "--search", place, place.removeprefix("/usr")],
                               capture_output=True, text=True, check=False).stdout
        owners.add(found.split(":")[0])
    return owners


def languages():
    """Returns the codes of the game's languages."""
    return {path.stem for path in (SOURCE / "src/resources/catalogues").glob("??.cpp")}


def wait_for(question):
    """Asks until the answer is true or time is up, and returns the last answer."""
    end = time.monotonic() + PATIENCE_SECONDS
    while not (answer := question()) and time.monotonic() < end:
        time.sleep(0.05)
    return answer


class Scratch(unittest.TestCase):
    """A test class with its own directory."""

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory(prefix="veskara-packaging-")
        cls.addClassCleanup(directory.cleanup)
        cls.scratch = Path(directory.name)


class Display:
    """A context with an X display."""

    def __enter__(self):
        read_end, write_end = os.pipe()
        # Without -noreset it would restart when its last client leaves: an xprop, just as the game connects.
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with open(read_end) as number:
            self.name = ":" + number.readline().strip()
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def property(self, name):
        """Returns a property of the game's window as xprop prints it, or an empty string if there is no window."""
        done = subprocess.run(["xprop", "-display", self.name, "-name", TITLE, name],
                              capture_output=True, text=True, check=False)
        return done.stdout.strip() if done.returncode == 0 else ""


class Game:
    """A context in which the game runs on a display with its own files. Entering it waits for the window."""

    def __init__(self, command, display, home, variables=None):
        self.command, self.display, self.home, self.variables = command, display, home, variables or {}

    def __enter__(self):
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.home), "DISPLAY": self.display.name,
                       "SDL_AUDIODRIVER": "dummy", "FONTCONFIG_FILE": os.environ["FONTCONFIG_FILE"]}
        self.errors = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen(self.command, env=environment | self.variables, cwd="/",
                                        stdout=subprocess.DEVNULL, stderr=self.errors)
        if not wait_for(lambda: self.display.property("WM_CLASS") or self.process.poll() is not None):
            raise AssertionError("no window comes")
        if self.process.poll() is not None:
            self.errors.seek(0)
            raise AssertionError(f"it ended with {self.process.returncode}\n{self.errors.read()}")
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.errors.close()

    def end(self):
        """Ends the game as a logout does, and returns its exit status."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(PATIENCE_SECONDS)

    def loaded_files(self):
        maps = Path(f"/proc/{self.process.pid}/maps").read_text()
        return {words[5] for line in maps.splitlines() if len(words := line.split(maxsplit=5)) == 6}


class Program(unittest.TestCase):
    """The program in the build directory."""

    def symbols(self):
        return run("readelf", "--wide", "--dyn-syms", PROGRAM)

    def test_lies_at_another_address_each_time(self):
        self.assertRegex(run("readelf", "--file-header", PROGRAM), r"Type: +DYN \(Position-Independent Executable")

    def test_cannot_have_its_table_of_functions_rewritten(self):
        self.assertIn("GNU_RELRO", run("readelf", "--wide", "--segments", PROGRAM))
        self.assertRegex(run("readelf", "--dynamic", PROGRAM), r"FLAGS_1.*\bNOW\b")

    def test_has_no_executable_stack(self):
        self.assertRegex(run("readelf", "--wide", "--segments", PROGRAM), r"GNU_STACK +(0x0+ +)+0x0+ +RW +0x")

    def test_guards_its_stack_and_its_buffers(self):
        self.assertIn("__stack_chk_fail@", self.symbols())
        self.assertRegex(self.symbols(), r"__f?printf_chk@")

    def test_is_compiled_with_the_flags_that_the_distribution_asks_for(self):
        need("dpkg-buildflags")
        compiled = (BUILD / "compile_commands.json").read_text()
        linked = (BUILD / "build.ninja").read_text()
        for variable, used in (("CXXFLAGS", compiled), ("CPPFLAGS", compiled), ("LDFLAGS", linked)):
            wanted = run("dpkg-buildflags", "--get", variable,
                         env=os.environ | {"DEB_BUILD_MAINT_OPTIONS": "hardening=+all"})
            for flag in wanted.split():
                # The build type sets debugging and optimisation; the build maps paths with flags of its own.
                if flag not in ("-g", "-O2") and not flag.startswith("-ffile-prefix-map="):
                    # Warnings are errors only in developers' builds.
                    self.assertIn(flag.replace("-Werror=", "-W"), used)

    def test_is_built_by_players_whatever_their_compiler_warns_of(self):
        self.assertIn(" -Werror ", (BUILD / "compile_commands.json").read_text())
        for build in ((), ("--preset", "release"), ("-DCMAKE_BUILD_TYPE=Release",)):
            with self.subTest(build), tempfile.TemporaryDirectory() as directory:
                run("cmake", "-S", SOURCE, "-B", directory, *build, "-DVESKARA_TESTS=OFF")
                self.assertNotIn("-Werror", (Path(directory) / "compile_commands.json").read_text())

    def test_names_no_place_on_the_machine_that_built_it(self):
        program = PROGRAM.read_bytes()
        self.assertIn(b"src/rules/engine.cpp", program)  # from an assertion
        for place in (SOURCE, BUILD):
            self.assertNotIn(bytes(place), program)

    def test_looks_for_libraries_only_where_the_system_does(self):
        self.assertNotRegex(run("readelf", "--dynamic", PROGRAM), "RPATH|RUNPATH")


class InstalledTree(Scratch):
    """cmake --install into an empty directory."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.tree = cls.scratch / "tree"
        run("cmake", "--install", BUILD, "--prefix", cls.tree)

    def manuals(self):
        return [gzip.decompress((self.tree / manual).read_bytes()).decode() for manual in MANUALS]

    def translations(self, key):
        """Maps each language to its translation of a key in the desktop entry."""
        entry = (self.tree / DESKTOP_ENTRY).read_text()
        found = dict(re.findall(rf"(?m)^{key}\[(\w+)\]=(\S.*)$", entry))
        return found | {"en": re.search(rf"(?m)^{key}=(\S.*)$", entry)[1]}

    def test_holds_the_whole_game_and_nothing_else(self):
        licences = {f"{DOCUMENTS}/licences/{name}.txt"
                    for name in ("GPL-3.0-or-later", "OFL-1.1", "CC-BY-4.0", "CC0-1.0")}
        self.assertEqual(files_below(self.tree),
                         SHARED_FILES | licences | {"bin/veskara", f"{DOCUMENTS}/CHANGELOG.md"})

    def test_has_a_valid_desktop_entry(self):
        need("desktop-file-validate")
        self.assertEqual(run("desktop-file-validate", self.tree / DESKTOP_ENTRY), "")

    def test_has_a_desktop_entry_that_names_program_icon_and_window(self):
        entry = dict(re.findall(r"(?m)^(\w+)=(.*)$", (self.tree / DESKTOP_ENTRY).read_text()))
        self.assertTrue(os.access(self.tree / "bin" / entry["Exec"], os.X_OK))
        self.assertEqual((entry["Name"], entry["Icon"], entry["StartupWMClass"]), (TITLE, ID, ID))

    def test_has_a_desktop_entry_that_speaks_the_languages_of_the_game(self):
        for key in ("Comment", "GenericName", "Keywords"):
            self.assertEqual(set(self.translations(key)), languages())

    def test_is_found_by_the_name_of_the_game_and_by_words_of_the_language(self):
        for language, keywords in self.translations("Keywords").items():
            words = keywords.lower().removesuffix(";").split(";")
            self.assertIn("mahjong", words, language)
            self.assertGreaterEqual(len(words), 6, language)
            self.assertEqual(len(set(words)), len(words), language)
            self.assertNotIn("", words, language)

    def test_has_a_page_for_software_centres(self):
        need("appstreamcli")
        for command in (("validate", self.tree / METAINFO), ("validate-tree", self.tree)):
            report = run("appstreamcli", command[0], "--no-net", command[1])
            self.assertNotRegex(report, r"(?m)^\s*[WE]:")
        page = xml.etree.ElementTree.parse(self.tree / METAINFO).getroot()
        self.assertEqual(page.findtext("launchable"), f"{ID}.desktop")
        self.assertEqual({language.text for language in page.iter("lang")}, languages())

    def test_has_a_page_that_speaks_the_languages_of_the_game(self):
        page = xml.etree.ElementTree.parse(self.tree / METAINFO).getroot()
        summaries = {language_of(summary): summary.text for summary in page.iter("summary")}
        self.assertEqual(summaries, self.translations("Comment"))
        for parent, tag in ((page.find("description"), "p"), (page.find("description/ul"), "li"),
                            *((screenshot, "caption") for screenshot in page.iter("screenshot"))):
            spoken = [language_of(text) for text in parent.findall(tag) if text.text.strip()]
            times = {spoken.count(language) for language in languages()}
            self.assertEqual((set(spoken), len(times)), (languages(), 1), tag)

    def test_has_a_page_that_names_the_developer_for_old_and_new_readers(self):
        page = xml.etree.ElementTree.parse(self.tree / METAINFO).getroot()
        self.assertEqual(page.findtext("developer/name"), "Quenlock Software")
        self.assertEqual(page.findtext("developer_name"), "Quenlock Software")

    def test_has_pictures_for_the_software_centres(self):
        page = xml.etree.ElementTree.parse(self.tree / METAINFO).getroot()
        for screenshot in page.iter("screenshot"):
            image = screenshot.find("image")
            picture = SOURCE / "packaging/screenshots" / Path(image.text).name
            self.assertEqual(png_size(picture), (int(image.get("width")), int(image.get("height"))))
            self.assertTrue(screenshot.findtext("caption"))

    def test_tells_the_same_version_everywhere(self):
        printed = run(self.tree / "bin/veskara", "--version")
        version, build = re.fullmatch(r"Quenlock's Mahjong (\S+) \(Build (\d+)\)\n", printed).groups()
        page = xml.etree.ElementTree.parse(self.tree / METAINFO).getroot()
        release = page.find("releases/release")
        self.assertEqual(release.get("version"), version)
        for manual in self.manuals():
            self.assertIn(f'.TH VESKARA 6 {release.get("date")} "Quenlock\'s Mahjong {version}"', manual)
        self.assertIn(f"## [{version}] - {release.get('date')}\n", (SOURCE / "CHANGELOG.md").read_text())
        changelog = (BUILD / "packaging/changelog.Debian").read_text()
        self.assertTrue(changelog.startswith(f"veskara ({version}-{build}) "))

    def test_has_manual_pages_without_a_fault(self):
        need("man", "lexgrog")
        for manual in MANUALS:
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", self.tree / manual],
                                  env=os.environ | {"MANROFFSEQ": "", "LC_ALL": "C.UTF-8", "MANWIDTH": "80"},
                                  stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn('"veskara - Quenlock\'s Mahjong', run("lexgrog", self.tree / manual))

    def test_has_manual_pages_no_wider_than_a_terminal(self):
        need("man")
        for manual in MANUALS:
            page = run("man", "-E", "UTF-8", "-l", self.tree / manual,
                       env=os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "80", "MAN_KEEP_FORMATTING": ""})
            rows = re.sub(r"\x1b\[[\d;]*m|.\x08", "", page).expandtabs().splitlines()
            self.assertGreater(len(rows), 80, manual)
            self.assertLessEqual(max(map(len, rows)), 80, manual)

    def test_has_manual_pages_that_know_what_the_program_asks_for(self):
        options = re.findall(r"^  (--\w+)", run(self.tree / "bin/veskara", "--help"), re.MULTILINE)
        self.assertIn("--version", options)
        sources = "".join(path.read_text() for path in (SOURCE / "src").rglob("*.cpp"))
        variables = set(re.findall(r'\b(?:getenv|envOr)\("(\w+)"', sources)) | {"SNAP", "APPDIR"}
        self.assertIn("VESKARA_AUTOPLAY", variables)
        for manual in self.manuals():
            for option in options:
                self.assertIn(f".B {option}\n", manual.replace("\\-", "-"))
            for variable in variables:
                self.assertRegex(manual, rf"\n\.BR? .*\b{variable}\b")


def language_of(element):
    return element.get("{http://www.w3.org/XML/1998/namespace}lang", "en")


def png_size(path):
    header = path.read_bytes()[:24]
    assert header[:8] == b"\x89PNG\r\n\x1a\n", path
    return int.from_bytes(header[16:20], "big"), int.from_bytes(header[20:24], "big")


def same_picture(seen, expected):
    """Tells whether two pictures differ by no more than releases of rsvg do: by 2 of 255, and at few edges by a fifth
    of their contrast."""
    try:
        from PIL import Image, ImageChops, ImageFilter
    except ImportError as missing:
        raise unittest.SkipTest(str(missing))
    pictures = [Image.open(path).convert("RGBA") for path in (seen, expected)]
    difference = ImageChops.difference(*pictures)
    lightest, darkest = (pictures[1].filter(kind(3)) for kind in (ImageFilter.MaxFilter, ImageFilter.MinFilter))
    allowed = ImageChops.subtract(lightest, darkest).point(lambda contrast: max(2, contrast // 5))
    if any(high for _, high in ImageChops.subtract(difference, allowed).getextrema()):
        return False
    edges = sum(max(pixel) > 2 for pixel in difference.getdata())
    return edges <= difference.width * difference.height / 50


class Icons(Scratch):
    def test_have_the_sizes_of_their_names(self):
        for size in ICON_SIZES:
            self.assertEqual(png_size(SOURCE / f"packaging/icons/{size}.png"), (size, size))

    def test_show_the_drawings_as_they_are_now(self):
        need("rsvg-convert")
        run(SOURCE / "tools/make_icons.sh", self.scratch)
        for size in ICON_SIZES:
            committed = SOURCE / f"packaging/icons/{size}.png"
            self.assertTrue(same_picture(self.scratch / f"{size}.png", committed), size)


class DebianPackage(Scratch):
    """The package that tools/package_deb.sh makes, and its installation and removal."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        need("dpkg-deb", "dpkg-shlibdeps")
        run(SOURCE / "tools/package_deb.sh", BUILD, cls.scratch / "packages")
        (cls.package,) = (cls.scratch / "packages").glob("*.deb")

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name).strip()

    def unpacked(self):
        root = self.scratch / self.id().split(".")[-1]
        run("dpkg-deb", "--raw-extract", self.package, root)
        return root

    def test_holds_the_whole_game_and_nothing_else(self):
        files = {path for path in files_below(self.unpacked()) if not path.startswith("DEBIAN/")}
        documents = {f"usr/{DOCUMENTS}/{name}" for name in ("changelog.gz", "changelog.Debian.gz")}
        self.assertEqual(files, {f"usr/{name}" for name in SHARED_FILES} | documents | {"usr/games/veskara"})

    def test_satisfies_lintian(self):
        need("lintian")
        done = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", "--info", self.package],
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)

    def test_carries_the_sums_of_all_its_files(self):
        root = self.unpacked()
        run("md5sum", "--check", "--strict", "DEBIAN/md5sums", cwd=root)
        summed = {line.split("  ")[1] for line in (root / "DEBIAN/md5sums").read_text().splitlines()}
        self.assertEqual(summed, {path for path in files_below(root) if not path.startswith("DEBIAN/")})

    def test_depends_on_the_libraries_it_uses_and_on_nothing_else(self):
        wanted = {dependency.split()[0] for dependency in self.field("Depends").split(",")}
        self.assertEqual(wanted, owners_of(needed_by(self.unpacked() / "usr/games/veskara")))

    def test_recommends_the_fonts_of_all_languages_a_frame_under_wayland_and_an_opener_of_links(self):
        self.assertEqual({"fonts-dejavu-core", "fonts-noto-cjk", "libdecor-0-plugin-1-cairo", "xdg-utils"},
                         set(self.field("Recommends").split(", ")))

    def test_is_the_same_bytes_again(self):
        again = self.scratch / "again"
        run(SOURCE / "tools/package_deb.sh", BUILD, again, env=os.environ | {"TZ": "Asia/Tokyo", "LC_ALL": "C"},
            umask=0o077)
        self.assertEqual((again / self.package.name).read_bytes(), self.package.read_bytes())

    def test_installs_runs_and_goes_without_a_trace(self):
        need("Xvfb", "xprop")
        dpkg = ["dpkg", "--force-depends"]
        if os.geteuid() != 0:
            need("fakeroot")
            dpkg = ["fakeroot", *dpkg]
        system = self.scratch / "system"
        records = system / "var/lib/dpkg"
        for directory in ("info", "triggers", "updates"):
            (records / directory).mkdir(parents=True)
        (records / "status").touch()
        path = {"PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"}

        run(*dpkg, f"--root={system}", "--install", self.package, env=os.environ | path)
        self.assertIn("Status: install ok installed", (records / "status").read_text())
        program = system / "usr/games/veskara"
        self.assertRegex(run(program, "--version"), "^Quenlock's Mahjong ")
        with Display() as display, Game([program], display, self.scratch / "home") as game:
            self.assertEqual(display.property("WM_CLASS"), WINDOW_CLASS)
            self.assertTrue(wait_for(lambda: "Icon (64 x 64)" in display.property("_NET_WM_ICON")))
            self.assertEqual(game.end(), 0)

        run(*dpkg, f"--root={system}", "--purge", "veskara", env=os.environ | path)
        left = {path for path in system.rglob("*") if system / "var" not in (path, *path.parents)}
        left -= {system / "var"}
        self.assertEqual(left, set())
        self.assertEqual([name for name in os.listdir(records / "info") if "veskara" in name], [])
        self.assertNotIn("veskara", (records / "status").read_text())


# A shell script that runs the command $1 in the root $0.
ENTER = '''
mount --rbind /dev "$0/dev"
mount --rbind /proc "$0/proc"
exec unshare --root="$0" "$1"
'''


class AppDir(Scratch):
    """The directory that tools/package_appdir.sh makes, after a move."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        need("patchelf")
        made = cls.scratch / "made"
        run(SOURCE / "tools/package_appdir.sh", BUILD, made)
        cls.folder = cls.scratch / "some where else" / "Veskara.AppDir"
        cls.folder.parent.mkdir()
        made.rename(cls.folder)

    def test_shows_itself_to_the_desktop(self):
        for name in (f"{ID}.desktop", f"{ID}.png", ".DirIcon"):
            path = (self.folder / name).resolve(strict=True)
            self.assertIn(self.folder, path.parents)
        self.assertEqual(png_size(self.folder / ".DirIcon"), (256, 256))

    def own_libraries(self):
        """Maps the names of the included libraries to their paths."""
        return {path.name: path for path in (self.folder / "usr/lib").iterdir()}

    def left_to_the_system(self):
        """Returns the libraries that docs/packaging.md leaves to the system, without versions."""
        chapter = (SOURCE / "docs/packaging.md").read_text().split("## AppDir")[1].split("\n## ")[0]
        return set(re.findall(r"`(lib[^`]+)`", chapter))

    def test_carries_the_licence_of_each_library(self):
        documents = {path.parent.name for path in (self.folder / "usr/share/doc").glob("*/copyright")}
        self.assertEqual(documents, owners_of(self.own_libraries()) | {"veskara"})

    def test_carries_the_texts_that_its_licences_point_to(self):
        for document in (self.folder / "usr/share/doc").glob("*/copyright"):
            text = document.read_text()
            self.assertFalse("/usr/share/common-licenses" in text, document)
            for names in re.findall(r"common-licenses/\{?(\w[\w.,-]*\w)", text):
                for name in names.split(","):
                    self.assertTrue((document.parent / "../../common-licenses" / name).is_file(), f"{document}: {name}")

    def test_has_no_link_out_of_itself(self):
        for path in self.folder.rglob("*"):
            self.assertIn(self.folder, path.resolve(strict=True).parents)

    def test_leaves_to_the_system_what_its_description_says(self):
        own = self.own_libraries()
        needed = set().union(*map(needed_by, (self.folder / "usr/bin/veskara", *own.values())))
        left = {name.split(".so")[0] for name in needed - set(own) if name.startswith("lib")}
        self.assertEqual(self.left_to_the_system(), left)

    def test_leaves_the_graphics_driver_all_that_it_loads(self):
        loaded = set().union(*map(library_places, graphics_driver()))
        self.assertIn("libdrm.so.2", loaded)
        self.assertEqual(loaded & set(self.own_libraries()), set())

    def bare_system(self):
        """Makes the root of a system with the libraries that it must provide, its graphics driver and a shell. Their
        directories are not Debian's."""
        root = self.scratch / "system"
        libraries = root / "usr/lib"
        commands = root / "usr/bin"
        for directory in (libraries / "dri", commands, *(root / name for name in ("dev", "home", "proc"))):
            directory.mkdir(parents=True)
        for link, place in (("bin", "usr/bin"), ("lib", "usr/lib"), ("lib64", "usr/lib")):
            (root / link).symlink_to(place)
        files = [Path(shutil.which(name)) for name in ("sh", "dirname", "readlink", "true")]
        for file in files:
            shutil.copy(file, commands)
        left = self.left_to_the_system()
        files += [place for name, place in library_places().items() if name.split(".so")[0] in left]
        files += graphics_driver()
        for file in files:
            for name, place in library_places(file).items():
                shutil.copy(place, libraries / name)
            if file.parent.name == "dri":
                shutil.copy(file, libraries / "dri")
            elif ".so" in file.name:
                shutil.copy(file, libraries)
        loader = re.search(r"interpreter: (.+)\]", run("readelf", "--segments", PROGRAM))[1]
        shutil.copy(loader, libraries)
        for place in ("usr/share/X11/locale", "usr/share/fonts/truetype/dejavu"):
            shutil.copytree(Path("/", place), root / place)
        shutil.copy(os.environ["FONTCONFIG_FILE"], root / "fonts.conf")
        shutil.copytree(self.folder, root / self.folder.name, symlinks=True)
        return root

    def test_runs_on_a_bare_system_of_another_layout(self):
        need("Xvfb", "xprop", "unshare")
        root = self.bare_system()
        enter = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-euc", ENTER, root]
        if subprocess.run([*enter, "true"], capture_output=True, check=False).returncode != 0:
            raise unittest.SkipTest("a root of its own may not be entered here")
        variables = {"FONTCONFIG_FILE": "/fonts.conf", "LIBGL_DRIVERS_PATH": "/usr/lib/dri",
                     "LIBGL_ALWAYS_SOFTWARE": "1"}
        with Display() as display, Game([*enter, f"/{self.folder.name}/AppRun"], display, "/home",
                                        variables) as game:
            self.assertEqual(display.property("WM_CLASS"), WINDOW_CLASS)
            loaded = {Path(path).name for path in game.loaded_files()}
            self.assertLessEqual(set(self.own_libraries()), loaded)
            self.assertTrue(any(name.startswith(("swrast_dri", "libgallium")) for name in loaded), "no OpenGL")
            self.assertEqual(game.end(), 0)

    def test_runs_where_it_was_moved_to_with_its_own_libraries(self):
        need("Xvfb", "xprop")
        own = {name: str(path) for name, path in self.own_libraries().items()}
        self.assertIn("libSDL2_mixer-2.0.so.0", own)
        with Display() as display, Game([self.folder / "AppRun"], display, self.scratch / "home") as game:
            self.assertEqual(display.property("WM_CLASS"), WINDOW_CLASS)
            loaded = {path for path in game.loaded_files() if Path(path).name in own}
            self.assertEqual(loaded, set(own.values()))
            self.assertEqual(game.end(), 0)


class Flatpak(Scratch):
    manifest = SOURCE / f"packaging/{ID}.json"

    def test_manifest_can_be_read_by_its_builder(self):
        need("flatpak-builder")
        shown = json.loads(run("flatpak-builder", "--show-manifest", self.manifest, cwd=self.scratch))
        self.assertEqual((shown["id"], shown["command"]), (ID, "veskara"))
        self.assertEqual(shown["modules"][0]["sources"][0]["path"], "..")

    def test_asks_for_no_more_than_window_and_sound(self):
        self.assertEqual(set(json.loads(self.manifest.read_text())["finish-args"]),
                         {"--socket=wayland", "--socket=fallback-x11", "--share=ipc", "--socket=pulseaudio",
                          "--device=dri"})

    def test_sets_options_that_exist(self):
        cache = (BUILD / "CMakeCache.txt").read_text()
        for option in json.loads(self.manifest.read_text())["modules"][0]["config-opts"]:
            self.assertRegex(cache, rf'(?m)^{option.removeprefix("-D").split("=")[0]}:')


if __name__ == "__main__":
    unittest.main()
