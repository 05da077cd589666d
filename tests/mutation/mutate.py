#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Judges the tests: makes small faults in the sources, one at a time, and reports which of them no test notices.

Nothing is changed in the working tree: each worker has a copy of it with a build of its own under build/mutation.
"""
import argparse
import concurrent.futures
import dataclasses
import fnmatch
import math
import os
import pathlib
import queue
import random
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

from faults import faults_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = ROOT / "build" / "mutation"
EQUIVALENT = ROOT / "tests" / "mutation" / "equivalent.txt"
LAST_SURVIVORS = HERE / "survivors.txt"

# The tests that cover a folder of the sources, the quickest first; the first that fails decides.
TESTS = {
    "src/core": ["core", "report", "adsb", "modes", "vectors", "track", "airspace", "end_to_end"],
    "src/modes": ["vectors", "modes", "track", "airspace", "end_to_end"],
    "src/adsb": ["adsb", "vectors", "track", "airspace", "end_to_end"],
    "src/track": ["report", "track", "airspace", "end_to_end"],
    "src/report": ["report", "track", "airspace", "end_to_end"],
    "src/airspace": ["airspace", "end_to_end"],
}
MOST_SURVIVORS = 0.03
COMPILE_SECONDS = 120
COMPILE_FLAGS = "-O0 -D_GLIBCXX_ASSERTIONS"  # quick, and an index beyond a table is noticed
TEST_SECONDS = 60
TEST_MEMORY = 4 << 30  # a fault that makes a loop swallow memory is noticed by that

NOTICED, SURVIVED, NOT_VIABLE = "noticed", "survived", "not viable"


@dataclasses.dataclass
class Result:
    fault: object
    outcome: str
    by: str
    seconds: float


def sources():
    return sorted(path for path in (ROOT / "src").rglob("*") if path.suffix in (".h", ".cpp"))


def tests_for(file):
    """Of the folder of a file, or of the next one above it that has tests."""
    for folder in map(str, pathlib.PurePath(file).parents):
        if folder in TESTS:
            return TESTS[folder]
    sys.exit(f"mutate: TESTS does not say which tests cover {file}")


def changed_since(revision):
    """The files that differ from a revision, new ones included."""
    def git(*command):
        return subprocess.run(["git", *command], cwd=ROOT, check=True, capture_output=True, text=True).stdout.splitlines()

    return set(git("diff", "--name-only", "--diff-filter=d", revision, "--") + git("ls-files", "--others", "--exclude-standard"))


def read_equivalents():
    """{key of a fault: why} of the faults that change nothing anybody could see."""
    entries = {}
    for paragraph in EQUIVALENT.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in paragraph.splitlines() if line and not line.startswith("#")]
        if not lines:
            continue
        entry = dict(line.split(": ", 1) for line in lines)
        if list(entry) != ["in", "was", "now", "why"]:
            sys.exit(f"mutate: {EQUIVALENT.name}: not in, was, now, why:\n{paragraph}")
        entries[entry["in"], entry["was"], entry["now"]] = entry["why"]
    return entries


def split_off_equivalents(faults):
    """The faults that somebody could see, and how many could not be seen."""
    equivalents = read_equivalents()
    for scope, was, now in equivalents.keys() - {fault.key for fault in faults}:
        print(f"{EQUIVALENT.name}: of a statement that has changed, to be judged again or taken out: {scope}: {was} -> {now}")
    visible = [fault for fault in faults if fault.key not in equivalents]
    return visible, len(faults) - len(visible)


def choose(faults, count, seed):
    """`count` of the faults: of each file by its size, of each kind in turn. The same for the same seed."""
    files = {}
    for fault in faults:
        files.setdefault(fault.file, []).append(fault)
    share = {file: count * len(of_file) / len(faults) for file, of_file in files.items()}
    quota = {file: int(of_file) for file, of_file in share.items()}
    by_rest = sorted(files, key=lambda file: (quota[file] - share[file], file))
    for file in by_rest[:count - sum(quota.values())]:
        quota[file] += 1
    chosen = []
    for file, of_file in files.items():
        chance = random.Random(f"{seed} {file}")
        kinds = {}
        for fault in chance.sample(of_file, len(of_file)):
            kinds.setdefault(fault.kind, []).append(fault)
        turns = list(kinds.values())
        chance.shuffle(turns)
        in_turn = [kind[turn] for turn in range(len(of_file)) for kind in turns if turn < len(kind)]
        chosen += sorted(in_turn[:quota[file]], key=lambda fault: (fault.line, fault.begin))
    return chosen


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (TEST_MEMORY, TEST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, folder, seconds, prepare=None):
    """The exit status, None when the time was up, and the output."""
    with subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=prepare) as process:
        try:
            output, _ = process.communicate(timeout=seconds)
            return process.returncode, output.decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)  # of a session of its own
            process.communicate()
            return None, ""


class Worker:
    """A copy of the working tree and its build."""

    def __init__(self, number):
        self.tree = HERE / f"worker{number}" / "tree"
        self.folder = HERE / f"worker{number}" / "build"
        self.seconds = {}  # that each test program may take: a fault that makes a loop endless is noticed by the time

    def prepare(self):
        self._copy_tree()
        status, output = run(
            ["cmake", "-S", str(self.tree), "-B", str(self.folder), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_COMPILER=clang++", f"-DCMAKE_CXX_FLAGS_DEBUG={COMPILE_FLAGS}", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld",
             "-DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=lld",
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",  # only the check runs the tests
             f"-DCMAKE_PROJECT_trevallo_INCLUDE={self.tree}/tests/mutation/quick_builds.cmake"], ROOT, 300)
        if status != 0:
            sys.exit(output)
        for tests in {name: None for names in TESTS.values() for name in names}:
            if not self.build(tests, 3600):
                sys.exit(f"mutate: {self.folder}: the build of {tests} fails without any fault")
            begin = time.monotonic()
            passed = self.passes(tests)
            self.seconds[tests] = 5 + 4 * (time.monotonic() - begin)
            if not passed:
                sys.exit(f"mutate: the tests of {tests} fail without any fault")

    def _copy_tree(self):
        """Files that are the same stay untouched, so that they are not compiled again."""
        names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                               check=True, capture_output=True, text=True).stdout.split("\0")
        present = {name for name in names if name and (ROOT / name).is_file()}
        for name in present:
            source, copy = ROOT / name, self.tree / name
            if not copy.exists() or copy.read_bytes() != source.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, copy)
        for path in self.tree.rglob("*"):
            if path.is_file() and str(path.relative_to(self.tree)) not in present:
                path.unlink()

    def build(self, tests, seconds=COMPILE_SECONDS):
        return run(["ninja", "-C", str(self.folder), "-j1", f"trevallo_{tests}_tests"], ROOT, seconds)[0] == 0

    def passes(self, tests):
        return run([f"./trevallo_{tests}_tests", "--gtest_fail_fast", "--gtest_brief=1"], self.folder / "tests" / tests,
                   self.seconds.get(tests, TEST_SECONDS), limit_memory)[0] == 0

    def judge(self, fault):
        begin = time.monotonic()
        path = self.tree / fault.file
        right = path.read_text(encoding="utf-8")
        path.write_text(fault.applied_to(right), encoding="utf-8")
        try:
            outcome, by = self._outcome(tests_for(fault.file))
        finally:
            path.write_text(right, encoding="utf-8")
        return Result(fault, outcome, by, time.monotonic() - begin)

    def _outcome(self, programs):
        for tests in programs:
            if not self.build(tests):
                return NOT_VIABLE, ""
            if not self.passes(tests):
                return NOTICED, tests
        return SURVIVED, ""


def judge_all(faults, jobs, minutes):
    """Each worker takes a file at a time, so that only one source is compiled for each fault. Ends when the time is up."""
    by_file = {}
    for fault in faults:
        by_file.setdefault(fault.file, []).append(fault)
    work = queue.Queue()
    for of_file in sorted(by_file.values(), key=lambda each: (each[0].file.endswith(".cpp"), -len(each))):
        work.put(of_file)
    results, lock = [], threading.Lock()
    end = time.monotonic() + 60 * minutes if minutes else math.inf

    def labour(worker):
        while True:
            try:
                of_file = work.get_nowait()
            except queue.Empty:
                return
            for fault in of_file:
                if time.monotonic() > end:
                    return
                result = worker.judge(fault)
                with lock:
                    results.append(result)
                    print(f"{len(results):4}/{len(faults)} {result.seconds:5.1f} s  {result.outcome:10} "
                          f"{result.by:10} {fault.id}  {fault.file}:{fault.line}: {fault.now}", flush=True)

    workers = [Worker(number) for number in range(min(jobs, len(by_file)))]
    for worker in workers:
        worker.prepare()
    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        for labourer in [pool.submit(labour, worker) for worker in workers]:
            labourer.result()
    return sorted(results, key=lambda result: (result.fault.file, result.fault.line, result.fault.begin))


def report(results, equivalent):
    """Prints the table and the figures; the exit status."""
    outcome = {name: [each for each in results if each.outcome == name] for name in (NOTICED, SURVIVED, NOT_VIABLE)}
    survivors = outcome[SURVIVED]
    if survivors:
        print("\nNo test noticed:")
    for result in survivors:
        fault = result.fault
        print(f"\n  {fault.file}:{fault.line}  ({fault.kind}, {fault.id})\n    was: {fault.was}\n    now: {fault.now}")
    LAST_SURVIVORS.write_text("".join(f"{result.fault.id}\n" for result in survivors), encoding="utf-8")
    viable = len(survivors) + len(outcome[NOTICED])
    share = len(survivors) / viable if viable else 0
    print(f"\n{len(results)} made, {len(outcome[NOT_VIABLE])} not viable, {len(outcome[NOTICED])} noticed, "
          f"{len(survivors)} survived of {viable} ({100 * share:.1f} %); "
          f"{equivalent} left out, whose effect nobody could see")
    return 1 if share > MOST_SURVIVORS else 0


def arguments():
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__)
    parser.add_argument("--count", type=int, default=400, help="how many faults to make (%(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="another number chooses other faults (%(default)s)")
    parser.add_argument("--file", default="*", help="only in files like this, for example 'src/track/*'")
    parser.add_argument("--since", metavar="REVISION", help="only in files that have changed since this revision")
    parser.add_argument("--minutes", type=float, help="make no more faults after this time")
    parser.add_argument("--jobs", type=int, default=2, help="how many at the same time (%(default)s)")
    parser.add_argument("--only", nargs="+", metavar="ID", help="these faults; 'last': those that survived last time")
    parser.add_argument("--list", action="store_true", help="print the faults instead of making them")
    return parser.parse_args()


def chosen_faults(options):
    """The faults to make, and how many of those that are wanted could be seen by nobody."""
    every = [fault for path in sources()
             for fault in faults_of(str(path.relative_to(ROOT)), path.read_text(encoding="utf-8"))]
    visible, _ = split_off_equivalents(every)
    if options.only:
        wanted = set(LAST_SURVIVORS.read_text(encoding="utf-8").split() if options.only == ["last"] else options.only)
        return [fault for fault in visible if fault.id in wanted], sum(fault.id in wanted for fault in every if
                                                                       fault not in visible)
    files = changed_since(options.since) if options.since else {fault.file for fault in every}
    every = [fault for fault in every if fault.file in files and fnmatch.fnmatch(fault.file, options.file)]
    chosen = choose(every, min(options.count, len(every)), options.seed) if every else []
    visible = set(visible)
    return [fault for fault in chosen if fault in visible], sum(fault not in visible for fault in chosen)


def main():
    options = arguments()
    faults, equivalent = chosen_faults(options)
    if options.list:
        for fault in faults:
            print(f"{fault.id}  {fault.file}:{fault.line}  {fault.kind}\n    was: {fault.was}\n    now: {fault.now}")
        print(f"{len(faults)} faults")
        return 0
    if not faults:
        print("mutate: no fault to make")
        return 0 if options.since else 1
    HERE.mkdir(parents=True, exist_ok=True)
    for fault in faults:
        tests_for(fault.file)  # says so now if there are none
    results = judge_all(faults, options.jobs, options.minutes)
    if len(results) < len(faults):
        print(f"\nThe time was up: {len(faults) - len(results)} of {len(faults)} faults have not been made.")
    return report(results, equivalent)


if __name__ == "__main__":
    sys.exit(main())
