"""Files that are larger than the memory that may be used."""

import subprocess
import sys

import pytest

netCDF4 = pytest.importorskip("netCDF4", reason="python3-netcdf4 is not installed")

TIMES, LABELS = 1 << 23, 8  # half a gibibyte of doubles
LIMIT = 192  # MiB beside what the packages take

PROGRAM = """
import resource, sys
import quillon, pandas

def peak():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss // 1024

first, second = (quillon.open(path) for path in sys.argv[1:])
before = peak()
"""


def sparse(path, last):
    """A file of zeros that take no room on the disk, but for the last value."""
    for mode in ("w", "a"):
        with netCDF4.Dataset(path, mode, format="NETCDF3_64BIT_DATA") as to:
            to.set_fill_off()
            if mode == "w":
                to.createDimension("time", TIMES)
                to.createDimension("label", LABELS)
                to.createVariable("v", "f8", ("time", "label"))
            else:
                to["v"][-1, -1] = last
    return str(path)


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    folder = tmp_path_factory.mktemp("sparse")
    return [sparse(folder / f"{last}.nc", last) for last in (1.0, 2.0)]


def run(statements, files):
    """What is printed, and how many MiB it took beside what the packages take."""
    program = f"{PROGRAM}{statements}\nprint(peak() - before)"
    done = subprocess.run([sys.executable, "-c", program, *files], capture_output=True, text=True, check=True)
    *lines, taken = done.stdout.splitlines()
    return lines, int(taken)


def test_files_are_compared_in_level_memory(files):
    lines, taken = run("print(quillon.compare(first, second))", files)
    where = f"time={TIMES - 1}, label={LABELS - 1}"
    assert lines == [f"/v: 1 of {TIMES * LABELS} values differ; the largest delta is 1 at {where}: 1 and 2"]
    assert taken < LIMIT


def test_files_are_compared_on_dask_in_level_memory(files):
    pytest.importorskip("dask.array", reason="python3-dask is not installed")
    statements = (
        "import dask, quillon.dask\n"
        "sides = [quillon.dask.open(path, chunks={'time': 1 << 18}) for path in sys.argv[1:]]\n"
        "with dask.config.set(scheduler='sync'): print(quillon.dask.compare(*sides))"
    )
    lines, taken = run(statements, files)
    assert lines[0].startswith(f"/v: 1 of {TIMES * LABELS} values differ;")
    assert taken < LIMIT


def test_tables_are_made_in_level_memory(files):
    statements = (
        "table = first.to_table(['time'])\n"
        "print(table.shape)\n"
        "print(len(table.to_string(10).splitlines()))\n"
        f"end = first.to_table(['time'], select={{'time': slice({TIMES} - 100_000, None)}})\n"
        "print(end.to_csv().splitlines()[-1])"
    )
    lines, taken = run(statements, files)
    assert lines == [f"({TIMES}, {LABELS + 1})", "12", f"{TIMES - 1},0,0,0,0,0,0,0,1"]
    assert taken < LIMIT
