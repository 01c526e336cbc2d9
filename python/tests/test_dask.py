"""Figures in parts, and what dask computes of them."""

import contextlib
import functools
import pickle
import re
import subprocess
import sys
import zlib

import numpy as np
import pytest
import quillon
from quillon import _parts
from quillon import dask as parts

dask = pytest.importorskip("dask", reason="python3-dask is not installed")
xarray = pytest.importorskip("xarray", reason="python3-xarray is not installed")

pandas = pytest.importorskip("pandas", reason="python3-pandas is not installed")


def text(report):
    """All but the last digits of the means."""
    return [str(report), report.values, [row._replace(mean=0) for row in report.rows], report.not_compared]


def same(one, other):
    np.testing.assert_equal(text(one), text(other))
    np.testing.assert_allclose([r.mean for r in one.rows], [r.mean for r in other.rows], 1e-12)


def test_refuses_parts_that_are_none():
    for arguments in (([1.0], [1.0, 2.0]), ([1.0], [1.0], [2], [2]), ([1.0], ["a"]), ({"a": [1]}, {"a": [1]}), ([1], {"a": [1]})):
        with pytest.raises(ValueError):
            parts.figures(*arguments)


def dataset(seed, dtype="f8"):
    rng = np.random.default_rng(seed)
    values = rng.integers(0, 3, (6, 5)).astype(dtype)
    return xarray.Dataset(
        {"t": (("time", "x"), values, {"units": "K"}), "n": ("x", np.arange(5) + seed), "s": ("x", list("abcde"))},
        {"time": np.arange(6) * 10, "lat": ("x", np.arange(5.0))},
    )


@pytest.mark.parametrize("dtype", ["f8", "f4", "i4", "M8[ns]", "?"])
@pytest.mark.parametrize("chunks", [{"time": 2}, {"time": 4, "x": 2}, {}])
def test_reports_are_those_of_the_whole_word_for_word(dtype, chunks):
    one, other = dataset(1, dtype), dataset(2, dtype)
    lazy = [data.chunk(chunks) for data in (one, other)]
    same(parts.compare(*lazy), quillon.compare(one, other))
    same(parts.compare(lazy[0], other, atol=1), quillon.compare(one, other, atol=1))
    same(parts.compare(one, lazy[1], atol=1), quillon.compare(one, other, atol=1))
    same(parts.compare(lazy[0]["t"], lazy[1]["t"]), quillon.compare(one["t"], other["t"]))
    assert parts.compare(lazy[0], lazy[0])


def test_outlines_are_compared_as_well():
    one = dataset(1).chunk({"time": 2})
    for other in (
        one.drop_vars("n").assign(z=1),
        one.isel(x=slice(0, 3)),
        one.rename(time="day"),
        one.assign(t=one["t"].assign_attrs(units="C")),
        one.assign(t=one["t"].astype(int)),
    ):
        same(parts.compare(one, other), quillon.compare(one, other))
        same(parts.compare(one["t"], other["t"]), quillon.compare(one["t"], other["t"]))


def test_rules_and_attributes_are_those_of_the_whole():
    one, other = dataset(1).assign_attrs(title="a", history="x"), dataset(2).assign_attrs(title="b", history="y")
    other["t"].attrs["note"] = "other"
    other["lat"].attrs["units"] = "m"
    lazy = [data.chunk({"time": 2}) for data in (one, other)]
    for rules in (
        {"attrs": True},
        {"attrs": True, "ignore": ["*@history", "/n"]},
        {"ignore": "t"},
        {"tolerances": {"/t": {"atol": 1}, "n": {"rtol": 3}}},
        {"largest": 4},
        {"largest": 0},
        {"equal_nan": False},
    ):
        same(parts.compare(*lazy, **rules), quillon.compare(one, other, **rules))
        same(parts.compare(lazy[0]["t"], lazy[1]["t"], **rules), quillon.compare(one["t"], other["t"], **rules))
        assert parts.compare(*lazy, **rules).lines() == quillon.compare(one, other, **rules).lines()
        assert parts.compare(*lazy, **rules).to_json()[:40] == quillon.compare(one, other, **rules).to_json()[:40]


