#!/usr/bin/env python3
"""Asks whether the tests notice faults: makes small random ones in a copy of the tree, one at a time, builds what each
needs and runs the tests of its subject. Prints what survived and the totals; the tree itself is left alone.

A mutant is killed when a test fails, crashes or does not end in time. One that does not compile is drawn again.
"""

import argparse
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "mutants"
TEST_SECONDS = 120

# What is mutated, and the test program whose failing kills it.
SUBJECTS = {
    "decoder": (["common/entities.cpp"], "tests/common/test_common"),
    "store": (["common/DataStoreTxt.cpp", "common/detail/StoreRewrite.cpp", "common/detail/WordReader.cpp"],
              "tests/common/test_common"),
    "walks": (["common/CmpiManagedInstanceCollection.cpp", "common/detail/AssociationWalk.cpp",
               "common/detail/LockedWalk.h"], "tests/common/test_common"),
    "decorators": (["common/LoggedProvider.cpp", "common/PerfmonDecorator.cpp", "common/AutostartDecorator.cpp",
                    "common/DecoratorUtils.cpp"], "tests/common/test_common"),
    "paths": (["cmpicpp/detail/Equality.cpp", "cmpicpp/detail/TextForm.cpp", "cmpicpp/CmpiObjectPath.cpp",
               "cmpicpp/detail/Portable.cpp"], "tests/cmpicpp/test_cmpicpp"),
    "http": (["cimhost/http/HttpParser.cpp", "cimhost/http/HttpHead.cpp", "cimhost/http/HttpRules.cpp",
              "cimhost/http/HttpClient.cpp", "cimhost/http/BasicAuth.cpp", "cimhost/http/PasswordFile.cpp"],
             "tests/cimhost/http/test_cimhost_http"),
    "wql": (["cimhost/query/WqlEvaluation.cpp", "cimhost/query/WqlLexer.cpp", "cimhost/query/WqlNormalForm.cpp",
             "cimhost/query/WqlParser.cpp", "cimhost/query/WqlPattern.cpp"], "tests/cimhost/query/test_cimhost_query"),
    "conformer": (["cimhost/repository/InstanceConformer.cpp"], "tests/cimhost/repository/test_cimhost_repository"),
}

OPPOSITES = {" == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ",
             " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + ", "true": "false", "false": "true",
             "break;": "continue;", "continue;": "break;"}
SWAPS = re.compile(r" (?:==|!=|<=?|>=?|&&|\|\||\+|-) |\b(?:true|false|break;|continue;)(?!\w)")
NUMBERS = re.compile(r"(?<![\w.'])(\d+)(?=[uUlL]*\b(?![.'x]))")
NEGATIONS = re.compile(r"(?<![\w)])!(?=[\w(])")
STATEMENTS = re.compile(r"^(\s+)(?!return|throw|using|const|auto|static|case|delete|if|for|while)"
                        r"[\w.:\->*\[\]]+(?:\(.*\)| [+\-|&]?= .*);$")
LITERALS = re.compile(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)+\'|//.*$')


def changes_of(line):
    """Every line that one small fault makes of this one."""
    if line.lstrip().startswith(("#", "//", "using ", "static_assert", "namespace", "template", "class ", "struct ")):
        return
    code = LITERALS.sub(lambda found: " " * len(found[0]), line)
    for found in SWAPS.finditer(code):
        yield line[:found.start()] + OPPOSITES[found[0]] + line[found.end():]
    for found in NUMBERS.finditer(code):
        yield line[:found.start()] + str(int(found[1]) + 1) + line[found.end():]
    for found in NEGATIONS.finditer(code):
        yield line[:found.start()] + line[found.end():]
    if STATEMENTS.match(code):
        yield STATEMENTS.match(code)[1] + ";"


def mutants_of(subject):
    """(file, line number, new line) of every mutant of the subject."""
    for name in SUBJECTS[subject][0]:
        for number, line in enumerate((ROOT / name).read_text(encoding="utf-8").splitlines()):
            for changed in changes_of(line):
                yield name, number, changed


