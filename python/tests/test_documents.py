"""The Python programs of the documentation: each prints what stands below it."""

import pathlib
import re
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


def programs():
    for path in [ROOT / "README.md", *sorted((ROOT / "docs").rglob("*.md"))]:
        for number, found in enumerate(BLOCK.finditer(path.read_text())):
            name = f"{path.relative_to(ROOT)}-{number}"
            yield pytest.param(found.group(1), found.group(2) or "", id=name)


@pytest.mark.parametrize("program, expected", programs())
def test_prints_what_stands_below(program, expected):
    done = subprocess.run([sys.executable, "-c", program], cwd=ROOT, capture_output=True, text=True, check=False)
    assert done.stderr == ""
    assert done.stdout == expected