def test_refuses_rules_as_the_whole_does():
    lazy = dataset(1).chunk({"time": 2})
    for wrong in ({"atol": -1}, {"largest": -1}, {"tolerances": {"t": {"tol": 1}}}):
        with pytest.raises(ValueError) as told:
            quillon.compare(dataset(1), dataset(1), **wrong)
        with pytest.raises(ValueError, match="^" + re.escape(str(told.value)) + "$"):
            parts.compare(lazy, lazy, **wrong)


def test_other_chunks_are_cut_anew_which_is_said():
    one, other = dataset(1), dataset(2)
    with pytest.warns(parts.RechunkWarning) as told:
        report = parts.compare(one.chunk({"time": 4}), other.chunk({"time": 3, "x": 2}), atol=1)
    same(report, quillon.compare(one, other, atol=1))
    assert {str(warning.message) for warning in told} == {
        "/t: the 2 x 3 chunks of the second side are cut anew, as the 2 x 1 of the first are",
        "/n: the 3 chunks of the second side are cut anew, as the 1 of the first are",
        "/lat: the 3 chunks of the second side are cut anew, as the 1 of the first are",
    }
    assert {warning.filename for warning in told} == {__file__}


def test_a_block_is_one_task_whose_progress_dask_tells():
    seen = []
    lazy = [dataset(seed).drop_vars(["n", "s", "lat"]).chunk({"time": 1}) for seed in (1, 2)]
    with dask.callbacks.Callback(posttask=lambda key, *_: seen.append(dask.utils.key_split(key))):
        parts.compare(*lazy)
    assert sorted(seen) == ["compare"] * 6 + ["merge"]


@pytest.mark.parametrize("most", [1, 2, 3, 5, 6, 7, 24, 100])
@pytest.mark.parametrize("counts", [(), (5,), (2, 3), (4, 3, 2), (1, 1, 24)])
def test_boxes_make_up_the_grid(counts, most):
    found = list(_parts.boxes(counts, most))
    grid = np.zeros(counts, int)
    for box in found:
        assert 1 <= grid[box].size <= most
        grid[box] += 1
    assert grid.min() == grid.max() == 1
    assert len(found) == 1 or most < grid.size


def test_many_blocks_are_compared_some_at_a_time(monkeypatch):
    monkeypatch.setattr(_parts, "AT_ONCE", 4)
    one, other = dataset(1), dataset(2)
    lazy = [data.chunk({"time": 1, "x": 2}) for data in (one, other)]
    runs = []
    with dask.callbacks.Callback(start=lambda tasks: runs.append(sum("compare" in str(key) for key in tasks))):
        same(parts.compare(*lazy, largest=3), quillon.compare(one, other, largest=3))
    assert max(runs) <= 6
    assert sum(runs) == 18 + 3 + 3


def test_what_several_blocks_need_is_computed_once():
    calls = []

    def mean(block):
        calls.append(block.shape)
        return block

    data = dataset(1)["t"].chunk({"time": 2})
    data = data - data.mean("time").copy(data=data.mean("time").data.map_blocks(mean, dtype="f8", meta=np.empty(0)))
    assert parts.compare(data, data.copy(data=data.data + 0)).same
    assert calls == [(5,)]


def fail_at(block, block_info=None):
    if block_info[0]["chunk-location"][0] == 1:
        raise OSError("the disk is gone")
    return block


