"""Tables: columns, parts of axes, writers, and what takes them."""

import datetime
import gc
import io
import json
import os
import subprocess
import sys
import tempfile
import threading

import numpy as np
import pandas
import pytest
import quillon

TIMES = np.array(["2011-08-01", "2011-08-02T06:00"], "M8[ns]")


@pytest.fixture
def grid():
    return quillon.Dictionary(
        {
            "time": quillon.Array(TIMES, ["time"]),
            "label": quillon.Array(["a", "b", "c"], ["label"]),
            "t": quillon.Array(np.arange(6, dtype="f4").reshape(2, 3), ["time", "label"], unit="K"),
            "n": quillon.Array(np.arange(2, dtype="u1"), ["time"]),
            "flag": quillon.Array([True, False, True], ["label"]),
            "lag": quillon.Array(np.array([1, 2], "m8[h]"), ["time"]),
            "z": quillon.Array(1j),
        }
    )


def test_has_the_stored_dtypes(grid):
    table = grid.to_table(["label", "time"])
    assert table.columns == ["label", "time", "t", "n", "flag", "lag"]
    assert table.index == ["label", "time"]
    assert table.shape == (6, 6)
    assert len(table) == 6
    assert table.units["t"] == "K"
    assert "time" not in table.units
    dtypes = {name: table[name].dtype for name in table.columns}
    assert dtypes == {"label": "O", "time": "M8[ns]", "t": "f4", "n": "u1", "flag": "?", "lag": "m8[h]"}
    assert table["label"].tolist() == ["a", "b", "c"] * 2
    assert table["time"].tolist() == np.repeat(TIMES, 3).tolist()
    assert table["t"].tolist() == [0, 1, 2, 3, 4, 5]
    assert any("'z'" in note for note in table.notes)


@pytest.mark.parametrize("name", ["ns", "ps", "us", "s", "D"])
def test_times_keep_their_precision(name):
    values = np.array([1, -1, "NaT"], f"M8[{name}]")
    table = quillon.Dictionary({"v": quillon.Array(values, ["x"])}).to_table()
    np.testing.assert_array_equal(table["v"], values)
    assert table["v"].dtype == values.dtype


def test_durations_that_are_none_are_missing():
    lags = np.array([1, "NaT"], "m8[h]")
    table = quillon.Dictionary({"lag": quillon.Array(lags, ["x"])}).to_table()
    assert table.to_csv() == "x,lag\n0,1\n1,\n"
    assert table.to_json() == '[\n{"x": 0, "lag": 1},\n{"x": 1, "lag": null}\n]\n'
    assert str(table).splitlines()[2:4] == ["0      1", "1"]
    np.testing.assert_array_equal(table["lag"], lags)
    assert table["lag"].dtype == lags.dtype
    assert table.to_pandas()["lag"].isna().tolist() == [False, True]


@pytest.mark.parametrize(
    "options, sentence",
    [
        ({"index": [1]}, "each of index is a text, not 1"),
        ({"variables": 1}, "variables is a text or several, not 1"),
        ({"select": "x=0"}, "select is a mapping, not 'x=0'"),
        ({"select": {0: 1}}, "a dimension of select is a text, not 0"),
        ({"select": {"x": slice(0, 1, 0.5)}}, "the step of 'x' is a whole number, not 0.5"),
    ],
)
def test_says_which_argument_is_of_another_type(options, sentence):
    with pytest.raises(TypeError) as error:
        quillon.Dictionary({"x": [1, 2]}).to_table(**options)
    assert str(error.value) == sentence
    with pytest.raises(TypeError, match="max_rows is a whole number, not 1.5"):
        quillon.Dictionary({"x": [1, 2]}).to_table().to_string(1.5)


