"""Tests which mutants tools/mutants.py finds in a source, and how it tries them."""

import collections
import importlib.util
import json
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
TOOL = SOURCE / "tools" / "mutants.py"

# Only a failing test waits this long.
PATIENCE_SECONDS = 200

HAS_CLANG = importlib.util.find_spec("clang") is not None
if HAS_CLANG:
    sys.path.insert(0, str(TOOL.parent))
    import mutants


@unittest.skipUnless(HAS_CLANG, "python3-clang-19 is not installed; tools/mutants.sh installs it")
class InTemporaryDirectory(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="veskara-mutants-")
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text)


class MutantsAreFound(InTemporaryDirectory):
    def mutants_of(self, text):
        """Returns each mutant as the text that it replaces and the new text."""
        self.write("src/a/a.cpp", text)
        found = mutants.mutants_of(self.root, "src/a/a.cpp", ["-std=c++20"], ["menu.about", "menu.gallery"])
        return {(text.encode()[mutant.start:mutant.end].decode(), mutant.new) for mutant in found}

    def test_operators_and_bounds(self):
        self.assertEqual(self.mutants_of("bool f(int a, int b) { return a < b && !(a == -b); }"),
                         {("<", "<="), ("<", ">="), ("&&", "||"), ("!", ""), ("==", "!="), ("-", "")})

    def test_operators_of_classes_only_where_they_compare(self):
        self.assertEqual(self.mutants_of("struct S { bool operator==(const S&) const; S operator+(const S&) const; };\n"
                                         "bool f(S a, S b) { return a + b == b; }"), {("==", "!=")})

    def test_constants(self):
        self.assertEqual(self.mutants_of("int a = 0; unsigned b = 1'000u; int c = 0x3fF; double d = 0.5, e = 0.0;"
                                         "bool f = true; int g = 010;"),
                         {("0", "1"), ("1'000u", "1001u"), ("1'000u", "999u"), ("0x3fF", "0xbff"), ("0.5", "1.0"),
                          ("0.5", "0.25"), ("0.0", "1.0"), ("true", "false"), ("010", "9"), ("010", "7")})

    def test_conditions(self):
        forced = {("a", "!(a)"), ("a", "true"), ("a", "false")}
        self.assertEqual(self.mutants_of("int f(bool a, int b, int c) { if (a) return b; return c; }"), forced)
        self.assertEqual(self.mutants_of("int f(bool a, int b, int c) { return a ? b : c; }"), forced)
        self.assertEqual(self.mutants_of("void g();\nvoid f(bool& a) { while (a) { g(); } }"),
                         {("a", "!(a)"), ("g()", "(void)0")})

    def test_dropped_statements(self):
        self.assertEqual(self.mutants_of("int g();\nint f(bool a, int b) { g(); if (a = b) g(); else b = g(); "
                                         "for (g(); a; g()) b += b; return g(); }") -
                         {("a = b", f) for f in ("!(a = b)", "true", "false")},
                         {("g()", "(void)0"), ("b = g()", "(void)0"), ("b += b", "(void)0"), ("+=", "-=")})

    def test_swapped_arguments_that_are_alike(self):
        self.assertEqual(self.mutants_of("struct P { int x; double y; const char* name; }; int g(int, double, P, P);\n"
                                         "int f(int a, double b, P c, P d) { return g(a, b, c, d); }"),
                         {("a, b", "b, a"), ("c, d", "d, c")})
        self.assertEqual(self.mutants_of("struct P { int x, y; }; P f(int a, int b) { return {a, b}; }\n"
                                         "P g(int a, int b) { return {.x = a, .y = b}; }"), {("a, b", "b, a")})
        self.assertEqual(self.mutants_of("int max(int, int);\nint f(int a, int b) { return max(a, b); }"), set())

    def test_swapped_keys_of_the_catalogue(self):
        self.assertEqual(self.mutants_of('const char* kKeys[] = {"menu.about", "menu.gallery", "menu.other"};') -
                         {('"menu.about", "menu.gallery"', '"menu.gallery", "menu.about"'),
                          ('"menu.gallery", "menu.other"', '"menu.other", "menu.gallery"')},
                         {('"menu.about"', '"menu.gallery"'), ('"menu.gallery"', '"menu.about"')})

    def test_strings_comments_assertions_and_types_are_left_alone(self):
        self.assertEqual(self.mutants_of("#include <cassert>\n// 1 < 2 && true\n/* f(1, 2); */\n"
                                         'const char* kText = "1 < 2 && f(1, 2)";\nconst char kLess = \'<\';\n'
                                         'const char* kRaw = R"(true ? 1 : 0)";\ntemplate <class T> struct L {};\n'
                                         "void f(L<L<int>>&& a, int* b) { assert(b != nullptr && *b > 2); }\n"), set())