def test_what_cannot_be_computed_is_named_and_all_else_is_compared():
    one, other = dataset(1)["t"].chunk({"time": 2}), dataset(2)["t"].chunk({"time": 2})
    broken = other.copy(data=other.data.map_blocks(fail_at, dtype="f8", meta=np.empty((0, 0))))
    report = parts.compare(one, broken)
    rest = [0, 1, 4, 5]
    assert report.not_compared == [("/", "the chunk time=2:4, x=0:5: OSError: the disk is gone")]
    assert report.values - quillon.compare(one, other).values == -10
    assert report.rows[0].count == int((one.values[rest] != other.values[rest]).sum())
    assert not report.same
    shared = broken - broken.sum("time")
    assert [why.rpartition(": ")[2] for _, why in parts.compare(one, shared).not_compared] == ["the disk is gone"] * 3


def fail(block):
    raise OSError("the disk is gone")


def test_what_fails_is_told_in_the_order_of_the_grid():
    one = dataset(1)["t"].chunk({"time": 2, "x": 3})
    broken = one.copy(data=one.data.map_blocks(fail, dtype="f8", meta=np.empty((0, 0))))
    starts = [(time, x) for time in (0, 2, 4) for x in (0, 3)]
    assert parts.compare(broken, one).not_compared == [
        ("/", f"the chunk time={time}:{time + 2}, x={x}:{min(x + 3, 5)}: OSError: the disk is gone") for time, x in starts
    ]


def write_chunks(path, values):
    """A file of chunks of (2, 4)."""
    netCDF4 = pytest.importorskip("netCDF4", reason="python3-netcdf4 is not installed")
    with netCDF4.Dataset(path, "w") as to:
        for dim, size in zip(("time", "x"), values.shape):
            to.createDimension(dim, size)
        packed = {"zlib": True, "complevel": 4, "shuffle": False, "chunksizes": (2, 4)}
        to.createVariable("t", "f8", ("time", "x"), **packed)[:] = values
        to.createVariable("n", "f8", ("x",))[:] = np.arange(4.0)


def damage(path, block):
    """Overwrite the chunk of the file that holds these values."""
    packed = zlib.compress(block.tobytes(), 4)
    before = path.read_bytes()
    assert before.count(packed) == 1
    path.write_bytes(before.replace(packed, b"\xff" * len(packed)))


@pytest.mark.parametrize("side", [0, 1])
@pytest.mark.parametrize("opened", ["quillon", "xarray"])
def test_a_damaged_chunk_is_named_with_its_file_and_the_rest_is_compared(tmp_path, opened, side):
    values = np.random.default_rng(1).random((6, 4))
    paths = [tmp_path / "first.nc", tmp_path / "second.nc"]
    for path, added in zip(paths, (0, 1)):
        write_chunks(path, values + added)
    damage(paths[side], values[2:4] + side)
    open_ = parts.open if opened == "quillon" else functools.partial(xarray.open_dataset, chunks={"time": 2})
    with contextlib.ExitStack() as stack:
        report = parts.compare(*(stack.enter_context(open_(path)) for path in paths))
    assert (report.rows[0].count, report.values) == (16, 20)
    [(path, why)] = report.not_compared
    place, file, reason = why.split(": ", 2)
    assert (path, place) == ("/t", "the chunk time=2:4, x=0:4")
    assert file == f"Cannot read '{paths[side]}'"
    assert "HDF error" in reason
    assert report.lines()[1] == f"/t: not compared: {why}"


def test_files_are_opened_in_their_chunks(tmp_path):
    values = np.random.default_rng(1).random((6, 4))
    write_chunks(tmp_path / "t.nc", values)
    data = parts.open(tmp_path / "t.nc")
    assert data["t"].chunks == ((2, 2, 2), (4,))
    assert parts.open(tmp_path / "t.nc", chunks={"time": 3})["t"].chunks == ((3, 3), (4,))
    assert parts.open(tmp_path / "t.nc", chunks={"x": 2})["t"].chunks == ((2, 2, 2), (2, 2))
    assert parts.open(tmp_path / "t.nc", chunks="auto")["t"].chunks == ((6,), (4,))
    assert parts.open(tmp_path / "t.nc", chunks=5)["t"].chunks == ((5, 1), (4,))
    np.testing.assert_array_equal(data["t"].values, values)
    np.testing.assert_array_equal(data["t"][1:5:2, ::-1].values, values[1:5:2, ::-1])
    assert data.encoding["source"] == str(tmp_path / "t.nc")
    assert len(pickle.dumps(data)) < 10_000