def test_positions_may_be_of_any_size():
    dictionary = quillon.Dictionary({"v": quillon.Array([1, 2], ["x"])})
    assert dictionary.to_table(select={"x": slice(1, 10**30)})["v"].tolist() == [2]
    assert dictionary.to_table(select={"x": slice(-(10**30), 10**30)})["v"].tolist() == [1, 2]
    assert dictionary.to_table(select={"x": slice(0, 2, 10**30)})["v"].tolist() == [1]
    for position in (10**30, -(10**30)):
        with pytest.raises(quillon.ExportError, match="2 positions and none of number"):
            dictionary.to_table(select={"x": position})
    assert len(dictionary.to_table().to_string(10**30).splitlines()) == 4


@pytest.mark.parametrize("none", [np.datetime64("NaT"), pandas.NaT])
def test_no_time_is_no_coordinate(none):
    days = quillon.Array(np.array(["2011-08-01", "2011-08-02"], "M8[D]"), ["time"])
    for select in (none, slice(none, np.datetime64("2011-08-02"))):
        with pytest.raises(ValueError, match="^no coordinate of 'time' is NaT$"):
            quillon.Dictionary({"time": days}).to_table(select={"time": select})


def test_columns_outlive_tables_and_tables_what_they_are_made_of(grid):
    table = grid.to_table(["label", "time"])
    for name in list(grid):
        del grid[name]
    del grid
    gc.collect()
    column = table["t"]
    del table
    gc.collect()
    assert column.tolist() == [0, 1, 2, 3, 4, 5]


def test_coordinates_come_from_around():
    outer = quillon.Dictionary({"x": quillon.Array([5.0, 7.0], ["x"]), "g": {"v": quillon.Array([1, 2], ["x"])}})
    inner = outer["g"]
    del outer
    gc.collect()
    assert inner.to_table()["x"].tolist() == [5.0, 7.0]


SELECTIONS = [
    ({"time": 0}, [0, 1, 2]),
    ({"time": -1}, [3, 4, 5]),
    ({"time": np.int64(1)}, [3, 4, 5]),
    ({"time": slice(0, 1)}, [0, 1, 2]),
    ({"label": slice(None, None, 2)}, [0, 2, 3, 5]),
    ({"label": "b"}, [1, 4]),
    ({"label": slice("b", "c")}, [1, 2, 4, 5]),
    ({"time": "2011-08-02"}, [3, 4, 5]),
    ({"time": np.datetime64("2011-08-02T05")}, [3, 4, 5]),
    ({"time": slice("2011-08-01", "2011-08-01")}, [0, 1, 2]),
    ({"time": slice(TIMES[0], TIMES[1])}, [0, 1, 2, 3, 4, 5]),
    ({"time": 1, "label": "c"}, [5]),
    ({"time": datetime.date(2011, 8, 2)}, [3, 4, 5]),
    ({"time": datetime.datetime(2011, 8, 1, 5)}, [0, 1, 2]),
]


@pytest.mark.parametrize("select, expected", SELECTIONS, ids=str)
def test_selects_positions_and_coordinates(grid, select, expected):
    index = [name for name in ("label", "time") if name not in select or isinstance(select[name], slice)]
    assert grid.to_table(index, variables=["t"], select=select)["t"].tolist() == expected


@pytest.mark.parametrize(
    "select, error",
    [
        ({"time": 2}, quillon.ExportError),
        ({"time": slice(1, 1)}, quillon.ExportError),
        ({"time": slice(1, 0, -1)}, quillon.ExportError),
        ({"label": "d"}, quillon.ExportError),
        ({"nothing": 0}, quillon.ExportError),
        ({"label": slice("a", None)}, ValueError),
        ({"label": slice("a", "c", 2)}, ValueError),
        ({"time": True}, TypeError),
        ({"time": object()}, TypeError),
    ],
    ids=str,
)
def test_refuses_parts_that_are_not_there(grid, select, error):
    with pytest.raises(error):
        grid.to_table(["label", "time"], variables=["t"], select=select)


