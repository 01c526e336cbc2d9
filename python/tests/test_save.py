"""Files that are written, as we, xarray and netCDF4 read them."""

import os
import threading

import numpy as np
import pytest
import quillon

netCDF4 = pytest.importorskip("netCDF4")
xarray = pytest.importorskip("xarray")


@pytest.fixture
def dataset():
    return xarray.Dataset(
        {
            "t": (("time", "x"), np.float32([[1, 2, np.nan], [4, 5, 6]]), {"units": "K", "long_name": "Temperature"}),
            "n": (("x",), np.uint16([1, 2, 65535]), {"valid_range": np.int32([0, 9])}),
            "flag": (("x",), [True, False, True]),
            "name": (("x",), np.array(["a", "βb", ""], object)),
        },
        {
            "time": np.array(["2011-08-01", "2011-08-02T06:00"], "M8[ns]"),
            "lat": ("x", [0.5, 1.5, 2.5], {"units": "degrees_north"}),
        },
        {"title": "Some", "history": "made"},
    )


def test_comes_back_as_it_was(dataset, tmp_path):
    ours = quillon.from_xarray(dataset)
    ours["inner"] = {"deep": {"v": quillon.Array(np.arange(3), ["x"], unit="m", attrs={"k": 1.5})}}
    quillon.save(ours, tmp_path / "a.nc")
    with quillon.open(tmp_path / "a.nc") as file:
        assert str(quillon.compare(ours, file, attrs=True, ignore=["*@_FillValue"])) == f"the same: {quillon.compare(ours, ours).values} values"
        assert file.title == "Some"
        assert file["inner/deep/v"].unit == "m"
        assert file["flag"].dtype == bool
        assert file["time"].dtype == "M8[ns]"


def test_xarray_reads_what_it_would_write(dataset, tmp_path):
    quillon.save(quillon.from_xarray(dataset), tmp_path / "ours.nc")
    with xarray.open_dataset(tmp_path / "ours.nc") as file:
        xarray.testing.assert_identical(file.load(), dataset)


def test_we_read_what_xarray_writes(dataset, tmp_path):
    dataset.to_netcdf(tmp_path / "theirs.nc")
    with quillon.open(tmp_path / "theirs.nc") as file:
        xarray.testing.assert_identical(file.to_xarray(), dataset)
        assert quillon.compare(file, dataset, attrs=True).same


@pytest.mark.parametrize("dtype", ["i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f4", "f8", "?", "U2", "M8[D]", "M8[ns]", "M8[Y]", "M8[25s]", "M8[W]"])
def test_keeps_types(dtype, tmp_path):
    values = np.arange(6).reshape(2, 3).astype("i8").astype(dtype)
    quillon.save({"v": quillon.Array(values, ["y", "x"])}, tmp_path / "v.nc")
    with quillon.open(tmp_path / "v.nc") as file:
        np.testing.assert_array_equal(file["v"].values, values)
        if values.dtype.kind in "iufb":
            assert file["v"].dtype == values.dtype


def test_times_finer_than_nanoseconds_are_stored_as_these(tmp_path):
    quillon.save({"v": quillon.Array(np.array([2500, -1], "M8[ps]"), ["x"])}, tmp_path / "v.nc")
    np.testing.assert_array_equal(quillon.open(tmp_path / "v.nc")["v"].values, np.array([2, -1], "M8[ns]"))


@pytest.mark.parametrize("dtype", ["m8[s]", "m8[W]", "m8[25s]", "m8[ps]"])
def test_durations_are_stored_in_units_that_others_read(dtype, tmp_path):
    values = np.array([0, 2000], dtype)
    quillon.save({"v": quillon.Array(values, ["x"])}, tmp_path / "v.nc")
    with xarray.open_dataset(tmp_path / "v.nc") as theirs:
        np.testing.assert_array_equal(theirs["v"].values, values.astype("m8[ns]"))


