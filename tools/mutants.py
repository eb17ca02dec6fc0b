#!/usr/bin/python3
"""Breaks src/ in many small ways, one at a time, and counts those that a test notices. tools/mutants.sh runs it."""

import argparse
import collections
import dataclasses
import difflib
import hashlib
import json
import multiprocessing
import os
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from clang.cindex import CursorKind, Index, TranslationUnit, TypeKind

CATALOGUES = "src/resources/catalogues"
CONFIGURE = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_FLAGS=-O1 -w", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
             "-DVESKARA_TESTS=ON", "-DVESKARA_TEST_DEALS=20",
             # List a program's tests when ctest runs, not when it is linked: a broken program cannot list them.
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]
BUILD_SECONDS = 900
# A test is out of time after LIMIT_TIMES its usual time plus LIMIT_SECONDS.
LIMIT_SECONDS, LIMIT_TIMES = 5, 10
MEMORY_BYTES = 4 << 30  # for each process: a mutant may allocate without end
RESULTS = ("not compiled", "same code", "killed", "out of time", "survived")


@dataclasses.dataclass(frozen=True, order=True)
class Mutant:
    """A change of a file, named by its path below the project's root: new replaces the bytes from start to end."""
    file: str
    start: int
    end: int
    new: str

    def applied(self, text):
        return text[:self.start] + self.new.encode() + text[self.end:]


# Finding mutants in clang's syntax tree

COMPARISONS = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)}
OPERATORS = COMPARISONS | {
    "&&": ("||",), "||": ("&&",), "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "&": ("|",),
    "|": ("&",), "<<": (">>",), ">>": ("<<",), "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",),
    "|=": ("&=",), "&=": ("|=",)}
UNARY_OPERATORS = {"!": "", "-": "", "~": "", "++": "--", "--": "++"}
INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlLzZ]*)")
FLOATING = re.compile(r"([0-9'.]+(?:[eE][-+]?[0-9]+)?)([fFlL]?)")
SYMMETRIC = ("max", "min", "swap")  # functions whose arguments may be swapped
ARITHMETIC = range(TypeKind.BOOL.value, TypeKind.LONGDOUBLE.value + 1)


def other_numbers(literal):
    """Returns what may replace a number: its neighbours, a flipped bit, its double and its half."""
    if match := INTEGER.fullmatch(literal):
        digits, suffix = match[1].replace("'", ""), match[2]
        if digits[:2] in ("0x", "0X"):  # a colour or a mask, where one more changes too little
            return [f"{int(digits, 16) ^ 8 << 4 * (len(digits) - 3):#x}{suffix}"]
        value = int(digits, 8 if digits[0] == "0" else 10)
        return [f"{other}{suffix}" for other in (value + 1, value - 1) if other >= 0]
    if match := FLOATING.fullmatch(literal):
        value, suffix = float(match[1].replace("'", "")), match[2]
        return [f"{other}{suffix}" for other in ((value * 2, value / 2) if value else (1.0,))]
    return []