@pytest.mark.parametrize(
    "chosen, expected",
    [
        (1.4, [2]),
        (np.float32(2.4), [3]),
        (slice(0.6, 2.5), [2, 3]),
        (slice(1, 2.6), [2, 3]),
        (slice(0.6, 2), [2]),
        (slice(1, 2), [2]),
    ],
    ids=str,
)
def test_numbers_with_a_point_are_coordinates(chosen, expected):
    rows = quillon.Dictionary({"x": quillon.Array([0.5, 1.5, 2.5], ["x"]), "v": quillon.Array([1, 2, 3], ["x"])})
    assert rows.to_table(select={"x": chosen})["v"].tolist() == expected


def test_times_are_coordinates_to_the_microsecond():
    times = np.datetime64("2011-08-01", "us") + np.array([0, 250, 500])
    rows = quillon.Dictionary({"time": quillon.Array(times, ["time"]), "v": quillon.Array([1, 2, 3], ["time"])})
    for time, value in zip(times, [1, 2, 3]):
        assert rows.to_table(select={"time": time})["v"].tolist() == [value]
        assert rows.to_table(select={"time": slice(time, time)})["v"].tolist() == [value]


@pytest.mark.parametrize(
    "number, unit, text",
    [
        (-1, "ns", "1969-12-31T23:59:59.999999"),
        (1999, "ns", "1970-01-01T00:00:00.000001"),
        (-1, "ms", "1969-12-31T23:59:59.999"),
        (2, "25s", "1970-01-01T00:00:50"),
        (1, "W", "1970-01-08"),
        (-1, "M", "1969-12-01"),
        (41, "Y", "2011-01-01"),
    ],
)
def test_times_of_any_unit_are_written(number, unit, text):
    values = np.array([number, "NaT"], f"M8[{unit}]")
    table = quillon.Dictionary({"v": quillon.Array(values, ["x"])}).to_table()
    assert table.to_csv() == f"x,v\n0,{text}\n1,\n"


def test_one_name_may_stand_for_a_list(grid):
    assert grid.to_table("time", variables="lag").columns == ["time", "lag"]
    assert grid.to_pandas("label", variables="flag").index.name == "label"


def test_refuses_what_matches_nothing(grid):
    with pytest.raises(quillon.ExportError, match="'tt'"):
        grid.to_table(variables=["tt"])
    with pytest.raises(ValueError):
        grid.to_table(["nothing"])
    table = grid.to_table(["label", "time"], variables=["t"])
    with pytest.raises(KeyError, match="^\"there is no column 'tt'; the nearest are 't', 'time', 'label'\"$"):
        table["tt"]
    with pytest.raises(KeyError, match="no column 2"):
        table[2]


def test_refuses_a_dimension_of_two_sizes():
    both = quillon.Dictionary({"a": quillon.Array([1], ["x"]), "b": quillon.Array([1, 2], ["x"])})
    with pytest.raises(quillon.ExportError, match="'x'"):
        both.to_table(["x"])


def test_spreads_the_other_dimensions(grid):
    table = grid.to_table(["time"], variables=["t"])
    assert table.columns == ["time", "t[label=a]", "t[label=b]", "t[label=c]"]


def test_a_frame_has_the_coordinates_as_its_index(grid):
    frame = grid.to_pandas(["label", "time"], variables=["t", "n"])
    assert frame.index.names == ["label", "time"]
    assert frame.loc[("b", TIMES[1]), "t"] == 4
    assert frame.dtypes.to_dict() == {"t": "f4", "n": "u1"}
    assert grid.to_pandas(["label"], variables=["flag"]).index.name == "label"


@pytest.mark.parametrize("order", [["z", "y", "x"], ["x", "y", "z"], ["y", "x", "z"]])
def test_gives_the_frame_that_xarray_gives(order):
    xarray = pytest.importorskip("xarray")
    data = xarray.Dataset(
        {"v": (("x", "y", "z"), np.arange(24.0).reshape(2, 3, 4)), "w": ("y", [1, 2, 3])},
        {"x": [10, 20], "y": [0.5, 1.5, 2.5], "z": np.arange("2011-08", "2011-12", dtype="M8[M]").astype("M8[ns]")},
    )
    expected = data.to_dataframe(dim_order=order[::-1])[["v", "w"]].reorder_levels(order)
    frame = quillon.from_xarray(data).to_pandas(order)
    pandas.testing.assert_frame_equal(frame, expected, check_index_type=False)


