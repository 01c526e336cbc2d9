"""Keeps docs/performance.md: what the benchmarks print goes where the page has it, and what misses its
goal has what bounds it.

    performance.py           checks the page
    performance.py NAME FILE puts the output in FILE below the line "<!-- measured: NAME -->" first

README's table "Beside others" has figures of this page, rounded. A line that ends in "missed" is bound by what stands in a table under "What bounds": a row for each
pattern, such as `areSame*/tiny/*`, on the line's first words.
"""

import fnmatch
import html
import platform
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
PAGE = ROOT / "docs/performance.md"


def machine() -> str:
    """The processor and the compiler, as a clause."""
    lines = Path("/proc/cpuinfo").read_text().splitlines()
    names = [line.split(": ")[1] for line in lines if line.startswith("model name")]
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True, check=True)
    processor = names[0] if names else platform.machine()
    return f"{len(names)} cores of {processor}, GCC {compiler.stdout.strip()}"


def put(page: str, name: str, output: str) -> str:
    """The page with that output at its place."""
    place = re.compile(rf"(^<!-- measured: {name} -->\n).*?^</pre>\n", re.M | re.S)
    lines = "".join(f"{line.rstrip()}\n" for line in output.splitlines())
    block = f"Measured on {machine()}:\n\n<pre>\n{html.escape(lines, quote=False)}</pre>\n"
    page, found = place.subn(lambda match: match[1] + block, page)
    if found != 1:
        sys.exit(f"{PAGE.name} has {found} places of the name {name}")
    return page


def unbound(page: str) -> list[str]:
    """The lines that miss their goal without a word on what bounds them."""
    sections = re.split(r"^## ", page, flags=re.M)
    rows = "\n".join(each for each in sections if each.startswith("What bounds"))
    cells = re.findall(r"^\| (`.*?) \|", rows, re.M)
    patterns = [pattern for cell in cells for pattern in re.findall(r"`([^`]+)`", cell)]
    missed = [" ".join(html.unescape(line).split()) for line in page.splitlines() if line.endswith("missed")]
    return [line for line in missed if not any(fnmatch.fnmatchcase(line, each + " *") for each in patterns)]


def not_measured(page: str) -> list[str]:
    """The rows of README with a figure that the page does not have."""
    numbers = re.compile(r"(?<![\w.^])\d+(?:\.\d+)?(?![\w.^])")
    measured = {round(float(each)) for each in numbers.findall("".join(re.findall(r"<pre>.*?</pre>", page, re.S)))}
    section = (ROOT / "README.md").read_text().split("## Beside others")[1].split("\n## ")[0]
    rows = re.findall(r"^\| .*? \| (\d.*) \|$", section, re.M)
    return [row for row in rows if not {int(each) for each in numbers.findall(row)} <= measured]


def main() -> int:
    page = PAGE.read_text()
    if len(sys.argv) == 3:
        page = put(page, sys.argv[1], Path(sys.argv[2]).read_text())
        PAGE.write_text(page)
    lines = unbound(page)
    for line in lines:
        print(f"{PAGE.name} does not say what bounds: {line}", file=sys.stderr)
    rows = not_measured(page)
    for row in rows:
        print(f"{PAGE.name} has not all figures that README.md has: {row}", file=sys.stderr)
    return int(bool(lines or rows))


if __name__ == "__main__":
    sys.exit(main())