class Finder:
    """Finds the mutants in the project's files that one translation unit reads."""

    def __init__(self, root, source, arguments, keys):
        self.root, self.keys, self.found, self.texts = root, keys, set(), {}
        unit = Index.create().parse(str(root / source), arguments,
                                    options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        nodes = [node for node in unit.cursor.get_children() if self.is_ours(node)]
        # The tree places a macro's arguments at the start of the macro. Most macros are assertions.
        self.macros = {(node.location.file.name, node.extent.start.offset)
                       for node in nodes if node.kind == CursorKind.MACRO_INSTANTIATION}
        for node in nodes:
            self.visit(node)

    def is_ours(self, node):
        return node.location.file and node.location.file.name.startswith(f"{self.root}/src/")

    def is_macro(self, node):
        start = node.extent.start
        return not start.file or (start.file.name, start.offset) in self.macros

    def visit(self, node):
        if node.kind.is_preprocessing() or self.is_macro(node):
            return
        self.file = node.extent.start.file.name
        if self.file not in self.texts:
            self.texts[self.file] = Path(self.file).read_bytes()
        self.text = self.texts[self.file]
        children = list(node.get_children())
        self.operators(node, children)
        self.constants(node)
        self.conditions(node, children)
        self.dropped_statements(node, children)
        self.swapped_arguments(node, children)
        for child in children:
            self.visit(child)

    def cut(self, start, end):
        return self.text[start:end].decode()

    def words(self, node):
        return self.cut(node.extent.start.offset, node.extent.end.offset)

    def add(self, start, end, new):
        self.found.add(Mutant(str(Path(self.file).relative_to(self.root)), start, end, new))

    def replace(self, node, new):
        self.add(node.extent.start.offset, node.extent.end.offset, new)

    def replace_between(self, start, end, table):
        """Replaces the operator in a range that holds nothing else but blanks."""
        gap = self.cut(start, end)
        start += len(gap) - len(gap.lstrip())
        for other in table.get(gap.strip(), ()):
            self.add(start, start + len(gap.strip()), other)

    def operators(self, node, children):
        inner = [(child.extent.start.offset, child.extent.end.offset) for child in children]
        if node.kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(inner) == 2:
            self.replace_between(inner[0][1], inner[1][0], OPERATORS)
        elif node.kind == CursorKind.CALL_EXPR and node.spelling.startswith("operator") and len(inner) == 3:
            self.replace_between(*inner[1], COMPARISONS)
        elif node.kind == CursorKind.UNARY_OPERATOR and len(inner) == 1:
            for place in ((node.extent.start.offset, inner[0][0]), (inner[0][1], node.extent.end.offset)):
                if self.cut(*place) in UNARY_OPERATORS:
                    self.add(*place, UNARY_OPERATORS[self.cut(*place)])

    def constants(self, node):
        words = self.words(node)
        if node.kind in (CursorKind.INTEGER_LITERAL, CursorKind.FLOATING_LITERAL):
            for other in other_numbers(words):
                self.replace(node, other)
        elif node.kind == CursorKind.CXX_BOOL_LITERAL_EXPR and words in ("true", "false"):
            self.replace(node, "false" if words == "true" else "true")
        elif node.kind == CursorKind.STRING_LITERAL and words[1:-1] in self.keys:
            index = self.keys.index(words[1:-1])
            self.replace(node, f'"{self.keys[index + 1 if index + 1 < len(self.keys) else index - 1]}"')

    def conditions(self, node, children):
        if node.kind == CursorKind.CONDITIONAL_OPERATOR:
            condition = children[0]
        elif node.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT):
            closed = (child for child in children if self.text[child.extent.end.offset:].lstrip().startswith(b")"))
            condition = next(closed, None)
        else:
            return
        if condition is None or not condition.kind.is_expression():
            return
        self.replace(condition, f"!({self.words(condition)})")
        if node.kind != CursorKind.WHILE_STMT:  # a forced loop would run never or for ever
            self.replace(condition, "true")
            self.replace(condition, "false")

    def dropped_statements(self, node, children):
        if not node.kind.is_statement():
            return
        for child in children:
            before = self.text[:child.extent.start.offset].rstrip()
            after = self.text[child.extent.end.offset:].lstrip()
            stands_alone = node.kind == CursorKind.COMPOUND_STMT or before.endswith((b")", b"else", b":"))
            if child.kind.is_expression() and stands_alone and after.startswith(b";") and not self.is_macro(child):
                self.replace(child, "(void)0")

    def swapped_arguments(self, node, children):
        if node.kind == CursorKind.CALL_EXPR and node.spelling not in SYMMETRIC:
            arguments = list(node.get_arguments())
        elif node.kind == CursorKind.INIT_LIST_EXPR:
            arguments = children
        else:
            return
        for first, second in zip(arguments, arguments[1:]):
            start, end = first.extent.start.offset, second.extent.end.offset
            between = self.cut(first.extent.end.offset, second.extent.start.offset)
            one, other = self.words(first), self.words(second)
            if between.strip() == "," and one != other and one[:1] != "." and self.alike(first.type, second.type):
                self.add(start, end, other + between + one)

    @staticmethod
    def alike(first, second):
        first, second = first.get_canonical(), second.get_canonical()
        both_numbers = first.kind.value in ARITHMETIC and second.kind.value in ARITHMETIC
        return both_numbers or first.spelling.removeprefix("const ") == second.spelling.removeprefix("const ")


