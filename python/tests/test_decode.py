"""Decoded files: what xarray makes of them, and what it cannot."""

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
