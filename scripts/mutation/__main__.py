"""Changes the sources a little, one place at a time, and tells which changes no test notices.

See `./dev mutate`, which prepares the build that this needs.
"""

import argparse
import hashlib
import json
import os
import pickle
import queue
import re
import sys
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import explained
import variants
from mutants import Body, Mutant, make_mutants
from programs import Build, Coverage, Suite
from trial import INVALID, SURVIVED, Trial
from variants import Place

ROOT = Path(__file__).resolve().parents[2]
EXPLAINED = ROOT / "tests/mutation/explained.txt"

# The folders of sources, the library that they are built into, the folders of tests.
LIBRARIES = {
    "ObjectModel": ("ObjectModel/libquillon_object_model.so", ["ObjectModel", "abi"]),
    "tabra": ("tabra/libtabra.so", ["tabra"]),
    "memory": ("memory/libquillon_memory.a", ["memory"]),
    "compare": ("compare/libquillon_compare.a", ["compare"]),
    "tables": ("tables/libquillon_tables.a", ["tables"]),
    "arrow": ("arrow/libquillon_arrow.a", ["arrow"]),
    "netcdf": ("netcdf/libquillon_netcdf.a", ["netcdf"]),
}


class Verdicts:
    """What came of each mutant, kept so that an interrupted run can be taken up again."""

    def __init__(self, path: Path, state: str):
        self.path = path
        self.state = state
        self.known: dict[str, str] = {}
        self.last: dict[str, str] = {}
        if path.exists():
            for line in path.read_text().splitlines():
                entry = json.loads(line)
                self.last[entry["mutant"]] = entry["verdict"]
                if entry["state"] == state:
                    self.known[entry["mutant"]] = entry["verdict"]
        self.file = path.open("a")

    def note(self, mutant: str, verdict: str) -> None:
        self.known[mutant] = verdict
        entry = {"mutant": mutant, "verdict": verdict, "state": self.state}
        print(json.dumps(entry), file=self.file, flush=True)


def state_of(folders: list[str]) -> str:
    """Stands for all the code that verdicts depend on."""
    digest = hashlib.sha256()
    for folder in [*folders, "tests"]:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in (".h", ".cpp") and path.is_file():
                digest.update(str(path.relative_to(ROOT)).encode())
                digest.update(path.read_bytes())
    return digest.hexdigest()


def sources(library: str, wanted: list[str]) -> list[str]:
    found = []
    for path in sorted((ROOT / library).rglob("*")):
        name = str(path.relative_to(ROOT))
        if path.suffix in (".h", ".cpp") and any(
            name == each or name.startswith(each.rstrip("/") + "/") for each in wanted
        ):
            found.append(name)
    return found


def system_headers(files: list[str]) -> set[str]:
    return {
        header
        for file in files
        for header in re.findall(r"^#include (<\w+>)", (ROOT / file).read_text(), re.MULTILINE)
    }


def covered(
    build: Build,
    tests: list[str],
    libraries: list[str],
    folder: Path,
    executor: ThreadPoolExecutor,
    state: str,
) -> Coverage:
    """The coverage, from an earlier run if nothing has changed since."""
    kept = folder / f"coverage-{tests[0]}.pickle"
    if kept.exists():
        old_state, coverage = pickle.loads(kept.read_bytes())
        if old_state == state:
            coverage.build = build
            return coverage
    coverage = Coverage(build, build.test_programs(tests), libraries, folder, executor)
    kept.write_bytes(pickle.dumps((state, coverage)))
    return coverage


def identity(mutant: Mutant, source: bytes) -> str:
    text = hashlib.sha256(source).hexdigest()[:16]
    return f"{mutant.file} {text} {mutant.begin}-{mutant.end} {mutant.text}"


def explanation_key(mutant: Mutant, source: bytes) -> explained.Key:
    number = explained.number_of(source.decode(), mutant.lines(source)[0])
    return explained.key_of(mutant.file, number, mutant.before(source), mutant.after(source))