@pytest.mark.parametrize("coordinates", [[1.0, 1.0], [np.nan, 1.0], ["b", "b"]])
def test_an_index_may_have_coordinates_twice_or_missing(coordinates):
    table = quillon.Dictionary(
        {"x": quillon.Array(coordinates, ["x"]), "v": quillon.Array([[1, 2], [3, 4]], ["x", "y"])}
    ).to_table(["x", "y"])
    frame = table.to_pandas()
    level = frame.index.get_level_values("x").tolist()
    np.testing.assert_array_equal(np.array(level), table["x"])
    assert frame["v"].tolist() == [1, 3, 2, 4]
    assert not any(level.hasnans for level in frame.index.levels)


def test_an_index_is_called_by_its_dimensions():
    both = quillon.Array([[1, 2], [3, 4]], ["x", "y"])
    entries = quillon.Dictionary({"x": both, "v": both})
    frame = entries.to_pandas(["x", "y"])
    assert (frame.index.names, list(frame.columns)) == (["x", "y"], ["x", "v"])
    assert entries.to_table(["x"]).index == ["x (position)"]
    assert entries.to_pandas(["x"]).index.name == "x"


@pytest.mark.parametrize("order", [["x", "y"], ["y", "x"], ["x"], ["y"]])
def test_a_frame_without_rows_has_its_index_and_columns(order):
    entries = {"y": quillon.Array(["a", "b"], ["y"]), "v": quillon.Array(np.zeros((0, 2)), ["x", "y"])}
    frame = quillon.Dictionary(entries).to_pandas(order, variables=["v"])
    assert frame.index.names == order
    assert len(frame) == (2 if order == ["y"] else 0)


def test_writes_text(grid):
    table = grid.to_table(["label", "time"], variables=["t", "flag"])
    assert table.to_csv().splitlines()[:2] == ["label,time,t,flag", "a,2011-08-01T00:00:00,0,true"]
    assert json.loads(table.to_json())[5] == {"label": "c", "time": "2011-08-02T06:00:00", "t": 5, "flag": True}
    assert table.to_string(1).splitlines()[-1] == "[6 rows x 4 columns]"
    assert len(table.to_string().splitlines()) == 9
    assert table.to_html().count("<tr>") == 8
    assert table.to_html(2).count("<tr>") == 4
    assert str(table) == repr(table) == table.to_string(10).rstrip("\n")
    assert table.to_string(0) == table.to_string(6) == table.to_string()
    for write in (table.to_string, table.to_html):
        with pytest.raises(ValueError, match="-1"):
            write(-1)


def test_text_is_as_wide_as_it_has_to_be():
    table = quillon.Dictionary({"v": quillon.Array(["long " * 40], ["x"])}).to_table()
    assert "long " * 39 + "long" in table.to_string()


def test_shows_ten_rows():
    table = quillon.Dictionary({"v": quillon.Array(np.arange(100), ["x"])}).to_table()
    assert len(str(table).splitlines()) == 12
    page = table._repr_html_()
    assert page.count("<tr>") == 11
    assert "100 rows" in page
    assert "<td" in page


