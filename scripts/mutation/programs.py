"""The build, and what its test programs cover: what mutants are tried with."""

import json
import os
import re
import shlex
import subprocess
from concurrent.futures import Executor
from dataclasses import dataclass, field
from pathlib import Path

# Slow tests run where the quick ones notice nothing. Those that take longer than that are left out:
# there are thousands of changes, and what such tests alone notice is listed for a quicker one.
SLOW_SECONDS = 0.05
LONGEST_SECONDS = 1.0
# Every run tries the same random values, so that a verdict can be repeated, and few of them: what
# is changed is mostly seen in the first.
ENVIRONMENT = {
    **os.environ,
    "RC_PARAMS": "seed=1 max_success=20",
    "LLVM_PROFILE_FILE": "/dev/null",
}


@dataclass
class Suite:
    """The tests of one program that bear one name."""

    program: str
    name: str
    quick_seconds: float = 0.0
    slow_tests: dict[str, float] = field(default_factory=dict)  # with their seconds
    left_out: list[str] = field(default_factory=list)

    def add(self, test: str, seconds: float) -> None:
        if seconds > LONGEST_SECONDS:
            self.left_out.append(test)
        elif seconds > SLOW_SECONDS:
            self.slow_tests[test] = seconds
        else:
            self.quick_seconds += seconds


class Build:
    """A Ninja build directory that was built with clang's coverage."""

    def __init__(self, root: Path, directory: Path):
        self.root = root
        self.directory = directory
        self.compile_commands = {}
        for entry in json.loads((directory / "compile_commands.json").read_text()):
            command = shlex.split(entry["command"])
            self.compile_commands[command[command.index("-o") + 1]] = command
        self.users = self._users()
        self.link_commands: dict[str, list[str]] = {}
        self.precompiled: dict[str, Path] = {}  # by library
        self.words: dict[str, set[str]] = {}  # of an object's source

    def _run(self, *command: str) -> str:
        return subprocess.run(
            command, cwd=self.directory, check=True, capture_output=True, text=True
        ).stdout

    def _users(self) -> dict[str, list[str]]:
        """For each file of the project, the objects that it is compiled into."""
        users: dict[str, list[str]] = {}
        target = ""
        for line in self._run("ninja", "-t", "deps").splitlines():
            if line and not line.startswith(" "):
                target = line.split(":")[0]
            elif target in self.compile_commands:
                path = (self.directory / line.strip()).resolve()
                if path.is_relative_to(self.root):
                    users.setdefault(str(path.relative_to(self.root)), []).append(target)
        return users

    def options(self, target: str) -> list[str]:
        """The options that the sources of the library `target` are parsed with."""
        object_ = next(each for each in self.compile_commands if is_part(each, target))
        command = self.compile_commands[object_]
        named = [each for each in command[1:] if each.startswith(("-I", "-D", "-std"))]
        places = (k for k, each in enumerate(command) if each == "-isystem")
        return named + [word for k in places for word in command[k : k + 2]]

    def _options_for_change(self, object_: str) -> list[str]:
        dropped = {"-fprofile-instr-generate", "-fcoverage-mapping", "-c"}
        command = [each for each in self.compile_commands[object_] if each not in dropped]
        return [*command[: command.index("-o")], "-w", "-ferror-limit=0", "-fno-color-diagnostics"]

    def precompile(self, library: str, headers: set[str], folder: Path) -> None:
        """Reads the system's headers once for all changes of a library."""
        prefix = folder / "prefix.h"
        prefix.write_text("".join(f"#include {each}\n" for each in sorted(headers)))
        object_ = next(each for each in self.compile_commands if is_part(each, library))
        self.precompiled[library] = folder / f"{Path(library).name}.pch"
        command = [*self._options_for_change(object_), "-x", "c++-header", str(prefix)]
        self._run(*command, "-fpch-instantiate-templates", "-o", str(self.precompiled[library]))

    def compile_command(self, object_: str, output: Path, overlay: Path) -> list[str]:
        command = self._options_for_change(object_)
        for library, precompiled in self.precompiled.items():
            if is_part(object_, library):
                command += ["-include-pch", str(precompiled)]
        source = self.compile_commands[object_][-1]
        return [*command, "-ivfsoverlay", str(overlay), "-c", source, "-o", str(output)]

    def link_command(self, target: str, output: Path, objects: dict[str, Path]) -> list[str]:
        if target not in self.link_commands:
            command = self._run("ninja", "-t", "commands", target).splitlines()[-1]
            words = shlex.split(command.removeprefix(": && ").removesuffix(" && :"))
            self.link_commands[target] = [*words, "-fuse-ld=lld"]
        words = list(self.link_commands[target])
        words[words.index("-o") + 1] = str(output)
        # Of the inline functions that several objects have, the linker takes the first.
        first = next(k for k, word in enumerate(words) if word.endswith(".o"))
        words = words[:first] + sorted(words[first:], key=lambda word: not is_object(word, objects))
        return [str(objects.get(each, each)) for each in words]

    def holding(self, objects: list[str], suites: list["Suite"]) -> list[str]:
        """Those of the objects in whose sources one of the suites stands; all where none does."""
        names = {part for suite in suites for part in suite.name.split("/") if not part.isdigit()}
        found = [each for each in objects if names & self._words(each)]
        return found or objects

    def _words(self, object_: str) -> set[str]:
        if object_ not in self.words:
            source = Path(self.compile_commands[object_][-1])
            self.words[object_] = set(re.findall(r"\w+", source.read_text()))
        return self.words[object_]

    def test_programs(self, folders: list[str]) -> list[str]:
        found = []
        for folder in folders:
            for path in sorted((self.directory / "tests" / folder).rglob("*_tests")):
                if path.is_file():
                    found.append(str(path.relative_to(self.directory)))
        return found