class Session:
    """Trials that run at once, and what they find."""

    def __init__(
        self,
        builder: Trial,
        trials: list[Trial],
        verdicts: Verdicts,
        library: str,
        known: set[explained.Key],
    ):
        self.builder = builder
        self.verdicts = verdicts
        self.library = library
        self.known = known
        self.trials: queue.Queue[Trial] = queue.Queue()
        for trial in trials:
            self.trials.put(trial)

    def verdict(self, mutant: Mutant, name: str, number: int, place: Place | None) -> str:
        """That of a change which is built already at its place, or else of one alone."""
        if name not in self.verdicts.known:
            trial = self.trials.get()
            try:
                verdict = SURVIVED
                source = (ROOT / mutant.file).read_bytes()
                if place is not None:
                    suites = trial.coverage.covering(mutant.file, mutant.lines(source))
                    verdict = trial.run(mutant.file, suites, self.builder.folder, number)
                # Where the compiler took the value or called the function, it did not see the change.
                body = place and place.body
                is_seen = body is not None and not body.may_be_constant
                # A header is part of so much that building it for one change takes minutes.
                is_known = place is not None and explanation_key(mutant, source) in self.known
                if verdict == SURVIVED and not is_seen and not is_known:
                    verdict = trial.verdict(mutant, self.library)
            finally:
                self.trials.put(trial)
            self.verdicts.note(name, verdict)
        return self.verdicts.known[name]

    def build(
        self, file: str, source: bytes, mutants: list[Mutant], within: dict[int, Place]
    ) -> tuple[dict[int, Place], set[int]]:
        """Builds the file with these changes. Returns which are built and which do not compile."""
        suites = self._suites_of(file, source, mutants)
        left = dict(within)
        invalid: set[int] = set()
        while True:
            text = variants.combined(source, mutants, left)
            if self.builder.prepare(file, text.text, self.library, suites):
                break
            found = variants.numbers_in_errors(self.builder.output(), file, text)
            if not left:
                sys.exit(f"{file} without any change:\n{self.builder.output()}")
            if not found:
                left = {}  # something else is wrong with them: each is tried alone
                invalid = set()
                continue
            # A value may have to be known to the compiler: such a change is tried alone.
            invalid |= {number for number in found if within[number].body is not None}
            left = {number: place for number, place in left.items() if number not in found}
        # Else its mutants would fail for a reason that is none of theirs.
        verdict = self.builder.run(file, suites, self.builder.folder)
        if verdict != SURVIVED:
            sys.exit(f"{file} without any change: {verdict}\n{self.builder.output()}")
        return left, invalid

    def _suites_of(self, file: str, source: bytes, mutants: list[Mutant]) -> list[Suite]:
        found = {}
        for mutant in mutants:
            for suite in self.builder.coverage.covering(file, mutant.lines(source)):
                found[suite.program, suite.name] = suite
        return list(found.values())


def try_file(
    session: Session,
    executor: ThreadPoolExecutor,
    file: str,
    found: tuple[list[Mutant], list[Body]],
    again: bool,
) -> tuple[bytes, list[tuple[Mutant, str]]]:
    """The text of a file, and its mutants with their verdicts."""
    source = (ROOT / file).read_bytes()
    named = [(mutant, identity(mutant, source)) for mutant in found[0]]
    if again:
        named = [each for each in named if session.verdicts.last.get(each[1]) == SURVIVED]
    start = time.monotonic()
    mutants = [mutant for mutant, _ in named]
    built: dict[int, Place] = {}
    if any(name not in session.verdicts.known for _, name in named):
        within = variants.places_of(source, mutants, found[1])
        built, invalid = session.build(file, source, mutants, within)
        for number in invalid:
            session.verdicts.note(named[number - 1][1], INVALID)

    def verdict_of(number: int) -> str:
        return session.verdict(*named[number - 1], number, built.get(number))

    verdicts = list(executor.map(verdict_of, range(1, len(named) + 1)))
    if named:
        print(
            f"{file}: {len(named)} mutants, {verdicts.count(SURVIVED)} survived,"
            f" {time.monotonic() - start:.0f} s",
            flush=True,
        )
    return source, list(zip(mutants, verdicts))


