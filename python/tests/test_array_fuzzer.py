"""The law of fuzz/array_fuzzer.py holds for the same cases each time; ./dev fuzz looks for others."""

import pathlib
import subprocess
import sys

FUZZER = pathlib.Path(__file__).parents[2] / "fuzz" / "array_fuzzer.py"


def test_holds_for_the_first_cases():
    command = [sys.executable, FUZZER, "--runs", "2000", "--from", "0"]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    assert (done.returncode, done.stdout, done.stderr) == (0, "2000 executions\n", "")


def test_names_the_case_that_breaks_the_law():
    program = f"""
import sys
sys.path.insert(0, {str(FUZZER.parent)!r})
import array_fuzzer, quillon
quillon.compare = lambda first, second: 1 / 0
sys.argv[1:] = ["--runs", "100", "--from", "0"]
array_fuzzer.main()
"""
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False)
    assert done.returncode == 1
    assert done.stderr.startswith("broken by the case ")