def is_object(word: str, objects: dict[str, Path]) -> bool:
    return word.endswith(".o") and word in objects


def is_part(object_: str, target: str) -> bool:
    """Whether an object belongs to the target at this path in the build directory."""
    path = Path(target)
    name = re.sub(r"^lib(.*)\.(so|a)$", r"\1", path.name)
    return object_.startswith(f"{path.parent}/CMakeFiles/{name}.dir/")


class Coverage:
    """Which test suites run which lines."""

    def __init__(
        self,
        build: Build,
        programs: list[str],
        libraries: list[str],
        folder: Path,
        executor: Executor,
    ):
        self.build = build
        self.libraries = libraries
        self.folder = folder
        self.suites: list[Suite] = []
        self.by_line: dict[str, dict[int, set[int]]] = {}
        for program in programs:
            self._time(program)
        self._collect(executor)

    def _time(self, program: str) -> None:
        report = self.folder / "tests.json"
        command = [str(self.build.directory / program), f"--gtest_output=json:{report}"]
        run = subprocess.run(command, capture_output=True, text=True, env=ENVIRONMENT)
        if run.returncode != 0:
            raise RuntimeError(f"{program} fails without any change:\n{run.stdout}{run.stderr}")
        result = json.loads(report.read_text())
        for each in result["testsuites"]:
            suite = Suite(program, each["name"])
            for test in each["testsuite"]:
                suite.add(test["name"], float(test["time"].removesuffix("s")))
            self.suites.append(suite)

    def _collect(self, executor: Executor) -> None:
        for number, lines in enumerate(executor.map(self._lines, range(len(self.suites)))):
            for file, line in lines:
                self.by_line.setdefault(file, {}).setdefault(line, set()).add(number)

    def _lines(self, number: int) -> list[tuple[str, int]]:
        suite = self.suites[number]
        merged = self.folder / f"{number}.profdata"
        program = str(self.build.directory / suite.program)
        subprocess.run(
            [program, f"--gtest_filter={suite.name}.*"],
            check=True,
            capture_output=True,
            # One file for the program and for each shared library, to which child processes add.
            env={**ENVIRONMENT, "LLVM_PROFILE_FILE": str(self.folder / f"{number}.%m.profraw")},
        )
        raw = list(self.folder.glob(f"{number}.*.profraw"))
        subprocess.run(["llvm-profdata", "merge", "-sparse", *raw, "-o", merged], check=True)
        objects = [f"-object={self.build.directory / each}" for each in self.libraries]
        report = subprocess.run(
            [
                *("llvm-cov", "export", "-format=lcov", f"-instr-profile={merged}"),
                # The paths are noted as seen from the project's root.
                *(f"-compilation-dir={self.build.root}", program, *objects),
            ],
            check=True,
            capture_output=True,
            text=True,
        ).stdout
        for each in (*raw, merged):
            each.unlink()
        return list(self._covered(report))

    def _covered(self, report: str):
        file = None
        for line in report.splitlines():
            if line.startswith("SF:"):
                path = Path(line[3:])
                inside = path.is_relative_to(self.build.root)
                file = str(path.relative_to(self.build.root)) if inside else None
            elif file and line.startswith("DA:"):
                number, count = line[3:].split(",")[:2]
                yield file, (int(number) if int(count) > 0 else -int(number))

    def covering(self, file: str, lines: range) -> list[Suite]:
        """The suites that run one of the lines.

        Where none does, all of the file's: the compiler may have run the line itself. A line outside
        functions is not counted, and any suite may read what stands there.
        """
        by_line = self.by_line.get(file, {})
        numbers = set().union(*(by_line.get(line, set()) for line in lines))
        if not numbers and any(-line in by_line for line in lines):
            numbers = set().union(*(found for line, found in by_line.items() if line > 0), set())
        numbers = numbers or set(range(len(self.suites)))
        return [self.suites[number] for number in sorted(numbers)]