def test_opened_files_are_what_quillon_opens(data):
    for name, groups in (
        ("north_atlantic_climate.nc", ["/"]),
        ("nuclei_measurements.nc", ["/"]),
        ("observations.nc", ["/", "climate", "/cells/li"]),
    ):
        for group in groups:
            whole = quillon.open(data / name, group)
            flat = {n: entry for n, entry in whole.items() if isinstance(entry, quillon.Array)}
            opened = quillon.from_xarray(parts.open(data / name, group))
            expected = quillon.Dictionary(flat, description=whole.description, attrs=whole.attrs)
            assert quillon.compare(expected, opened, attrs=True).lines() == []
            assert sorted(opened) == sorted(flat)
    with pytest.raises(quillon.FileError, match="there is no such file"):
        parts.open("missing.nc")
    with pytest.raises(KeyError):
        parts.open(data / "observations.nc", "nothing")


def test_a_file_that_was_written_anew_is_read_anew(tmp_path):
    path = tmp_path / "t.nc"
    names = []
    for number in (1.0, 2.0):
        quillon.save({"t": quillon.Array(np.full((4, 2), number), ["time", "x"])}, path)
        assert parts.open(path)["t"].values[3, 1] == number
        names += [parts.open(path)["t"].data.name for _ in range(2)]
    assert names[0] == names[1] != names[2] == names[3]


def test_an_opened_file_is_the_dataset_that_quillon_makes_of_it(tmp_path):
    data = dataset(1).assign_coords(run=7, name=("x", list("vwxyz"))).assign_attrs(title="Some", history="made")
    data = data.assign(other=data["t"] + 1, flag=("x", [True] * 5))
    quillon.save({"g": quillon.from_xarray(data)}, tmp_path / "t.nc")
    opened = parts.open(tmp_path / "t.nc", "g", chunks={"time": 4})
    assert {name: v.chunks for name, v in opened.variables.items() if v.chunks} == {
        "t": ((4, 2), (5,)),
        "other": ((4, 2), (5,)),
        "n": ((5,),),
        "flag": ((5,),),
        "lat": ((5,),),
    }
    for some in (opened, pickle.loads(pickle.dumps(opened))):
        xarray.testing.assert_identical(some.compute(), quillon.open(tmp_path / "t.nc", "g").to_xarray())


def test_chunks_are_those_of_the_group(tmp_path):
    netCDF4 = pytest.importorskip("netCDF4", reason="python3-netcdf4 is not installed")
    with netCDF4.Dataset(tmp_path / "t.nc", "w") as to:
        to.createDimension("x", 12)
        for place, chunk in ((to, 3), (to.createGroup("g"), 4)):
            place.createVariable("t", "f8", ("x",), chunksizes=(chunk,))[:] = np.arange(12)
    assert parts.open(tmp_path / "t.nc")["t"].chunks == ((3,) * 4,)
    assert parts.open(tmp_path / "t.nc", "g")["t"].chunks == ((4,) * 3,)


def test_values_are_read_as_they_are_stored_where_asked(tmp_path):
    packed = xarray.Dataset({"t": (("time", "x"), np.arange(6.0).reshape(2, 3))})
    how = {"dtype": "i2", "scale_factor": 0.5, "_FillValue": -1, "chunksizes": (1, 3)}
    packed.to_netcdf(tmp_path / "t.nc", encoding={"t": how})
    opened = parts.open(tmp_path / "t.nc", decode=False)
    assert opened["t"].chunks == ((1, 1), (3,))
    assert opened["t"].dtype == np.int16
    assert opened["t"].values.tolist() == [[0, 2, 4], [6, 8, 10]]
    assert parts.open(tmp_path / "t.nc")["t"].values.tolist() == [[0, 1, 2], [3, 4, 5]]