def main() -> int:
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__)
    parser.add_argument("build", type=Path, help=argparse.SUPPRESS)
    parser.add_argument("--again", action="store_true", help="only what survived the last time")
    parser.add_argument("--every", type=int, default=1, metavar="N", help="each N-th change of a file")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    parser.add_argument("files", nargs="*", metavar="PATH", help="files or folders")
    options = parser.parse_intermixed_args()
    wanted = [os.path.relpath(each, ROOT) for each in options.files or LIBRARIES]

    build = Build(ROOT, options.build.resolve())
    folder = options.build.resolve().parent / "mutation"
    folder.mkdir(exist_ok=True)
    verdicts = Verdicts(folder / "verdicts.jsonl", state_of(list(LIBRARIES)))
    # What is linked into the programs is found there.
    libraries = [library for library, _ in LIBRARIES.values() if library.endswith(".so")]
    explanations = explained.read(EXPLAINED)
    known = {each.key for each in explanations}
    totals: Counter[str] = Counter()
    survivors: dict[explained.Key, list[str]] = {}
    tried: list[str] = []
    with ThreadPoolExecutor(options.jobs) as executor:
        for name, (library, tests) in LIBRARIES.items():
            files = sources(name, wanted)
            if not files:
                continue
            coverage = covered(build, tests, libraries, folder, executor, verdicts.state)
            left_out = [test for suite in coverage.suites for test in suite.left_out]
            if left_out:
                print(f"{name}: without {len(left_out)} tests that take too long", flush=True)
            build.precompile(library, system_headers(files), folder)
            trials = [
                Trial(build, coverage, folder / f"trial-{number}") for number in range(options.jobs)
            ]
            builder = Trial(build, coverage, folder / "variants", options.jobs)
            session = Session(builder, trials, verdicts, library, known)
            for file in files:
                tried.append(file)
                mutants, bodies = make_mutants(ROOT, file, build.options(library))
                some = mutants[:: options.every]
                source, results = try_file(session, executor, file, (some, bodies), options.again)
                for mutant, verdict in results:
                    totals[verdict] += 1
                    if verdict == SURVIVED:
                        key = explanation_key(mutant, source)
                        survivors.setdefault(key, []).append(described(mutant, source, key))
    if not tried:
        parser.error(f"no sources in {' '.join(wanted)}")
    whole = [] if options.every > 1 else tried  # of a sample nobody knows what did not survive
    partly = options.again or options.every > 1 or bool(options.files)
    return report(explanations, totals, survivors, whole, partly)


def described(mutant: Mutant, source: bytes, key: explained.Key) -> str:
    change = explained.difference(key[1], mutant.before(source), mutant.after(source))
    return f"{mutant.file}:{mutant.lines(source)[0]}\n{change}"


def report(
    explanations: list[explained.Explanation],
    totals: Counter[str],
    survivors: dict[explained.Key, list[str]],
    tried: list[str],
    partly: bool,
) -> int:
    known = {each.key for each in explanations}
    open_ones = [text for key, texts in survivors.items() if key not in known for text in texts]
    stale = [
        each
        for each in explanations
        if each.key not in survivors and (each.key[0] in tried or not partly)
    ]
    for text in open_ones:
        print(f"\n{text}")
    for each in stale:
        print(f"\n{EXPLAINED.relative_to(ROOT)}:{each.line}: explains no survivor")
    explained_ones = totals[SURVIVED] - len(open_ones)
    figures = [f"{count} {verdict}" for verdict, count in sorted(totals.items())]
    print(
        f"\n{sum(totals.values())} mutants: {', '.join(figures)};"
        f" of the survivors {explained_ones} explained, {len(open_ones)} not"
    )
    return 1 if open_ones or stale else 0


if __name__ == "__main__":
    sys.exit(main())
