"""Applies small changes to the plug-in, one at a time, and reports those that no test detects. Run by tools/mutate."""

import argparse
import hashlib
import random
import re
import signal
import sys
import threading
import time
from collections import Counter
from dataclasses import dataclass
from pathlib import Path

import workshop
from mutants import find_mutants
from source import Source

ROOT = Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build" / "mutation"
EXPLAINED = Path(__file__).with_name("equivalent.txt")
UNCOMPILED = "does not compile"
SURVIVED = "survived"
_KILLED_BY = {"fails": "fails", "crashes": "crashes", "out": "times out"}


def read_arguments():
    parser = argparse.ArgumentParser(prog="tools/mutate", description=__doc__.split(" Run by")[0])
    parser.add_argument("--list", action="store_true", help="list the mutants without trying them")
    parser.add_argument("--only", action="append", metavar="FILE", help="mutants of this file; may be repeated")
    parser.add_argument("--ids", metavar="N,N...", help="mutants with these numbers")
    parser.add_argument("--headers", action="store_true", help="include the headers")
    parser.add_argument("--explained", action="store_true", help="only the mutants that equivalent.txt explains")
    parser.add_argument("--sample", type=int, metavar="N", help="a random sample of N mutants")
    parser.add_argument("--draw", type=int, default=1, metavar="K", help="which random sample to draw, default 1")
    parser.add_argument("--jobs", type=int, default=2, choices=range(1, 10), metavar="J", help="default 2")
    parser.add_argument("--resume", action="store_true", help="continue with the log of an earlier run")
    parser.add_argument("--survivors", action="store_true", help="with --resume: try the survivors again")
    parser.add_argument("--tests", default="", metavar="REGEX", help="build and try only the tests whose names match")
    parser.add_argument("--longest", type=float, default=20, metavar="S", help="skip tests that take over S seconds")
    parser.add_argument("--log", type=Path, default=FOLDER / "log.txt", help="file for the results")
    return parser.parse_args()


def all_mutants():
    """Headers come last, so that adding one does not renumber the others."""
    paths = sorted(ROOT.glob("plugin/*.cpp")) + sorted(ROOT.glob("plugin/*.h"))
    return find_mutants([Source(f"plugin/{path.name}", path.read_text()) for path in paths])


def choose(mutants, arguments, explanations):
    """The mutants selected by the arguments."""
    mutants = [mutant for mutant in mutants if (explain_key(mutant) in explanations) == arguments.explained]
    if arguments.only:
        names = {Path(name).name for name in arguments.only}
        mutants = [mutant for mutant in mutants if Path(mutant.source.name).name in names]
    elif not arguments.headers:
        mutants = [mutant for mutant in mutants if mutant.source.name.endswith(".cpp")]
    if arguments.ids:
        numbers = {int(number) for number in arguments.ids.split(",")}
        mutants = [mutant for mutant in mutants if mutant.number in numbers]
    if arguments.sample is not None and arguments.sample < len(mutants):
        chosen = random.Random(arguments.draw).sample(mutants, arguments.sample)
        mutants = sorted(chosen, key=lambda mutant: mutant.number)
    return mutants


def describe(mutant):
    return f"{mutant.number}\t{mutant.source.name}:{mutant.line}\t{mutant.kind}\t{mutant.change}"


def explain_key(mutant):
    return f"{mutant.source.name}: {mutant.change}", mutant.line_text


def read_explanations():
    """Maps the change and the source line of each mutant in equivalent.txt to its line number there."""
    explanations, changes = {}, {}
    for number, line in enumerate(EXPLAINED.read_text().splitlines(), 1):
        if line.startswith("plugin/"):
            changes[line] = number
        elif line.startswith(" ") and changes:
            explanations.update({(change, line.strip()): place for change, place in changes.items()})
            changes = {}
    return explanations


class Log:
    """The results so far, one per line. The first line identifies the sources that they are valid for."""

    def __init__(self, path, resume):
        self.path = path
        self.results = {}
        digest = hashlib.sha256()
        for source in [*sorted(ROOT.glob("plugin/*.[ch]*")), *sorted(ROOT.glob("tools/mutation/*.py"))]:
            digest.update(source.read_bytes())
        header = f"# sources {digest.hexdigest()[:16]}"
        if resume and path.exists():
            self._read(header)
        else:
            path.parent.mkdir(parents=True, exist_ok=True)
            if path.exists():
                path.replace(path.with_suffix(".old"))
            path.write_text(header + "\n")

    def _read(self, header):
        first, *lines = self.path.read_text().splitlines()
        if first != header:
            sys.exit(f"tools/mutate: {self.path} belongs to other sources: run without --resume")
        for line in lines:
            number, *_, result = line.split("\t")
            self.results[int(number)] = result

    def add(self, mutant, result):
        self.results[mutant.number] = result
        with self.path.open("a") as file:
            file.write(f"{describe(mutant)}\t{result}\n")


@dataclass
class TestOrder:
    """The order in which a mutant's tests run: those of its own subject first, in each group the fastest first."""

    times: dict
    stems: list

    def tests(self, name):
        stem = Path(name).stem
        return sorted(self.times, key=lambda test: (not self._is_own(test, stem), self.times[test], test))

    # A test belongs to the source whose name is the longest prefix of its own: tst_mapimport_mif_mid belongs to
    # mapimport_mif. It is also an own test of mapimport, but not of mapimport_dxf.
    def _is_own(self, test, stem):
        owner = max((s for s in self.stems if test.startswith(f"tst_{s}")), key=len, default=None)
        return owner is not None and (f"{owner}_".startswith(f"{stem}_") or f"{stem}_".startswith(f"{owner}_"))