PROJECT = {
    "CMakeLists.txt": "cmake_minimum_required(VERSION 3.25)\nproject(sums CXX)\nenable_testing()\n"
                      "add_library(sums src/sums/sums.cpp)\nadd_subdirectory(tests)\n",
    "tests/CMakeLists.txt": "add_subdirectory(sums)\n",
    "tests/sums/CMakeLists.txt": "add_executable(sums_test sums_test.cpp)\ntarget_link_libraries(sums_test sums)\n"
                                 "add_test(NAME Sums.Add COMMAND sums_test)\n",
    "tests/sums/sums_test.cpp": "int sum(int, int);\nint ended(int);\n"
                                "int main() { return sum(3, 1) == 4 && ended(2) == 2 ? 0 : 1; }\n",
    "src/sums/sums.cpp": """\
static_assert(sizeof(char) == 1);
static const int kUnused = 7;
int sum(int a, int b) {
  return a + b;
}
int untested() {
  return 5;
}
int ended(int a) {
  volatile bool endless = false; while (endless) {}
  return a * 1'000 / 1'000;
}
"""}
# One mutant of each line is tried. Whichever it is, its result is the same.
ENDS = {"not compiled": 1, "same code": 1, "killed": 2, "out of time": 1, "survived": 1}


class MutantsAreTried(InTemporaryDirectory):
    def setUp(self):
        super().setUp()
        for path, text in PROJECT.items():
            self.write(path, text)
        self.git("init", "--quiet")
        self.commit()

    def git(self, *words):
        subprocess.run(["git", "-c", "user.name=A", "-c", "user.email=a@b", "-C", self.root, *words], check=True)

    def commit(self):
        self.git("add", "CMakeLists.txt", "src", "tests")
        self.git("commit", "--quiet", "--message", "Add sums")

    def start(self):
        return subprocess.Popen([sys.executable, "-B", TOOL, "100", "1"], cwd=self.root, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def finish(self):
        process = self.start()
        said = process.communicate(timeout=PATIENCE_SECONDS)[0]
        self.assertEqual(process.returncode, 0, said)
        return said

    def results(self):
        """Returns the results of all mutants, in the order in which they were tried."""
        file = self.root / "build/mutants/1/results.jsonl"
        entries = [json.loads(line) for line in file.read_text().splitlines()] if file.exists() else []
        return [(entry["mutant"]["start"], entry["result"]) for entry in entries if "mutant" in entry]

    def test_a_run_that_was_ended_goes_on_where_it_was(self):
        process = self.start()
        deadline = time.monotonic() + PATIENCE_SECONDS
        while len(self.results()) < 2 and process.poll() is None and time.monotonic() < deadline:
            time.sleep(0.02)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=PATIENCE_SECONDS)
        before = self.results()
        self.assertIn(len(before), range(2, sum(ENDS.values())))

        said = self.finish()
        after = self.results()
        self.assertEqual(after[:len(before)], before)
        self.assertEqual(len({start for start, _ in after}), len(after))
        self.assertEqual(collections.Counter(result for _, result in after), ENDS)
        self.assertRegex(said, r"(?m)^sums +1 +1 +2 \(50.0 %\) +1 \(25.0 %\) +1 \(25.0 %\)$")
        self.assertRegex(said, r"(?m)^src/sums/sums.cpp:7 survived$")
        self.assertRegex(said, r"(?m)^-  return 5;\n\+  return [46];$")

        self.finish()
        self.assertEqual(self.results(), after)

    def test_what_no_test_noticed_is_tried_again_when_the_tests_have_changed(self):
        self.finish()
        before = self.results()
        self.write("tests/sums/sums_test.cpp", PROJECT["tests/sums/sums_test.cpp"].replace(
            "int main() { return", "int untested();\nint main() { return untested() == 5 &&"))
        self.commit()
        self.finish()
        again = [result for _, result in self.results()[len(before):]]
        self.assertEqual(collections.Counter(again), {"killed": 1, "out of time": 1})