def test_variables_name_the_coordinates_along_their_dimensions(dataset, tmp_path):
    ours = quillon.from_xarray(dataset.assign_coords(day=("time", [1, 2]), run=7))
    ours["mine"] = quillon.Array([1, 2, 3], ["x"], attrs={"coordinates": "other"})
    quillon.save(ours, tmp_path / "a.nc")
    quillon.save({"g": ours}, tmp_path / "b.nc")
    with netCDF4.Dataset(tmp_path / "a.nc") as file, netCDF4.Dataset(tmp_path / "b.nc") as nested:
        named, within = (
            {name: getattr(v, "coordinates", None) for name, v in group.variables.items()} for group in (file, nested["g"])
        )
    alone = {"time": None, "lat": None, "day": None, "run": None}
    along = {"t": "day lat run", "n": "lat run", "flag": "lat run", "name": "lat run", "mine": "other"}
    assert named == within == {**along, **alone}
    assert "coordinates" not in ours["t"].attrs


@pytest.mark.parametrize("dtype", ["M8[s]", "M8[ns]", "M8[D]"])
def test_keeps_missing_times(dtype, tmp_path):
    values = np.array([1, "NaT", 3], dtype)
    quillon.save({"v": quillon.Array(values, ["x"])}, tmp_path / "v.nc")
    np.testing.assert_array_equal(quillon.open(tmp_path / "v.nc")["v"].values, values)
    with xarray.open_dataset(tmp_path / "v.nc") as theirs:
        np.testing.assert_array_equal(theirs["v"].values, values.astype("M8[ns]"))


def test_compresses(tmp_path):
    values = quillon.Array(np.zeros(10**5), ["x"])
    for level in (None, 0, 1, 9):
        quillon.save({"v": values}, tmp_path / f"{level}.nc", deflate=level)
        assert quillon.open(tmp_path / f"{level}.nc")["v"].shape == (10**5,)
    assert os.path.getsize(tmp_path / "9.nc") * 10 < os.path.getsize(tmp_path / "None.nc")
    for level in (-1, 10):
        with pytest.raises(ValueError, match=str(level)):
            quillon.save({"v": values}, tmp_path / "v.nc", deflate=level)


@pytest.mark.parametrize(
    "entries, error, sentence",
    [
        ({"a": {"z": [1j]}}, TypeError, "/a/z"),
        ({"d": [{"a": 1}]}, TypeError, "/d"),
        ({"a": quillon.Array([1], ["x"]), "b": quillon.Array([1, 2], ["x"])}, quillon.ExportError, "'x'"),
        (quillon.Array([1]), TypeError, "Array"),
    ],
)
def test_refuses_what_no_file_holds_and_leaves_what_is_there(entries, error, sentence, tmp_path):
    (tmp_path / "a.nc").write_text("mine")
    with pytest.raises(error, match=sentence):
        quillon.save(entries, tmp_path / "a.nc")
    assert (tmp_path / "a.nc").read_text() == "mine"
    assert os.listdir(tmp_path) == ["a.nc"]


def test_what_reading_raises_passes_through(tmp_path):
    def failing(start, stop):
        raise ZeroDivisionError

    with pytest.raises(ZeroDivisionError):
        quillon.save({"v": quillon.Array.lazy(failing, [3])}, tmp_path / "a.nc")
    with pytest.raises(quillon.FileError):
        quillon.save({"v": [1]}, tmp_path / "none" / "a.nc")
    assert os.listdir(tmp_path) == []


def test_a_file_may_be_written_over_itself(tmp_path):
    quillon.save({"v": [1.0, 2.0]}, tmp_path / "a.nc")
    file = quillon.open(tmp_path / "a.nc")
    quillon.save(file, tmp_path / "a.nc")
    assert quillon.compare(quillon.open(tmp_path / "a.nc"), file).same


def test_what_xarray_reads_lazily_is_written_without_waiting_for_itself(dataset, tmp_path):
    pytest.importorskip("dask")
    dataset.drop_vars("name").to_netcdf(tmp_path / "a.nc")
    done = []

    def work():
        with xarray.open_dataset(tmp_path / "a.nc", chunks={"time": 1}) as lazy:
            quillon.save(quillon.from_xarray(lazy), tmp_path / "b.nc")
        done.append(quillon.compare(quillon.open(tmp_path / "b.nc"), quillon.open(tmp_path / "a.nc")))

    thread = threading.Thread(target=work, daemon=True)
    thread.start()
    thread.join(60)
    assert not thread.is_alive()
    assert done[0].same, done[0]