def test_tasks_find_the_file_wherever_they_run(tmp_path, monkeypatch):
    quillon.save({"t": quillon.Array(np.ones((4, 2)), ["time", "x"])}, tmp_path / "t.nc")
    monkeypatch.chdir(tmp_path)
    opened = parts.open("t.nc")
    (tmp_path / "elsewhere").mkdir()
    monkeypatch.chdir(tmp_path / "elsewhere")
    assert float(opened["t"].sum()) == 8


def test_what_cannot_be_read_is_left_out_with_a_sentence(tmp_path):
    netCDF4 = pytest.importorskip("netCDF4", reason="python3-netcdf4 is not installed")
    path = tmp_path / "t.nc"
    with netCDF4.Dataset(path, "w") as to:
        to.createDimension("x", 2)
        point = to.createCompoundType(np.dtype([("a", "i4")]), "point")
        to.createVariable("odd", point, ("x",))
        to.createVariable("even", "f8", ("x",))
    with pytest.warns(UserWarning, match=f"^'odd' of '{path}' is left out: compound type 'point'$") as told:
        assert list(parts.open(path)) == ["even"]
    assert [warning.filename for warning in told] == [__file__]


def test_threads_that_read_print_nothing(data):
    program = (
        "import sys, threading, quillon; path = sys.argv[1]; quillon.open(path); "
        "t = threading.Thread(target=lambda: quillon.open(path)['SST'][0]); t.start(); t.join()"
    )
    path = str(data / "north_atlantic_climate.nc")
    done = subprocess.run([sys.executable, "-c", program, path], capture_output=True, text=True, check=True)
    assert (done.stdout, done.stderr) == ("", "")


@pytest.mark.parametrize("index", [["x", "time"], ["time", "x"], ["time"], "x"])
@pytest.mark.parametrize("with_coordinates", [True, False])
def test_frames_are_those_of_the_whole(index, with_coordinates):
    frames = pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    data = dataset(1) if with_coordinates else dataset(1).drop_vars(["time", "lat"])
    expected = quillon.from_xarray(data).to_pandas(index).reset_index()
    frame = parts.to_dask_dataframe(data.chunk({"time": 4, "x": 2}), index)
    assert isinstance(frame, frames.DataFrame)
    assert frame.npartitions == (2 if index[-1] == "time" else 3)
    np.testing.assert_array_equal(frame.dtypes, expected.dtypes)
    pandas.testing.assert_frame_equal(frame.compute(), expected, check_index_type=False)
    for k, division in enumerate(frame.divisions[:-1]):
        assert frame.get_partition(k).compute().index[0] == division
    assert frame.divisions[-1] == len(expected) - 1


@pytest.mark.parametrize(
    "times, divisions",
    [
        ([0, 10, 20, 30, 40, 50], (0, 40, 50)),
        ([0, 0, 0, 30, 40, 50], (0, 40, 50)),
        ([0, 10, 20, 40, 40, 50], None),
        ([50, 40, 30, 20, 10, 0], None),
        ([0, 10, 5, 30, 40, 50], None),
        ([0, 10, 20, 30, 40, np.nan], None),
        (None, (0, 4, 5)),
    ],
)
def test_divisions_are_known_where_the_order_allows(times, divisions):
    pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    data = dataset(1).drop_vars("time")
    data = data if times is None else data.assign_coords(time=times)
    frame = parts.to_dask_dataframe(data.chunk({"time": 4}), ["x", "time"], set_index=True)
    assert frame.index.name == "time"
    assert frame.divisions == (divisions or (None, None, None))
    expected = quillon.from_xarray(data).to_pandas(["x", "time"]).reset_index().set_index("time")
    pandas.testing.assert_frame_equal(frame.compute(), expected)
    if times and divisions:
        assert len(frame.loc[40:].compute()) == 10


