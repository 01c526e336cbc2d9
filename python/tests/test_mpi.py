"""The merge of partial figures as the operation of an MPI reduce: the example, on two ranks."""

import pathlib
import shutil
import subprocess
import sys

import pytest
import quillon

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "mpi_compare.py"


@pytest.mark.parametrize("ranks", [1, 2])
def test_ranks_report_what_one_process_reports(data, ranks):
    pytest.importorskip("mpi4py", reason="python3-mpi4py is not installed")
    mpirun = shutil.which("mpirun") or pytest.skip("openmpi-bin is not installed")
    paths = [data / "north_atlantic_climate.nc", data / "north_atlantic_climate_4_digits.nc"]
    run = [mpirun, "--allow-run-as-root", "--oversubscribe", "-n", str(ranks)]
    done = subprocess.run(
        [*run, sys.executable, EXAMPLE, *paths, "SST"], capture_output=True, text=True, check=False, timeout=120
    )
    expected = quillon.compare(*({"SST": quillon.open(path)["SST"]} for path in paths))
    assert not expected.same
    assert done.stdout == f"{expected}\n", done.stderr
