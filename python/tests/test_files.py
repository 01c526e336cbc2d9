"""Files: what is opened, decoded, closed, written, and what happens to damaged ones."""

import copy
import gc
import json
import os
import pickle
import shutil
import subprocess
import sys
import threading
import zlib

import numpy as np
import pytest
import quillon

netCDF4 = pytest.importorskip("netCDF4")
xarray = pytest.importorskip("xarray")


@pytest.fixture
def file(tmp_path):
    """A file with one of most things."""
    path = tmp_path / "some.nc"
    with netCDF4.Dataset(path, "w") as to:
        to.title = "Some"
        to.note = "by hand"
        to.createDimension("time", 3)
        to.createDimension("x", 2)
        time = to.createVariable("time", "f8", ("time",))
        time.units = "hours since 2011-08-01"
        time[:] = [0, 6, 12]
        v = to.createVariable("v", "f4", ("time", "x"), fill_value=-1)
        v.units, v.long_name, v.standard_name = "K", "Some values", "air_temperature"
        v[:] = np.ma.masked_equal([[1, 2], [3, -1], [5, 6]], -1)
        group = to.createGroup("inner")
        group.createVariable("n", "u2", ("x",))[:] = [7, 8]
        point = to.createCompoundType(np.dtype([("a", "i4")]), "point")
        group.createVariable("odd", point, ("x",))
    return path


def test_reads_outline_and_values(file):
    with quillon.open(file) as some:
        assert list(some) == ["time", "v", "inner"]
        assert some.title == "Some"
        assert some.path == str(file)
        assert some.skipped == [("/inner/odd", "compound type 'point'")]
        v = some["v"]
        assert (v.dims, v.shape, v.dtype, v.unit, v.description) == (("time", "x"), (3, 2), "f4", "K", "Some values")
        np.testing.assert_array_equal(v.values, np.float32([[1, 2], [3, np.nan], [5, 6]]))
        assert v[2, 1] == 6
        assert some["inner/n"].values.tolist() == [7, 8]
        assert repr(some).startswith(f"<quillon.File '{file}'>\n/  2 arrays, 1 group  Some")


def test_opens_a_group(file):
    for group in ("/inner", "inner", "inner/"):
        inner = quillon.open(file, group)
        assert list(inner) == ["n"]
        assert inner.to_table().notes == ["'odd' is not in the table: compound type 'point'"]
    for root in ("", "/", "//"):
        assert list(quillon.open(file, root)) == ["time", "v", "inner"]
        assert quillon.open(file, root).to_table(variables=["time"]).notes == []
    with pytest.raises(KeyError, match="nothing"):
        quillon.open(file, "nothing")
    with pytest.raises(KeyError):
        quillon.open(file, "v")


def test_is_read_only(file):
    some = quillon.open(file)
    for change in (
        lambda: some.update(a=[1]),
        lambda: some.pop("v"),
        lambda: some["inner"].clear(),
        lambda: some.__setitem__("inner/x", [1]),
    ):
        with pytest.raises(TypeError, match="read-only"):
            change()
    mine = quillon.Dictionary(some)
    mine["a"] = [1]
    mine["inner"]["b"] = [2]
    assert quillon.compare(mine["v"], some["v"]).same


def test_a_path_may_be_bytes(file):
    assert quillon.open(os.fsencode(file)).path == str(file)


def test_a_report_names_files_by_their_paths(file):
    report = json.loads(quillon.compare(quillon.open(file), quillon.open(file, "inner")).to_json())
    assert (report["first"], report["second"]) == (str(file), str(file))


def test_the_end_of_a_block_closes_the_file(file):
    with quillon.open(file) as some:
        v = some["v"]
    with pytest.raises(quillon.FileError, match="closed"):
        v[0, 0]


def test_a_copy_of_a_group_keeps_the_coordinates_around_it(tmp_path):
    entries = {"x": quillon.Array([5.0, 7.0], ["x"]), "g": {"v": quillon.Array([1, 2], ["x"])}}
    quillon.save(entries, tmp_path / "a.nc")
    for group in (quillon.open(tmp_path / "a.nc", "g"), copy.copy(quillon.open(tmp_path / "a.nc", "g"))):
        gc.collect()
        assert group.to_table()["x"].tolist() == [5.0, 7.0]


def test_closing_ends_reading_for_all(file):
    some = quillon.open(file)
    v, table, inner = some["v"], some.to_table(), some["inner"]
    mine = quillon.Dictionary({"v": v})
    some.close()
    some.close()
    for read in (
        lambda: v.values,
        lambda: v[0, 0],
        lambda: mine["v"].values,
        lambda: table["v[x=0]"],
        lambda: table.to_csv(),
        lambda: inner["n"].values,
        lambda: some.to_table(),
        lambda: pickle.dumps(v),
        lambda: quillon.Dictionary({"v": v}),
    ):
        with pytest.raises(quillon.FileError, match="closed"):
            read()
    assert repr(v) and repr(some)
    report = quillon.compare(some, some)
    assert not report.same
    assert {why for _, why in report.not_compared} == {f"Cannot read '{file}': the file is closed"}
    assert pickle.loads(pickle.dumps(report)).lines() == report.lines()
    with netCDF4.Dataset(file, "a") as again:
        again["v"][:] = 0


