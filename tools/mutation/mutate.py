"""Makes small mistakes in the plug-in, one at a time, and looks whether a test notices. Started by tools/mutate."""

import argparse
import hashlib
import random
import re
import signal
import sys
import threading
import time
from collections import Counter
from pathlib import Path

import workshop
from mutants import find_mutants
from source import Source

ROOT = Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build" / "mutation"
EXPLAINED = Path(__file__).with_name("equivalent.txt")
UNCOMPILED = "does not compile"
SURVIVED = "survived"
_WAYS = {"fails": "fails", "crashes": "crashes", "out": "takes too long"}


def read_arguments():
    parser = argparse.ArgumentParser(prog="tools/mutate", description=__doc__.split(" Started")[0])
    parser.add_argument("--list", action="store_true", help="print the mutants and try none")
    parser.add_argument("--only", action="append", metavar="FILE", help="mutants of this file; may be repeated")
    parser.add_argument("--ids", metavar="N,N...", help="these mutants only")
    parser.add_argument("--headers", action="store_true", help="also mutants of the headers, after the others")
    parser.add_argument("--sample", type=int, metavar="N", help="so many mutants, drawn by lot")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="draws the same lots again")
    parser.add_argument("--jobs", type=int, default=2, choices=range(1, 10), metavar="J", help="at a time")
    parser.add_argument("--resume", action="store_true", help="go on with the log of an earlier run")
    parser.add_argument("--survivors", action="store_true", help="with --resume: try those again that survived")
    parser.add_argument("--tests", default="", metavar="REGEX", help="try only the tests whose names match")
    parser.add_argument("--longest", type=float, default=10, metavar="S", help="leave out tests that take more seconds")
    parser.add_argument("--log", type=Path, default=FOLDER / "log.txt", help="where each result goes")
    return parser.parse_args()


def all_mutants(arguments):
    """The headers come last, so that a number stays what it is."""
    headers = arguments.headers or any(name.endswith(".h") for name in arguments.only or [])
    paths = sorted(ROOT.glob("plugin/*.cpp")) + (sorted(ROOT.glob("plugin/*.h")) if headers else [])
    return find_mutants([Source(f"plugin/{path.name}", path.read_text()) for path in paths])


def choose(mutants, arguments):
    """The mutants that the user asks for."""
    if arguments.only:
        names = {Path(name).name for name in arguments.only}
        mutants = [mutant for mutant in mutants if Path(mutant.source.name).name in names]
    if arguments.ids:
        numbers = {int(number) for number in arguments.ids.split(",")}
        mutants = [mutant for mutant in mutants if mutant.number in numbers]
    if arguments.sample is not None and arguments.sample < len(mutants):
        chosen = random.Random(arguments.seed).sample(mutants, arguments.sample)
        mutants = sorted(chosen, key=lambda mutant: mutant.number)
    return mutants


def describe(mutant):
    return f"{mutant.number}\t{mutant.source.name}:{mutant.line}\t{mutant.kind}\t{mutant.change}"


class Log:
    """The results so far, a line each. It holds for the sources whose sum is in its first line."""

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
            sys.exit(f"tools/mutate: {self.path} is of other sources: start without --resume")
        for line in lines:
            number, *_, result = line.split("\t")
            self.results[int(number)] = result

    def add(self, mutant, result):
        self.results[mutant.number] = result
        with self.path.open("a") as file:
            file.write(f"{describe(mutant)}\t{result}\n")


class Order:
    """The order in which tests are tried: those first that promise to fail soonest."""

    def __init__(self, times):
        self.times = times
        self.kills = {}
        self.lock = threading.Lock()

    def tests(self, name):
        with self.lock:
            return sorted(self.times, key=lambda test: (-self._promise(test, name), test))

    def note(self, test, name):
        with self.lock:
            self.kills[test, name] = self.kills.get((test, name), 0) + 1

    def _promise(self, test, name):
        return (_nearness(test, Path(name).stem) + self.kills.get((test, name), 0)) / (0.2 + self.times[test])


def _nearness(test, stem):
    module = stem.split("_")[0]
    if test == f"tst_{stem}":
        return 3
    if test.startswith(f"tst_{stem}"):
        return 2
    return 1 if test.startswith(f"tst_{module}") else 0.05


def in_parallel(jobs, items, work):
    """Has each job work on one item after the other. After an error or Ctrl-C all of them stop."""
    items, lock, errors = iter(items), threading.Lock(), []

    def labour(job):
        try:
            while not workshop.stop.is_set():
                with lock:
                    item = next(items, None)
                if item is None:
                    return
                work(job, item)
        except workshop.Stopped:
            pass
        except BaseException as error:  # for the main thread to raise
            errors.append(error)
            workshop.stop.set()

    threads = [threading.Thread(target=labour, args=(job,)) for job in jobs]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if errors:
        raise errors[0]