def test_making_a_frame_reads_nothing():
    pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    broken = dataset(1).chunk({"time": 2})
    broken = broken.assign(t=broken["t"].copy(data=broken["t"].data.map_blocks(fail_at, dtype="f8", meta=np.empty((0, 0)))))
    with dask.callbacks.Callback(pretask=lambda key, *_: pytest.fail(f"{key} was computed")):
        frame = parts.to_dask_dataframe(broken[["t"]], ["x", "time"])
    assert len(frame.get_partition(2).compute()) == 10
    with pytest.raises(OSError, match="the disk is gone"):
        frame.compute()


def test_partitions_write_their_own_parts(tmp_path):
    pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    data = dataset(1)
    frame = parts.to_dask_dataframe(data.chunk({"time": 4}), ["x", "time"])
    assert [path.rpartition("/")[2] for path in frame.to_csv(tmp_path / "part-*.csv", index=False)] == [
        "part-0.csv",
        "part-1.csv",
    ]
    whole = quillon.from_xarray(data).to_pandas(["x", "time"]).reset_index().to_csv(index=False)
    first, second = ((tmp_path / f"part-{k}.csv").read_text() for k in range(2))
    assert first + second.partition("\n")[2] == whole


def test_partitions_write_parquet_where_an_engine_is_there(tmp_path):
    pytest.importorskip("pyarrow", reason="pyarrow, which writes Parquet, is not installed")
    data = dataset(1)
    parts.to_dask_dataframe(data.chunk({"time": 4}), ["x", "time"]).to_parquet(tmp_path / "parts")
    expected = quillon.from_xarray(data).to_pandas(["x", "time"]).reset_index()
    pandas.testing.assert_frame_equal(pandas.read_parquet(tmp_path / "parts"), expected, check_index_type=False)


def test_variables_of_other_chunks_are_cut_alike_which_is_said():
    pytest.importorskip("dask.dataframe", reason="dask has no pandas here")
    data = dataset(1)[["t"]]
    data = data.chunk({"time": 2}).assign(u=data["t"].chunk({"time": 3}) + 1)
    with pytest.warns(parts.RechunkWarning, match="^the variables are cut anew at the same places: "):
        frame = parts.to_dask_dataframe(data, ["x", "time"])
    assert frame.npartitions == 4
    expected = quillon.from_xarray(data.compute()).to_pandas(["x", "time"]).reset_index()
    pandas.testing.assert_frame_equal(frame.compute(), expected, check_index_type=False)

def test_lazy_reading_beside_dask_does_not_lock(tmp_path):
    pytest.importorskip("netCDF4")
    path = tmp_path / "t.nc"
    dataset(1).drop_vars("s").to_netcdf(path)
    with xarray.open_dataset(path, chunks={"time": 2}) as lazy, quillon.open(path) as file:
        assert quillon.compare(lazy["t"], file["t"]).same
        assert quillon.from_xarray(lazy).to_table(["x", "time"], variables=["t"])["t"].size == 30


def test_merged_figures_make_the_report_of_the_whole():
    one, other = dataset(1), dataset(2)
    halves = [
        parts.figures(one["t"].values[part], other["t"].values[part], [part.start, 0], [6, 5], atol=1)
        for part in (slice(0, 2), slice(2, 6))
    ]
    same(parts.report(one, other, {"/t": parts.merge(*halves)}, atol=1), quillon.compare(one, other, atol=1))
    same(parts.report(one, other, {}, atol=1), quillon.compare(one, other, atol=1))
    nothing = parts.report(one[["t"]], other[["t"]], {"/t": parts.NOTHING})
    assert (nothing.same, nothing.values) == (True, 11)