def mutants_of(root, source, arguments, keys):
    return Finder(root, source, arguments, keys).found


def catalogue_keys(root):
    return sorted({key for file in (root / CATALOGUES).glob("*.cpp")
                   for key in re.findall(r'\{"([\w.]+)",', file.read_text())})


def all_mutants(tree, kept):
    """Returns the mutants of all files that tests link. Keeps them in a file, because finding them takes minutes."""
    if not kept.exists() or kept.stat().st_mtime < Path(__file__).stat().st_mtime:
        keys = catalogue_keys(tree.root)
        with multiprocessing.Pool() as pool:
            found = set().union(*pool.starmap(mutants_of, [(tree.root, *source, keys) for source in tree.sources()]))
        part = kept.with_suffix(".part")
        part.write_text(json.dumps([dataclasses.astuple(mutant) for mutant in sorted(found)]))
        part.rename(kept)
    return [Mutant(*fields) for fields in json.loads(kept.read_text())]


def drawn(mutants, root, seed):
    """Returns one mutant of each line that has any, in an order drawn from the seed. So a line counts once however many
    mutants it has, and a longer run begins with the mutants of a shorter one."""
    texts = {file: (root / file).read_bytes() for file in {mutant.file for mutant in mutants}}
    lines = collections.defaultdict(list)
    for mutant in sorted(mutants):
        lines[mutant.file, texts[mutant.file].count(b"\n", 0, mutant.start)].append(mutant)
    rng = random.Random(seed)
    chosen = [rng.choice(line) for line in lines.values()]
    rng.shuffle(chosen)
    return chosen


# Building and testing mutants