def measure(jobs, tests, longest):
    """How long each test takes without a mutant. All of them have to pass, but for those that take too long."""
    times, failures, left_out = {}, [], []

    def work(job, test):
        result, took = job.try_test(test, longest)
        if result == "timed out" or took > longest:
            left_out.append(test)
        elif result:
            failures.append(f"{test} {result}")
        else:
            times[test] = took

    in_parallel(jobs, tests, work)
    if failures and not workshop.stop.is_set():
        sys.exit(f"tools/mutate: fails without a mutant: {', '.join(sorted(failures))}")
    print(f"Left out, as they take long: {', '.join(sorted(left_out)) or 'none'}", file=sys.stderr)
    return times


def try_mutant(job, mutant, order):
    name = Path(mutant.source.name).name
    try:
        if not job.build(name, mutant.apply()):
            return UNCOMPILED
        for test in order.tests(name):
            result, _ = job.try_test(test, 10 * order.times[test])
            if result:
                order.note(test, name)
                return f"killed: {test} {result}"
        return SURVIVED
    finally:
        job.restore()


def read_explained():
    """Which changes are known to make no difference: a file, a change and a line of the source each."""
    explained = set()
    for block in re.split(r"\n\s*\n", EXPLAINED.read_text()) if EXPLAINED.exists() else []:
        lines = [line.strip() for line in block.splitlines() if line.strip() and not line.startswith("#")]
        if len(lines) >= 2:
            explained.add((lines[0], lines[1]))
    return explained


def summarize(mutants, results):
    explained = read_explained()
    tried = [mutant for mutant in mutants if mutant.number in results]
    survivors = [mutant for mutant in tried if results[mutant.number] == SURVIVED]
    known = [m for m in survivors if (f"{m.source.name}: {m.change}", m.line_text) in explained]
    uncompiled = sum(results[mutant.number] == UNCOMPILED for mutant in tried)
    killed = len(tried) - uncompiled - len(survivors)
    for mutant in survivors:
        note = " (explained)" if mutant in known else ""
        print(f"{mutant.source.name}:{mutant.line}: {mutant.change}{note}\n    {mutant.line_text}")
    if len(tried) < len(mutants):
        print(f"{len(mutants) - len(tried)} of {len(mutants)} mutants are left: go on with --resume")
    print(
        f"{len(tried)} mutants, {killed} killed, {len(survivors)} survived, {uncompiled} did not compile; "
        f"{_percent(killed, killed + len(survivors))} killed"
    )
    ways = Counter(results[m.number].split()[-1] for m in tried if results[m.number].startswith("killed"))
    print("Killed by a test that " + ", ".join(f"{_WAYS[way]}: {count}" for way, count in ways.most_common()))
    if known:
        rest = _percent(killed, killed + len(survivors) - len(known))
        print(f"Explained survivors: {len(known)}; {rest} of the others killed")


def report_out_of_date(mutants, results):
    """Names explanations that fit no survivor. Only of files all of whose mutants have been tried can one tell."""
    untried = {mutant.source.name for mutant in mutants if mutant.number not in results}
    survivors = {(f"{m.source.name}: {m.change}", m.line_text) for m in mutants if results.get(m.number) == SURVIVED}
    for change, line in sorted(read_explained() - survivors):
        if change.split(":")[0] not in untried:
            print(f"Explained, but no survivor: {change}\n    {line}")


def _percent(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "none"


def main():
    arguments = read_arguments()
    everything = all_mutants(arguments)
    mutants = choose(everything, arguments)
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
    summarize(mutants, log.results)
    report_out_of_date(everything, log.results)
    if workshop.stop.is_set():
        sys.exit(130)


def try_all(mutants, arguments, log):
    base = workshop.Base(ROOT, FOLDER / "base")
    jobs = [workshop.Job(base, number) for number in range(arguments.jobs)]
    tests = [test for test in base.tests if re.search(arguments.tests, test)]
    if not tests:
        sys.exit(f"tools/mutate: no test is called {arguments.tests}")
    print(f"Running {len(tests)} tests without a mutant", file=sys.stderr)
    times = measure(jobs, tests, arguments.longest)
    print(f"They take {sum(times.values()):.0f} s; trying {len(mutants)} mutants", file=sys.stderr)
    order, lock, begin, done = Order(times), threading.Lock(), time.monotonic(), 0

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


if __name__ == "__main__":
    main()
