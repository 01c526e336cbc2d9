"""Two processes of dask's compare and export a file, and one of them is killed in the middle."""

import os
import signal

import numpy as np
import pytest
import quillon
from quillon import dask as parts

distributed = pytest.importorskip("distributed", reason="python3-distributed is not installed")
pandas = pytest.importorskip("pandas", reason="python3-pandas is not installed")
xarray = pytest.importorskip("xarray", reason="python3-xarray is not installed")

INDEX = ["COADSX", "COADSY", "TIME"]
TIMES = 100


@pytest.fixture(scope="module")
def client():
    options = {"n_workers": 2, "threads_per_worker": 1, "processes": True, "dashboard_address": ":0"}
    with distributed.LocalCluster(**options) as cluster, distributed.Client(cluster) as some:
        yield some


def enlarged(path):
    """The climate data, TIMES times one after the other, in chunks of 240 times."""
    file = quillon.open(path)
    months = file["TIME"].size
    entries = {"TIME": quillon.Array(np.arange(float(months * TIMES)), ["TIME"], unit="hours")}
    for name, array in file.items():
        if array.ndim == 3:
            entries[name] = quillon.Array(np.tile(array.values, (TIMES, 1, 1)), array.dims, unit=array.unit)
        elif name != "TIME":
            entries[name] = array
    return entries


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    """Two such files, of which the second one has other values in two places."""
    data = os.environ.get("QUILLON_DATA", os.path.join(os.path.dirname(__file__), "..", "..", "data"))
    entries = enlarged(os.path.join(data, "north_atlantic_climate.nc"))
    folder = tmp_path_factory.mktemp("files")
    quillon.save(entries, folder / "first.nc")
    changed = entries["SST"].values.copy()
    there = np.argwhere(~np.isnan(changed))[[5, -5]]
    for place, delta in zip(there, (0.5, 0.75)):
        changed[tuple(place)] += delta
    entries["SST"] = quillon.Array(changed, entries["SST"].dims, unit=entries["SST"].unit)
    quillon.save(entries, folder / "second.nc")
    return folder / "first.nc", folder / "second.nc"


def whole_report(files):
    return quillon.compare(*(quillon.open(path) for path in files))


def test_two_processes_find_what_one_finds(client, files):
    opened = [parts.open(path, chunks={"TIME": 240}) for path in files]
    report = parts.compare(*opened)
    expected = whole_report(files)
    assert report.lines() == expected.lines()
    assert len(report.lines()) == 1
    assert report.values == expected.values > 3_000_000
    assert parts.compare(opened[0], parts.open(files[0], chunks={"TIME": 240})).same


def test_two_processes_export_what_one_exports(client, files, tmp_path):
    """Each partition into a file of its own."""
    pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    data = parts.open(files[0], chunks={"TIME": 240})
    frame = parts.to_dask_dataframe(data, INDEX)
    written = frame.to_csv(tmp_path / "part-*.csv", index=False)
    rows = 240 * data.sizes["COADSX"] * data.sizes["COADSY"]
    assert frame.divisions == (0, rows, 2 * rows, 3 * rows, 4 * rows, 5 * rows - 1)
    assert len(written) == 5
    read = pandas.concat([pandas.read_csv(path, dtype=dict(frame.dtypes)) for path in written], ignore_index=True)
    expected = quillon.open(files[0]).to_pandas(INDEX).reset_index()
    pandas.testing.assert_frame_equal(read, expected[list(read)], check_exact=True)


def test_what_workers_keep_is_compared_where_it_is(client, files):
    first, second = (parts.open(path, chunks={"TIME": 240})[["SST"]].persist() for path in files)
    distributed.wait([first, second])
    assert parts.compare(first, second).lines() == whole_report(files).lines()
    with xarray.set_options(keep_attrs=True):
        assert parts.compare(first, second + 0).lines() == whole_report(files).lines()


def kill_once(block, marker, block_info=None):
    """Kills the process that has the fourth block, the first time."""
    if block_info[0]["chunk-location"][0] == 3 and not os.path.exists(marker):
        with open(marker, "w"):
            os.kill(os.getpid(), signal.SIGKILL)
    return block


def test_a_worker_that_is_killed_in_the_middle_changes_nothing(client, files, tmp_path):
    first, second = (parts.open(path, chunks={"TIME": 60}) for path in files)
    marker = tmp_path / "killed"
    before = set(client.run(os.getpid).values())
    killing = second["SST"].data.map_blocks(kill_once, marker=str(marker), dtype="f4", meta=np.empty((0, 0, 0), "f4"))
    report = parts.compare(first, second.assign(SST=second["SST"].copy(data=killing)))
    assert marker.exists()
    assert report.lines() == whole_report(files).lines()
    assert report.values == whole_report(files).values
    client.wait_for_workers(2)
    assert set(client.run(os.getpid).values()) != before