class Runner:
    """Runs commands, and kills those that still run when this program is stopped."""

    def __init__(self):
        self.stopping, self.running = threading.Event(), set()

    def run(self, command, seconds, **options):
        """Returns the status, or None if time was up, and the output."""
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True, **options)
        self.running.add(process)
        try:
            output = process.communicate(timeout=seconds)[0]
            status = process.returncode
        except subprocess.TimeoutExpired:
            self.end(process)
            output, status = process.communicate()[0], None
        self.end(process)  # processes that it left behind
        self.running.discard(process)
        if self.stopping.is_set():
            raise InterruptedError
        return status, output.decode(errors="replace")

    @staticmethod
    def end(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def stop(self):
        self.stopping.set()
        for process in list(self.running):
            self.end(process)


Test = collections.namedtuple("Test", "command programs properties")


class Tree:
    """A clone of the project with its own build, which tries one mutant at a time."""

    def __init__(self, project, root, runner):
        self.root, self.build_dir, self.home, self.runner = root, root / "build", root / "home", runner
        if not root.exists():
            self.must("git", "clone", "--quiet", "--shared", "--no-checkout", project, root)
        commit = subprocess.check_output(["git", "-C", project, "rev-parse", "HEAD"], text=True).strip()
        self.must("git", "-C", root, "checkout", "--quiet", "--force", "--detach", commit)
        self.must("cmake", "-S", root, "-B", self.build_dir, *CONFIGURE)
        # The order of the declarations, from the lowest folder up.
        self.folders = [folder for folder in re.findall(r"add_subdirectory\((\w+)\)",
                                                        (root / "tests/CMakeLists.txt").read_text())
                        if (root / "src" / folder).is_dir()]

    def must(self, *command):
        status, output = self.runner.run([str(word) for word in command], seconds=None)
        if status != 0:
            sys.exit(f"{' '.join(map(str, command))} ended with {status}\n{output}")
        return output

    def sources(self):
        """Yields the files of src/ that tests link, each with its compiler arguments."""
        linked = set(self.must("ninja", "-C", self.build_dir, "-t", "inputs",
                               *(f"tests/{folder}/all" for folder in self.folders)).splitlines())
        for entry in json.loads((self.build_dir / "compile_commands.json").read_text()):
            file = Path(entry["file"])
            if entry["file"] in linked and file.is_relative_to(self.root / "src") and CATALOGUES not in entry["file"]:
                flags = re.findall(r"(?:-I|-isystem ?|-D|-std=)\S+", entry["command"].replace("\\", ""))
                yield file.relative_to(self.root), [part for flag in flags for part in flag.split()]

    def prepare(self):
        self.must("ninja", "-C", self.build_dir, *(f"tests/{folder}/all" for folder in self.folders))
        listed = json.loads(self.must("ctest", "--test-dir", self.build_dir, "--show-only=json-v1"))
        self.tests = {}
        for test in listed["tests"]:
            programs = [Path(word) for word in test.get("command", [])
                        if Path(word).is_relative_to(self.build_dir / "tests")]
            if programs and programs[0].relative_to(self.build_dir).parts[1] in self.folders:
                properties = {item["name"]: item["value"] for item in test["properties"]}
                self.tests[test["name"]] = Test(test["command"], programs, properties)
        self.digests = {program: self.digest(program) for test in self.tests.values() for program in test.programs}

    @staticmethod
    def digest(program):
        return hashlib.sha256(program.read_bytes()).digest()

    def run_test(self, test, seconds):
        """Returns the test's status, or None if time was up."""
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        # A broken program must not touch the developer's own files.
        environment = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
        environment |= {"HOME": str(self.home), "TMPDIR": str(self.home)}
        environment |= dict(pair.split("=", 1) for pair in test.properties.get("ENVIRONMENT", []))
        directory = test.properties.get("WORKING_DIRECTORY", self.build_dir)
        return self.runner.run(test.command, seconds, cwd=directory, env=environment)[0]

    def measure(self, name):
        """Returns how long the test takes with nothing broken, or None if it fails."""
        begun = time.monotonic()
        status = self.run_test(self.tests[name], BUILD_SECONDS)
        return time.monotonic() - begun if status == 0 else None

    def try_mutant(self, mutant, seconds):
        """Returns the result and its reason: a test's name or the compiler's first error."""
        original = (self.root / mutant.file).read_bytes()
        (self.root / mutant.file).write_bytes(mutant.applied(original))
        try:
            return self.try_folders(mutant, seconds)
        finally:
            (self.root / mutant.file).write_bytes(original)

    def try_folders(self, mutant, seconds):
        result = "same code"
        nearest = mutant.file.split("/")[1]
        for folder in sorted(self.folders, key=lambda folder: folder != nearest):
            build = ["ninja", "-j1", "-C", str(self.build_dir), f"tests/{folder}/all"]
            status, output = self.runner.run(build, BUILD_SECONDS)
            if status != 0:
                complaints = [line for line in output.splitlines() if "error" in line]
                return "not compiled", (complaints or [f"ended with {status}"])[0]
            changed = {program for program, digest in self.digests.items()
                       if program.is_relative_to(self.build_dir / "tests" / folder) and self.digest(program) != digest}
            if changed:
                result = "survived"
            names = [name for name, test in self.tests.items()
                     if changed.intersection(test.programs) and seconds[name] is not None]
            for name in sorted(names, key=seconds.get):  # fast tests first
                status = self.run_test(self.tests[name], LIMIT_SECONDS + LIMIT_TIMES * seconds[name])
                if status != 0:
                    return "out of time" if status is None else "killed", name
        return result, ""


class Record:
    """The results for a seed, in a file with one line of JSON each. They hold until src/ changes; mutants that survived or
    ran out of time are tried again after the tests change."""

    def __init__(self, project, path):
        self.path, self.lock, self.results, self.seconds = path, threading.Lock(), {}, {}
        self.versions = {folder: subprocess.check_output(["git", "-C", project, "rev-parse", f"HEAD:{folder}"],
                                                         text=True).strip() for folder in ("src", "tests")}
        path.parent.mkdir(parents=True, exist_ok=True)
        path.touch()
        for line in path.read_text().splitlines():
            try:
                entry = json.loads(line)
            except ValueError:  # the run ended while it was written
                continue
            if entry["src"] != self.versions["src"]:
                continue
            same_tests = entry["tests"] == self.versions["tests"]
            if "seconds" in entry and same_tests:
                self.seconds = entry["seconds"]
            if "mutant" in entry and (same_tests or entry["result"] not in ("survived", "out of time")):
                self.results[Mutant(**entry["mutant"])] = entry["result"]

    def add(self, mutant, result, told_by, took):
        self.results[mutant] = result
        self.write({"mutant": dataclasses.asdict(mutant), "result": result, "told by": told_by, "took": took})

    def write(self, entry):
        with self.lock, self.path.open("a") as file:
            file.write(json.dumps(self.versions | entry) + "\n")


def line_of(mutant, text):
    line = text.count(b"\n", 0, mutant.start) + 1
    return f"{mutant.file}:{line}"


def report(mutants, results, root):
    """Prints the survivors as diffs, and a table of the results by folder."""
    for mutant in sorted(mutants):
        if results[mutant] == "survived":
            text = (root / mutant.file).read_bytes()
            before, after = (version.decode().splitlines(keepends=True) for version in (text, mutant.applied(text)))
            print(f"\n{line_of(mutant, text)} survived")
            print("".join(list(difflib.unified_diff(before, after, n=2))[2:]), end="")
    counts = collections.defaultdict(collections.Counter)
    for mutant in mutants:
        counts[mutant.file.split("/")[1]][results[mutant]] += 1
    counts["all"] = sum(counts.values(), collections.Counter())
    print("\n" + f"{'folder':<12}" + "".join(f"{name:>18}" for name in RESULTS))
    for folder, count in counts.items():
        tried = sum(count[name] for name in RESULTS[2:])
        print(f"{folder:<12}" + "".join(f"{count[name]:>18}" for name in RESULTS[:2]) + "".join(
            f"{f'{count[name]} ({100 * count[name] / max(tried, 1):.1f} %)':>18}" for name in RESULTS[2:]))


def share(trees, items, work):
    """Calls work(tree, item) once for each item. The trees work in parallel, each on one item at a time."""
    waiting = queue.SimpleQueue()
    for item in items:
        waiting.put(item)

    def worker(tree):
        while True:
            try:
                item = waiting.get_nowait()
            except queue.Empty:
                return
            work(tree, item)

    with ThreadPoolExecutor(len(trees)) as pool:
        try:
            list(pool.map(worker, trees))
        except BaseException:
            trees[0].runner.stop()
            raise


def try_all(mutants, trees, record):
    share(trees, trees, lambda _, tree: tree.prepare())
    if not record.seconds:
        print("Running the tests with nothing broken", flush=True)
        share(trees, trees[0].tests, lambda tree, name: record.seconds.update({name: tree.measure(name)}))
        record.write({"seconds": record.seconds})
    for name in sorted(name for name, seconds in record.seconds.items() if seconds is None):
        print(f"Left out, for it fails with nothing broken: {name}", flush=True)

    def try_file(tree, file):
        for mutant in mutants:
            if mutant.file == file and mutant not in record.results:
                begun = time.monotonic()
                result, told_by = tree.try_mutant(mutant, record.seconds)
                took = round(time.monotonic() - begun, 1)
                record.add(mutant, result, told_by, took)
                known = sum(mutant in record.results for mutant in mutants)
                where = line_of(mutant, (tree.root / file).read_bytes())
                print(f"{known}/{len(mutants)} {where} {result} after {took} s {told_by}".rstrip(), flush=True)

    # One file at a time, so that the other files need not be compiled again.
    share(trees, dict.fromkeys(mutant.file for mutant in mutants if mutant not in record.results), try_file)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("count", type=int)
    parser.add_argument("seed")
    parser.add_argument("folders", nargs="*", help="folders of src/; all if none is named")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("Ended by SIGTERM; the same command goes on."))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    project, kept = Path.cwd(), Path.cwd() / "build/mutants"
    record = Record(project, kept / arguments.seed / "results.jsonl")
    runner = Runner()
    trees = [Tree(project, kept / f"tree-{number + 1}", runner) for number in range(os.cpu_count())]
    root = trees[0].root
    found = all_mutants(trees[0], kept / f"{record.versions['src']}.json")
    mutants = [mutant for mutant in drawn(found, root, arguments.seed)
               if not arguments.folders or mutant.file.split("/")[1] in arguments.folders][:arguments.count]
    print(f"{len(mutants)} of {len(found)} mutants", flush=True)
    if any(mutant not in record.results for mutant in mutants):
        try_all(mutants, trees, record)
    report(mutants, record.results, root)


if __name__ == "__main__":
    main()