def in_parallel(jobs, items, work):
    """Distributes the items over the jobs. An error or Ctrl-C stops all of them."""
    items, lock, errors = iter(items), threading.Lock(), []

    def take_items(job):
        try:
            while not workshop.stop.is_set():
                with lock:
                    item = next(items, None)
                if item is None:
                    return
                work(job, item)
        except workshop.Stopped:
            pass
        except BaseException as error:  # raised again by the main thread
            errors.append(error)
            workshop.stop.set()

    threads = [threading.Thread(target=take_items, args=(job,)) for job in jobs]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if errors:
        raise errors[0]


def measure(jobs, tests, longest):
    """The duration of each test without a mutant. Tests that take too long are left out; all others must pass."""
    times, failures, left_out = {}, [], []

    def work(job, test):
        result, took = job.try_test(test, longest)
        if result == "times out" or took > longest:
            left_out.append(test)
        elif result:
            failures.append(f"{test} {result}")
        else:
            times[test] = took

    in_parallel(jobs, tests, work)
    if failures and not workshop.stop.is_set():
        sys.exit(f"tools/mutate: fails without a mutant: {', '.join(sorted(failures))}")
    print(f"Tests left out because they take too long: {', '.join(sorted(left_out)) or 'none'}", file=sys.stderr)
    return times


def try_mutant(job, mutant, order):
    name = Path(mutant.source.name).name
    try:
        if not job.build(name, mutant.apply()):
            return UNCOMPILED
        for test in order.tests(name):
            result, _ = job.try_test(test, 10 * order.times[test])
            if result:
                return f"killed: {test} {result}"
        return SURVIVED
    finally:
        job.restore()


def try_all(mutants, arguments, log):
    tests = sorted(path.stem for path in ROOT.glob("tests/tst_*.cpp") if re.search(arguments.tests, path.stem))
    if not tests:
        sys.exit(f"tools/mutate: no test name matches {arguments.tests}")
    base = workshop.Base(ROOT, FOLDER / "base", tests)
    jobs = [workshop.Job(base, number) for number in range(arguments.jobs)]
    print(f"Running {len(tests)} tests without a mutant", file=sys.stderr)
    times = measure(jobs, tests, arguments.longest)
    print(f"They take {sum(times.values()):.0f} s; trying {len(mutants)} mutants", file=sys.stderr)
    order = TestOrder(times, [Path(name).stem for name in base.compile])
    lock, begin, done = threading.Lock(), time.monotonic(), 0

    def work(job, mutant):
        nonlocal done
        result = try_mutant(job, mutant, order)
        with lock:
            done += 1
            log.add(mutant, result)
            each = (time.monotonic() - begin) / done
            print(f"{done}/{len(mutants)}, {each:.1f} s each: {describe(mutant)}: {result}", file=sys.stderr)

    if not workshop.stop.is_set():
        in_parallel(jobs, mutants, work)


def summarize(mutants, results, list_survivors):
    tried = [mutant for mutant in mutants if mutant.number in results]
    survivors = [mutant for mutant in tried if results[mutant.number] == SURVIVED]
    uncompiled = sum(results[mutant.number] == UNCOMPILED for mutant in tried)
    killed = len(tried) - uncompiled - len(survivors)
    for mutant in survivors if list_survivors else []:
        print(f"{mutant.source.name}:{mutant.line}: {mutant.change}\n    {mutant.line_text}")
    if len(tried) < len(mutants):
        print(f"{len(mutants) - len(tried)} of {len(mutants)} mutants are left: continue with --resume")
    share = f"{100 * killed / (killed + len(survivors)):.1f} %" if killed + len(survivors) > 0 else "none"
    print(
        f"{len(tried)} mutants, {killed} killed, {len(survivors)} survived, {uncompiled} did not compile; "
        f"{share} killed"
    )
    ways = Counter(results[m.number].split()[-1] for m in tried if results[m.number].startswith("killed"))
    if ways:
        print("Killed by a test that " + ", ".join(f"{_KILLED_BY[way]}: {count}" for way, count in ways.most_common()))


def report_wrong_explanations(mutants, explanations, results):
    """Lists explanations of changes that no longer exist, and of mutants that a test has killed."""
    keys = {explain_key(mutant): mutant for mutant in mutants}
    for key, line_number in explanations.items():
        place = f"{EXPLAINED.relative_to(ROOT)}:{line_number}"
        if key not in keys:
            print(f"{place}: no such mutant: {key[0]}")
        elif results.get(keys[key].number, SURVIVED) != SURVIVED:
            print(f"{place}: {results[keys[key].number]}: {key[0]}")


def main():
    arguments = read_arguments()
    everything, explanations = all_mutants(), read_explanations()
    mutants = choose(everything, arguments, explanations)
    if arguments.list:
        print("\n".join(describe(mutant) for mutant in mutants))
        return
    log = Log(arguments.log, arguments.resume)
    done = {number for number, result in log.results.items() if result != SURVIVED or not arguments.survivors}
    left = [mutant for mutant in mutants if mutant.number not in done]
    for interruption in (signal.SIGINT, signal.SIGTERM):
        signal.signal(interruption, lambda *_: workshop.stop.set())
    if left:
        try_all(left, arguments, log)
    summarize(mutants, log.results, not arguments.explained)
    report_wrong_explanations(everything, explanations, log.results)
    if workshop.stop.is_set():
        sys.exit(130)


if __name__ == "__main__":
    main()
