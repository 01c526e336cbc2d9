"""Tells which lines and branches of the libraries no test reaches, and fails if there are any.

A branch is a condition that was never true or never false; a value that no case of a switch has is none.
A comment at the line or above it with
"never run: REASON", "never true: REASON" or "never false: REASON" explains what is not reached, and with
"never true, never run: REASON" both.
See `./dev coverage`, which runs the tests.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]


def llvm_cov(*arguments: str) -> str:
    run = subprocess.run(["llvm-cov", *arguments], capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(run.stderr)
    return run.stdout  # without the warning about functions of one name in several programs


# Where only the end of a block is not reached, the line before it is told as well.
END_OF_BLOCK = re.compile(r"\s*}( else {)?")


def gap(path: Path, line: int, what: str) -> str | None:
    """The line of the report, unless a comment explains it."""
    lines = ["", *path.read_text().splitlines()]
    if END_OF_BLOCK.fullmatch(lines[line]) or lines[line].lstrip().startswith("switch ("):
        return None
    if any(re.search(f"{what}(, never \\w+)*: ", each) for each in lines[line - 1 : line + 1]):
        return None
    return f"{path.relative_to(ROOT)}:{line}: {what}: {lines[line].strip()}"


def missed_lines(files: list[str]) -> list[str | None]:
    missed = []
    path = ROOT
    for line in llvm_cov("export", "-format=lcov", *files).splitlines():
        if line.startswith("SF:"):
            path = Path(line[3:])
        elif match := re.fullmatch(r"DA:(\d+),0", line):
            missed.append(gap(path, int(match[1]), "never run"))
    return missed


def missed_branches(files: list[str]) -> list[str | None]:
    missed = []
    report = json.loads(llvm_cov("export", "-skip-functions", *files))
    for file in report["data"][0]["files"]:
        path = Path(file["filename"])
        # Each instantiation of a template has counts of its own.
        counts: dict[tuple[int, int], list[int]] = {}
        for line, column, _, _, when_true, when_false, *_ in file["branches"]:
            sums = counts.setdefault((line, column), [0, 0])
            sums[0] += when_true
            sums[1] += when_false
        decided_when_compiled = {
            number
            for number, line in enumerate(path.read_text().splitlines(), 1)
            if "if constexpr" in line
        }
        for (line, _), sums in sorted(counts.items()):
            for count, what in zip(sums, ("never true", "never false")):
                if count == 0 and line not in decided_when_compiled:
                    missed.append(gap(path, line, what))
    return missed


def main() -> int:
    profile, report, folders, *programs = sys.argv[1:]
    sources = [
        str(path)
        for folder in folders.split()
        for path in sorted((ROOT / folder).rglob("*"))
        if path.suffix in (".h", ".cpp")
    ]
    objects = [programs[0], *(f"-object={each}" for each in programs[1:])]
    files = [f"-instr-profile={profile}", f"-compilation-dir={ROOT}", *objects, *sources]
    llvm_cov("show", "-format=html", f"-output-dir={report}", "-show-branches=count", *files)
    print(llvm_cov("report", "-show-region-summary=false", *files))
    missed = [each for each in missed_lines(files) + missed_branches(files) if each]
    print("\n".join(missed) if missed else "Every line is run, every branch taken or explained.")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
