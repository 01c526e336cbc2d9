"""Tries one mutant: builds what it changes and runs the tests that cover it."""

import json
import math
import re
import resource
import shutil
import signal
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from mutants import Mutant
from programs import ENVIRONMENT, Build, Coverage, Suite, is_part
from variants import CHOICE

INVALID, KILLED, TIMED_OUT, SURVIVED = "did not compile", "killed", "timed out", "survived"

# Far more than tests take: so often what they took without a change, and that for the start. The
# clock on the wall ends only what waits.
SLOWER = 4
START_CPU_SECONDS = 3
WALL_SECONDS = 300
MEMORY_BYTES = 4 << 30
# Functions that hold many variants need far more of it than their sources do.
STACK_BYTES = 256 << 20


class Trial:
    """`folder` is this trial's own; one can be used for many mutants, one after the other."""

    def __init__(self, build: Build, coverage: Coverage, folder: Path, compilers: int = 1):
        self.build = build
        self.compilers = compilers
        self.coverage = coverage
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)

    def output(self) -> str:
        """What the last tests have printed; nothing if none ran."""
        path = self.folder / "output"
        return path.read_text(errors="replace") if path.exists() else ""

    def verdict(self, mutant: Mutant, library: str) -> str:
        source = (self.build.root / mutant.file).read_bytes()
        suites = self.coverage.covering(mutant.file, mutant.lines(source))
        if not self.prepare(mutant.file, mutant.applied_to(source), library, suites):
            return INVALID
        return self.run(mutant.file, suites, self.folder)

    def prepare(self, file: str, text: bytes, library: str, suites: list[Suite]) -> bool:
        """Builds what the suites need with another text of the file. Not where that does not compile."""
        shutil.rmtree(self.folder)
        self.folder.mkdir()
        self._write_overlay(file, text)
        users = self.build.users.get(file, [])
        in_library = [each for each in users if is_part(each, library)]
        built = self._compile(library, in_library)
        if built is None:
            return False
        parts: dict[str, Path] = {}
        if built and library.endswith(".so"):
            if not self._link(library, built):
                return False
        elif built:
            # An archive, which is part of each program: its members go by their names.
            archive = self.folder / Path(library).name
            shutil.copy(self.build.directory / library, archive)
            if not self._succeeds(["llvm-ar", "r", str(archive), *map(str, built.values())]):
                return False
            parts[library] = archive
        # Tests of what the library does not export have it compiled into themselves.
        for program in sorted({each.program for each in suites}):
            in_program = [each for each in users if is_part(each, program)]
            if in_program:
                own = [each for each in suites if each.program == program]
                in_program = self.build.holding(in_program, own)
            changed = self._compile(program, in_program)
            if changed is None:
                return False
            if (parts or changed) and not self._link(program, {**parts, **changed}):
                return False
        return True

    def _write_overlay(self, file: str, text: bytes) -> None:
        # The compiler sees the change at the file's own path; no source is touched.
        changed = self.folder / "changed"
        changed.write_bytes(text)
        path = str(self.build.root / file)
        overlay = {
            "version": 0,
            "use-external-names": False,
            "roots": [{"name": path, "type": "file", "external-contents": str(changed)}],
        }
        (self.folder / "overlay.yaml").write_text(json.dumps(overlay))

    def _compile(self, target: str, objects: list[str]) -> dict[str, Path] | None:
        """The changed objects; none where one does not compile."""
        built = {}
        for number, object_ in enumerate(objects):
            folder = self.folder / f"{Path(target).name}.{number}"
            folder.mkdir(exist_ok=True)
            built[object_] = folder / Path(object_).name
        overlay = self.folder / "overlay.yaml"

        def compiles(object_: str) -> bool:
            return self._succeeds(self.build.compile_command(object_, built[object_], overlay))

        with ThreadPoolExecutor(self.compilers) as executor:
            return built if all(list(executor.map(compiles, objects))) else None

    def _link(self, target: str, changed: dict[str, Path]) -> bool:
        return self._succeeds(
            self.build.link_command(target, self.folder / Path(target).name, changed)
        )

    def _succeeds(self, command: list[str]) -> bool:
        run = subprocess.run(command, cwd=self.build.directory, capture_output=True, text=True)
        if run.returncode != 0:
            (self.folder / "output").write_text(run.stderr)
        return run.returncode == 0

    def run(self, file: str, suites: list[Suite], programs: Path, choice: int = 0) -> str:
        """The quick tests of the file's own suites first, then those of all; most mutants end there.

        `programs` has those that are not as in the build, `choice` is the change that is chosen in them.
        """
        by_program: dict[str, list[Suite]] = {}
        for suite in suites:
            by_program.setdefault(suite.program, []).append(suite)
        is_own = re.compile(rf"{Path(file).stem}(s?Test)?$")
        runs = []
        for program, of_program in by_program.items():
            own = [each for each in of_program if is_own.search(each.name.split("/")[-1])]
            if own:
                runs.insert(0, (program, *_quick_tests(own)))
        for program, of_program in by_program.items():
            runs.append((program, *_quick_tests(of_program)))
        for program, of_program in by_program.items():
            slow = {f"{each.name}.{test}": s for each in of_program for test, s in each.slow_tests.items()}
            if slow:
                runs.append((program, ":".join(slow), sum(slow.values())))
        for program, tests, seconds in runs:
            verdict = self._run_program(programs, program, tests, seconds, choice)
            if verdict != SURVIVED:
                return verdict
        return SURVIVED

    def _run_program(
        self, programs: Path, program: str, tests: str, seconds: float, choice: int
    ) -> str:
        """`seconds` is what the tests take without a change."""
        limit = START_CPU_SECONDS + math.ceil(SLOWER * seconds)
        changed = programs / Path(program).name
        path = changed if changed.exists() else self.build.directory / program
        command = [str(path), "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={tests}"]
        environment = {
            "LD_LIBRARY_PATH": str(programs),
            "MALLOC_PERTURB_": "165",
            CHOICE: str(choice),
        }
        try:
            with (self.folder / "output").open("wb") as output:
                run = subprocess.run(
                    command,
                    cwd=self.folder,
                    env={**ENVIRONMENT, **environment},
                    stdout=output,
                    stderr=subprocess.STDOUT,
                    preexec_fn=lambda: _limit_resources(limit),
                    timeout=WALL_SECONDS,
                )
        except subprocess.TimeoutExpired:
            return TIMED_OUT
        if run.returncode == -signal.SIGXCPU:
            return TIMED_OUT
        return SURVIVED if run.returncode == 0 else KILLED


def _quick_tests(suites: list[Suite]) -> tuple[str, float]:
    """The filter that chooses them, and their seconds."""
    others = [f"{each.name}.{test}" for each in suites for test in [*each.slow_tests, *each.left_out]]
    chosen = ":".join(f"{each.name}.*" for each in suites)
    return chosen + ("-" + ":".join(others) if others else ""), sum(each.quick_seconds for each in suites)


def _limit_resources(seconds: int) -> None:
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    most = resource.getrlimit(resource.RLIMIT_STACK)[1]
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_BYTES if most < 0 else min(STACK_BYTES, most), most))
