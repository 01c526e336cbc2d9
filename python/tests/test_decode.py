"""Decoded files: what xarray makes of them, and what it cannot."""

import pickle

import numpy as np
import pytest
import quillon

netCDF4 = pytest.importorskip("netCDF4")
xarray = pytest.importorskip("xarray")


@pytest.fixture
def packed(tmp_path):
    path = tmp_path / "packed.nc"
    with netCDF4.Dataset(path, "w") as to:
        to.set_auto_maskandscale(False)
        for name, size in {"time": 3, "x": 2}.items():
            to.createDimension(name, size)
        time = to.createVariable("time", "i4", ("time",))
        time.units, time.calendar = "hours since 2011-08-01 06:00:00", "standard"
        time[:] = [0, 6, 18]
        v = to.createVariable("v", "i2", ("time", "x"), fill_value=-999)
        v.scale_factor, v.add_offset, v.units, v.coordinates = np.float32(0.5), np.float32(10), "K", "lat run"
        v.set_auto_maskandscale(False)
        v[:] = [[1, 2], [3, -999], [5, 6]]
        to.createVariable("lat", "f8", ("x",))[:] = [0.5, 1.5]
        to.createVariable("run", "i4", ())[...] = 7
        flag = to.createVariable("flag", "i1", ("x",))
        flag.setncattr("dtype", "bool")
        flag[:] = [1, 0]
        odd = to.createVariable("odd", "f8", ("time",))
        odd.units, odd.calendar = "days since 2001-02-28", "noleap"
        odd[:] = [0, 1, 2]
        far = to.createVariable("far", "f8", ("time",))
        far.units = "days since 0001-01-01"
        far[:] = [0, 1, 2]
    return path


def test_is_what_xarray_makes_of_it(packed):
    names = ["v", "lat", "run", "flag", "time"]
    with quillon.open(packed) as ours, xarray.open_dataset(packed, decode_times=False) as raw:
        theirs = xarray.decode_cf(raw.drop_vars(["odd", "far"])).load()
        mine = quillon.Dictionary({name: ours[name] for name in names})
        mine._handle.coordinates = ours._handle.coordinates
        xarray.testing.assert_identical(mine.to_xarray().drop_vars([]), theirs[names])
        assert quillon.compare(mine, theirs, attrs=True).same
        assert ours["time"].dtype == "M8[ns]"
        assert ours["v"].dtype == np.float32


def test_times_that_numpy_does_not_have_are_numbers_with_their_unit(packed):
    with quillon.open(packed) as file:
        for name, unit in (("odd", "days since 2001-02-28"), ("far", "days since 0001-01-01")):
            assert (file[name].dtype, file[name].unit) == (np.float64, unit)
            assert file[name].values.tolist() == [0, 1, 2]
        assert file["odd"].attrs == {"calendar": "noleap"}
        assert "calendar" not in file["time"].attrs
        again = xarray.decode_cf(quillon.Dictionary({"odd": file["odd"]}).to_xarray())
        assert again["odd"].values[1].isoformat() == "2001-03-01T00:00:00"
        table = file.to_table(variables=["odd", "far"])
        assert table["odd"].tolist() == [0, 1, 2]
        assert table.units["odd"] == "days since 2001-02-28"
        assert "2001-03-01" in table.to_csv()
        assert "0001-01-02" in table.to_csv()


def test_is_as_it_is_stored_where_asked(packed):
    with quillon.open(packed, decode=False) as file:
        assert file["v"].values.tolist() == [[1, 2], [3, -999], [5, 6]]
        assert (file["v"].dtype, file["time"].dtype, file["flag"].dtype) == (np.int16, np.int32, np.int8)
        assert file["v"].attrs["scale_factor"] == np.float32(0.5)
        assert file["v"].attrs["coordinates"] == "lat run"
        assert pickle.loads(pickle.dumps(file))["v"].values.tolist() == [[1, 2], [3, -999], [5, 6]]


def test_tables_have_times_and_other_coordinates(packed):
    with quillon.open(packed) as file:
        frame = file.to_pandas(["time"], variables=["v"])
        assert str(frame.index[1]) == "2011-08-01 12:00:00"
        picked = file.to_table(["x"], variables=["v"], select={"time": "2011-08-01T12"})
        assert picked["v"].tolist()[0] == 11.5


def test_comparing_reads_coordinates(packed):
    with quillon.open(packed) as file:
        v = quillon.Array(file["v"].values + np.float32(1), file["v"].dims, unit="K")
        report = quillon.compare(file["v"], v)
        assert '"time": "2011-08-01T06:00:00"' in report.to_json()


def written(path, dtype, values, **attributes):
    with netCDF4.Dataset(path, "w") as to:
        to.createDimension("x", len(values))
        v = to.createVariable("v", dtype, ("x",), zlib=True, chunksizes=(len(values),))
        v.setncatts(attributes)
        v.set_auto_maskandscale(False)
        v[:] = values
    return quillon.open(path)


def test_nanoseconds_since_any_day_are_exact(tmp_path):
    file = written(tmp_path / "a.nc", "i8", [5, -1], units="nanoseconds since 2011-08-01", standard_name="time")
    expected = np.datetime64("2011-08-01", "ns") + np.array([5, -1])
    np.testing.assert_array_equal(file["v"].values, expected)
    assert file["v"].attrs == {"standard_name": "time"}


def test_coordinates_that_are_not_there_are_none(tmp_path):
    with written(tmp_path / "a.nc", "f8", [1, 2], coordinates="gone") as file:
        quillon.save(file, tmp_path / "b.nc")
        assert set(file.to_xarray().coords) == set()
    assert quillon.open(tmp_path / "b.nc")["v"].values.tolist() == [1, 2]


def test_packed_values_are_compared_as_numbers_of_any_type(tmp_path):
    packed = written(tmp_path / "packed.nc", "i2", [1, 2, 3], scale_factor=0.5)
    plain = written(tmp_path / "plain.nc", "f4", [0.5, 1, 1.5])
    assert quillon.compare(packed, plain, attrs=True).same
    assert quillon.compare(plain, packed, attrs=True).same
    other = written(tmp_path / "other.nc", "i2", [1, 2, 3], scale_factor=0.25)
    report = quillon.compare(packed, other)
    assert str(report) == "/v: 3 of 3 values differ; the largest delta is 0.75 at x=2: 1.5 and 0.75"


def test_equal_chunks_are_not_unpacked(tmp_path):
    values = np.random.default_rng(1).integers(0, 2**31, 10_000).astype("i4")
    paths = [tmp_path / "a.nc", tmp_path / "b.nc"]
    for path in paths:
        written(path, "i4", values).close()
        # Hardly packed, they are most of the file; whoever unpacks what is spoilt fails.
        packed = path.read_bytes()
        assert len(packed) > values.nbytes // 2
        middle = len(packed) // 2
        path.write_bytes(packed[:middle] + bytes(64) + packed[middle + 64 :])
    first, second = (quillon.open(path) for path in paths)
    with pytest.raises(quillon.Error):
        np.asarray(first["v"])
    assert quillon.compare(first, second).same