def test_writes_files_whole_or_not_at_all(grid, tmp_path):
    table = grid.to_table(["label", "time"], variables=["t"])
    for form in ("csv", "json"):
        path = tmp_path / f"table.{form}"
        write = getattr(table, f"to_{form}")
        assert write(path) is None
        assert path.read_text() == write()
        text = io.StringIO()
        write(text)
        assert text.getvalue() == write()
    with pytest.raises(OSError):
        table.to_csv(tmp_path / "none" / "t.csv")
    other = quillon.Dictionary({"v": quillon.Array(["µ", "温"], ["x"])}).to_table()
    text = io.StringIO()
    other.to_csv(text)
    assert text.getvalue() == other.to_csv() == "x,v\n0,µ\n1,温\n"

    def failing(start, stop):
        raise ZeroDivisionError

    broken = quillon.Dictionary({"v": quillon.Array.lazy(failing, [3])}).to_table()
    with pytest.raises(ZeroDivisionError):
        broken.to_csv(tmp_path / "table.csv")
    assert sorted(p.name for p in tmp_path.iterdir()) == ["table.csv", "table.json"]
    assert (tmp_path / "table.csv").read_text() == table.to_csv()


def test_writes_behind_links_and_to_what_is_no_file(grid, tmp_path):
    table = grid.to_table(["label", "time"])
    real, link, pipe = (tmp_path / name for name in ("real.csv", "link.csv", "pipe"))
    real.write_text("old")
    real.chmod(0o640)
    link.symlink_to("real.csv")
    table.to_csv(link)
    assert link.is_symlink()
    assert real.read_text() == table.to_csv()
    assert real.stat().st_mode & 0o777 == 0o640

    os.mkfifo(pipe)
    got = []
    reader = threading.Thread(target=lambda: got.append(pipe.read_text()))
    reader.start()
    table.to_csv(pipe)
    reader.join()
    assert got == [table.to_csv()]
    assert pipe.is_fifo()

    with open(tmp_path / "out", "w+b", buffering=0) as out:
        out.write(b"before\n")
        table.to_csv(f"/dev/fd/{out.fileno()}")
        out.write(b"after\n")
    assert (tmp_path / "out").read_text() == f"before\n{table.to_csv()}after\n"

    table.to_csv(os.fsencode(tmp_path / "bytes.csv"))
    assert (tmp_path / "bytes.csv").read_text() == table.to_csv()


@pytest.mark.parametrize("path, error", [("", IsADirectoryError), ("none/t.csv", FileNotFoundError)])
def test_names_the_path_that_cannot_be_written(grid, tmp_path, path, error):
    with pytest.raises(error) as raised:
        grid.to_table().to_csv(tmp_path / path)
    assert raised.value.filename == str(tmp_path / path)
    for none in ("", f"{tmp_path}/a\0b"):
        with pytest.raises(ValueError, match="no file's name"):
            grid.to_table().to_csv(none)


def test_replaces_no_file_that_may_not_be_written():
    script = """
import os, sys
import quillon
table = quillon.Dictionary({"v": quillon.Array([1], ["x"])}).to_table()
os.chdir(sys.argv[1])
with open("kept.csv", "w") as kept:
    kept.write("old")
os.chmod("kept.csv", 0o444)
if os.geteuid() == 0:
    os.setuid(65534)
table.to_csv("new.csv")
try:
    table.to_csv("kept.csv")
except PermissionError as error:
    print(error.filename, open("kept.csv").read(), sorted(os.listdir()))
"""
    with tempfile.TemporaryDirectory(dir="/tmp") as folder:
        os.chmod(folder, 0o777)
        done = subprocess.run([sys.executable, "-c", script, folder], capture_output=True, text=True)
    assert done.stdout == "kept.csv old ['kept.csv', 'new.csv']\n", done.stderr


def test_gives_columns_to_other_frames(grid):
    table = grid.to_table(["label", "time"], variables=["t", "n"])
    frame = pandas.api.interchange.from_dataframe(table.to_pandas().__dataframe__())
    assert frame["t"].tolist() == table["t"].tolist()
    assert list(table.__dataframe__().column_names()) == ["label", "time", "t", "n"]


def test_a_table_without_rows_or_index_is_one():
    empty = quillon.Dictionary({"v": quillon.Array(np.zeros(0), ["x"])}).to_table()
    assert empty.shape == (0, 2)
    assert empty.to_pandas().empty
    single = quillon.Dictionary({"v": quillon.Array(3.5)}).to_table()
    assert single.to_pandas()["v"].tolist() == [3.5]
