"""Tries one mutant: builds what it changes and runs the tests that cover it."""

import json
import resource
import shutil
import signal
import subprocess
from pathlib import Path

from mutants import Mutant
from programs import ENVIRONMENT, Build, Coverage, Suite, is_part

INVALID, KILLED, TIMED_OUT, SURVIVED = "did not compile", "killed", "timed out", "survived"

# Far more than the quick tests of a program take, and all of them. The clock on the wall ends only
# what waits.
QUICK_CPU_SECONDS = 3
CPU_SECONDS = 20
WALL_SECONDS = 300
MEMORY_BYTES = 4 << 30


class Trial:
    """`folder` is this trial's own; one can be used for many mutants, one after the other."""

    def __init__(self, build: Build, coverage: Coverage, folder: Path):
        self.build = build
        self.coverage = coverage
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)

    def output(self) -> str:
        """What the last tests have printed; nothing if none ran."""
        path = self.folder / "output"
        return path.read_text(errors="replace") if path.exists() else ""

    def verdict(self, mutant: Mutant, library: str) -> str:
        shutil.rmtree(self.folder)
        self.folder.mkdir()
        source = (self.build.root / mutant.file).read_bytes()
        self._write_overlay(mutant, source)
        suites = self.coverage.covering(mutant.file, mutant.lines(source))
        users = self.build.users.get(mutant.file, [])
        in_library = [each for each in users if is_part(each, library)]
        if in_library:
            if not self._build_library(library, in_library, suites):
                return INVALID
            verdict = self._run(suites)
            if verdict != SURVIVED:
                return verdict
        # Tests of what the library does not export have it compiled into themselves.
        changed = []
        for program in sorted({each.program for each in suites}):
            in_program = [each for each in users if is_part(each, program)]
            if in_program:
                own = [each for each in suites if each.program == program]
                in_program = self.build.holding(in_program, own)
                if not self._build(program, in_program):
                    return INVALID
                changed.append(program)
        return self._run([each for each in suites if each.program in changed])

    def _write_overlay(self, mutant: Mutant, source: bytes) -> None:
        # The compiler sees the change at the file's own path; no source is touched.
        changed = self.folder / "changed"
        changed.write_bytes(mutant.applied_to(source))
        path = str(self.build.root / mutant.file)
        overlay = {
            "version": 0,
            "use-external-names": False,
            "roots": [{"name": path, "type": "file", "external-contents": str(changed)}],
        }
        (self.folder / "overlay.yaml").write_text(json.dumps(overlay))

    def _build_library(self, library: str, objects: list[str], suites: list[Suite]) -> bool:
        if library.endswith(".so"):
            return self._build(library, objects)
        built = self._compile(library, objects)
        if built is None:
            return False
        # An archive, which is part of each program: its members go by their names.
        archive = self.folder / Path(library).name
        shutil.copy(self.build.directory / library, archive)
        if not self._succeeds(["llvm-ar", "r", str(archive), *map(str, built.values())]):
            return False
        return all(
            self._link(program, {library: archive})
            for program in sorted({each.program for each in suites})
        )

    def _build(self, target: str, objects: list[str]) -> bool:
        built = self._compile(target, objects)
        return built is not None and self._link(target, built)

    def _compile(self, target: str, objects: list[str]) -> dict[str, Path] | None:
        """The changed objects; none where one does not compile."""
        built = {}
        for number, object_ in enumerate(objects):
            folder = self.folder / f"{Path(target).name}.{number}"
            folder.mkdir(exist_ok=True)
            built[object_] = folder / Path(object_).name
            command = self.build.compile_command(
                object_, built[object_], self.folder / "overlay.yaml"
            )
            if not self._succeeds(command):
                return None
        return built

    def _link(self, target: str, changed: dict[str, Path]) -> bool:
        return self._succeeds(
            self.build.link_command(target, self.folder / Path(target).name, changed)
        )

    def _succeeds(self, command: list[str]) -> bool:
        run = subprocess.run(command, cwd=self.build.directory, capture_output=True)
        return run.returncode == 0

    def _run(self, suites: list[Suite]) -> str:
        """The quick tests of all programs first; most mutants end there."""
        quick: dict[str, list[str]] = {}
        skipped: dict[str, list[str]] = {}
        for suite in suites:
            quick.setdefault(suite.program, []).append(f"{suite.name}.*")
            slow = [f"{suite.name}.{test}" for test in suite.slow_tests]
            if slow:
                skipped.setdefault(suite.program, []).extend(slow)
        runs = []
        for program, names in quick.items():
            negative = "-" + ":".join(skipped[program]) if program in skipped else ""
            runs.append((program, ":".join(names) + negative, QUICK_CPU_SECONDS))
        runs.extend((program, ":".join(names), CPU_SECONDS) for program, names in skipped.items())
        for program, tests, seconds in runs:
            verdict = self._run_program(program, tests, seconds)
            if verdict != SURVIVED:
                return verdict
        return SURVIVED

    def _run_program(self, program: str, tests: str, seconds: int) -> str:
        changed = self.folder / Path(program).name
        path = changed if changed.exists() else self.build.directory / program
        command = [str(path), "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={tests}"]
        environment = {"LD_LIBRARY_PATH": str(self.folder), "MALLOC_PERTURB_": "165"}
        try:
            with (self.folder / "output").open("wb") as output:
                run = subprocess.run(
                    command,
                    cwd=self.folder,
                    env={**ENVIRONMENT, **environment},
                    stdout=output,
                    stderr=subprocess.STDOUT,
                    preexec_fn=lambda: _limit_resources(seconds),
                    timeout=WALL_SECONDS,
                )
        except subprocess.TimeoutExpired:
            return TIMED_OUT
        if run.returncode == -signal.SIGXCPU:
            return TIMED_OUT
        return SURVIVED if run.returncode == 0 else KILLED


def _limit_resources(seconds: int) -> None:
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