class Lane:
    """A copy of the tree with a build of its own, in which one mutant at a time lives."""

    def __init__(self, number, targets):
        self.number = number
        self.tree = BUILD / f"tree-{number}"
        self.build = self.tree / "build" / "dev"
        # One copy finds what the other compiled.
        self.environment = {**os.environ, "CCACHE_BASEDIR": str(self.tree), "CCACHE_NOHASHDIR": "1"}
        self._copy()
        self._configure()
        if not self.make(targets):
            sys.exit(f"The tree does not build: cmake --build {self.build}")

    def _copy(self):
        """Rewrites only what differs, so that what was built before stays built."""
        names = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True)
        for name in filter(None, names.stdout.split("\0")):
            source, copy = ROOT / name, self.tree / name
            text = source.read_bytes()
            if name == "tests/CMakeLists.txt":
                text = b"set(CMAKE_UNITY_BUILD ON)\n" + text
            if not copy.exists() or copy.read_bytes() != text:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(text)
                shutil.copymode(source, copy)

    def _configure(self):
        # Files by themselves, but for the tests: a mutant costs the compiling of its own file. A warning kills none.
        subprocess.run(["cmake", "--preset", "dev", "-DCMAKE_UNITY_BUILD=OFF", "-DPYL_STRICT=OFF"], cwd=self.tree,
                       check=True, env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def make(self, targets):
        done = subprocess.run(["ninja", "-j1", "-C", self.build, *targets], check=False, env=self.environment,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return done.returncode == 0

    def try_out(self, mutant, program):
        """'killed', 'survived', or None where it does not compile."""
        name, number, changed = mutant
        path = self.tree / name
        text = path.read_text(encoding="utf-8")
        lines = text.splitlines()
        lines[number] = changed
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        try:
            return self._verdict(program) if self.make([program]) else None
        finally:
            path.write_text(text, encoding="utf-8")

    def _verdict(self, program):
        try:
            done = subprocess.run([self.build / program, "--gtest_brief=1", "--gtest_fail_fast"], check=False,
                                  cwd=(self.build / program).parent, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, timeout=TEST_SECONDS)
        except subprocess.TimeoutExpired:
            return "killed"
        return "killed" if done.returncode else "survived"


def describe(mutant):
    name, number, changed = mutant
    before = (ROOT / name).read_text(encoding="utf-8").splitlines()[number]
    return f"{name}:{number + 1}\n  - {before.strip()}\n  + {changed.strip()}"


def run_lane(lane, waiting, wanted):
    """Tries mutants out until each subject has as many verdicts as are wanted of it."""
    verdicts = []
    while waiting:
        try:
            subject, mutant = waiting.pop()
        except IndexError:
            break
        if wanted[subject] <= 0:
            continue
        wanted[subject] -= 1
        verdict = lane.try_out(mutant, SUBJECTS[subject][1])
        if verdict is None:
            wanted[subject] += 1
            continue
        verdicts.append((subject, mutant, verdict))
        if len(verdicts) % 10 == 0:
            survived = sum(each == "survived" for _, _, each in verdicts)
            print(f"lane {lane.number}: {len(verdicts)} tried, {survived} survived", flush=True)
        if verdict == "survived":
            print(f"survived: {describe(mutant)}", flush=True)
    return verdicts


def report(verdicts):
    print(f"{'subject':12}{'killed':>8}{'survived':>10}")
    for subject in SUBJECTS:
        of_this = [verdict for name, _, verdict in verdicts if name == subject]
        if of_this:
            print(f"{subject:12}{of_this.count('killed'):8}{of_this.count('survived'):10}")
    killed = sum(verdict == "killed" for _, _, verdict in verdicts)
    print(f"{killed} of {len(verdicts)} mutants killed, {killed / max(1, len(verdicts)):.0%}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=200, help="how many mutants (default 200)")
    parser.add_argument("--seed", type=int, default=1, help="another seed draws other mutants (default 1)")
    parser.add_argument("--lanes", type=int, default=2, help="how many at a time (default 2)")
    parser.add_argument("subjects", nargs="*", help=f"of these alone: {', '.join(SUBJECTS)}")
    options = parser.parse_args()
    subjects = options.subjects or list(SUBJECTS)
    if unknown := [name for name in subjects if name not in SUBJECTS]:
        parser.error(f"no subject '{unknown[0]}'")
    draw = random.Random(options.seed)
    wanted = {name: options.count // len(subjects) + (index < options.count % len(subjects))
              for index, name in enumerate(subjects)}
    waiting = [(name, mutant) for name in subjects for mutant in mutants_of(name)]
    draw.shuffle(waiting)
    print(f"{len(waiting)} mutants could be made; building {options.lanes} copies of the tree ...", flush=True)
    targets = sorted({SUBJECTS[name][1] for name in subjects})
    lanes = [Lane(number, targets) for number in range(options.lanes)]
    print(f"Trying {options.count} ...", flush=True)
    with concurrent.futures.ThreadPoolExecutor(options.lanes) as pool:
        runs = [pool.submit(run_lane, lane, waiting, wanted) for lane in lanes]
        report([verdict for run in runs for verdict in run.result()])


if __name__ == "__main__":
    main()