def test_a_file_that_is_dropped_stays_open_for_its_entries(file):
    v, table = quillon.open(file)["v"], quillon.open(file).to_table()
    gc.collect()
    assert v[0, 1] == 2
    assert table["v[x=1]"][0] == 2
    del v, table
    gc.collect()
    with netCDF4.Dataset(file, "a"):
        pass


def test_pickles_as_its_path(file):
    some = quillon.open(file, "inner")
    again = pickle.loads(pickle.dumps(some))
    assert isinstance(again, quillon.File)
    assert list(again) == ["n"]
    assert quillon.compare(copy.copy(some), some).same
    assert pickle.loads(pickle.dumps(some["n"])).values.tolist() == [7, 8]


def test_files_that_are_none_say_why(tmp_path):
    (tmp_path / "text.nc").write_text("no data")
    for name in ("missing.nc", "text.nc", "."):
        for trusted in (True, False):
            with pytest.raises(quillon.FileError, match="Cannot read") as error:
                quillon.open(tmp_path / name, trusted=trusted)
            assert isinstance(error.value, OSError)
            assert "\n" not in str(error.value)


def test_an_untrusted_file_is_read_twice(file):
    assert quillon.open(file, trusted=False)["v"][0, 0] == 1


def test_an_untrusted_file_is_read_to_its_last_value(tmp_path):
    values = np.random.default_rng(1).integers(0, 256, 5 << 20, "u1")
    path = tmp_path / "a.nc"
    with netCDF4.Dataset(path, "w") as to:
        group = to.createGroup("inner")
        group.createDimension("x", values.size)
        group.createVariable("v", "u1", ("x",), zlib=True, complevel=4, shuffle=False, chunksizes=(1 << 20,))[:] = values
    assert list(quillon.open(path, trusted=False)) == ["inner"]
    packed = zlib.compress(values[-1 << 20 :].tobytes(), 4)
    before = path.read_bytes()
    assert before.count(packed) == 1
    path.write_bytes(before.replace(packed, b"\xff" * len(packed)))
    assert list(quillon.open(path)) == ["inner"]
    with pytest.raises(quillon.FileError, match=f"^Cannot read '{path}': variable '/inner/v'"):
        quillon.open(path, trusted=False)


def test_a_crash_of_the_trial_is_an_error(file, monkeypatch):
    from quillon import _files

    monkeypatch.setattr(_files, "_READ_ALL", "import os; os.kill(os.getpid(), 11)")
    with pytest.raises(quillon.FileError, match=r"crashes \(signal 11\)"):
        quillon.open(file, trusted=False)


DAMAGE = """
import sys, quillon
try:
    with quillon.open(sys.argv[1], trusted=False) as file:
        quillon.compare(file, file)
except quillon.FileError:
    pass
"""


@pytest.mark.parametrize("name", ["nuclei_measurements.nc", "north_atlantic_climate.nc"])
def test_damaged_files_do_not_crash_the_interpreter(data, tmp_path, name):
    whole = (data / name).read_bytes()
    random = np.random.default_rng(7)
    for k in range(4):
        path = tmp_path / f"{k}.nc"
        damaged = bytearray(whole)
        for at in random.integers(0, min(len(whole), 4096), 30):
            damaged[at] = random.integers(256)
        path.write_bytes(bytes(damaged[: random.integers(1000, len(whole))]) if k % 2 else bytes(damaged))
        done = subprocess.run([sys.executable, "-c", DAMAGE, str(path)], capture_output=True, timeout=120)
        assert done.returncode == 0, done.stderr.decode()


def test_agrees_with_xarray(data):
    for path in sorted(data.glob("n*.nc")):
        with xarray.open_dataset(path, decode_times=False) as theirs, quillon.open(path) as ours:
            for name, variable in theirs.variables.items():
                if ours[name].dtype.kind != "M":
                    np.testing.assert_array_equal(ours[name].values, variable.values)
                assert ours[name].dims == variable.dims


def test_reads_beside_other_readers_of_this_process(data, tmp_path):
    """Comparisons, tables and reads in threads, beside one that uses netCDF4 under xarray's lock.

    For as many seconds as QUILLON_THREAD_SECONDS says.
    """
    from xarray.backends.netCDF4_ import NETCDF4_PYTHON_LOCK

    path = tmp_path / "climate.nc"
    shutil.copy(data / "north_atlantic_climate.nc", path)
    expected = quillon.open(path)["SST"].values
    stop, wrong = threading.Event(), []

    def theirs():
        with NETCDF4_PYTHON_LOCK, netCDF4.Dataset(path) as file:
            file["SST"][:]

    def xarrays():
        with xarray.open_dataset(path, decode_times=False) as file:
            file["SST"].values

    def ours():
        with quillon.open(path) as file:
            if not quillon.compare(file["SST"], expected):
                wrong.append("values")
            str(file.to_table())
            file.to_table(variables=["SST"]).to_html()

    def again(task):
        try:
            while not stop.is_set():
                task()
        except Exception as error:  # noqa: BLE001
            wrong.append(error)

    threads = [threading.Thread(target=again, args=[task]) for task in (theirs, xarrays, ours, ours)]
    for thread in threads:
        thread.start()
    stop.wait(float(os.environ.get("QUILLON_THREAD_SECONDS", "3")))
    stop.set()
    for thread in threads:
        thread.join(60)
    assert wrong == []
    assert not any(thread.is_alive() for thread in threads)
