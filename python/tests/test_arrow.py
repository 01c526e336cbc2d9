"""Arrow's stream of a table, as a consumer written after its C interface takes it."""

import ctypes
import gc
import struct

import numpy as np
import pytest
import quillon


class Schema(ctypes.Structure):
    pass


class Column(ctypes.Structure):
    pass


class Stream(ctypes.Structure):
    pass


Schema._fields_ = [
    ("format", ctypes.c_char_p),
    ("name", ctypes.c_char_p),
    ("metadata", ctypes.c_char_p),
    ("flags", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("children", ctypes.POINTER(ctypes.POINTER(Schema))),
    ("dictionary", ctypes.POINTER(Schema)),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Schema))),
    ("private_data", ctypes.c_void_p),
]
Column._fields_ = [
    ("length", ctypes.c_int64),
    ("null_count", ctypes.c_int64),
    ("offset", ctypes.c_int64),
    ("n_buffers", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("buffers", ctypes.POINTER(ctypes.c_void_p)),
    ("children", ctypes.POINTER(ctypes.POINTER(Column))),
    ("dictionary", ctypes.POINTER(Column)),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Column))),
    ("private_data", ctypes.c_void_p),
]
Stream._fields_ = [
    ("get_schema", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(Stream), ctypes.POINTER(Schema))),
    ("get_next", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(Stream), ctypes.POINTER(Column))),
    ("get_last_error", ctypes.CFUNCTYPE(ctypes.c_char_p, ctypes.POINTER(Stream))),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Stream))),
    ("private_data", ctypes.c_void_p),
]
NUMBERS = {
    b"c": "i1", b"s": "i2", b"i": "i4", b"l": "i8", b"C": "u1", b"S": "u2", b"I": "u4", b"L": "u8",
    b"f": "f4", b"g": "f8", b"tsu:": "M8[us]",
}  # fmt: skip


def content(capsule, name, kind):
    get = ctypes.pythonapi.PyCapsule_GetPointer
    get.restype, get.argtypes = ctypes.c_void_p, [ctypes.py_object, ctypes.c_char_p]
    return ctypes.cast(get(capsule, name), ctypes.POINTER(kind))


def buffer(column, number, dtype, count):
    return np.frombuffer(ctypes.string_at(column.buffers[number], np.dtype(dtype).itemsize * count), dtype)


def bits(column, number):
    packed = buffer(column, number, "u1", (column.length + 7) // 8)
    return np.unpackbits(packed, bitorder="little")[: column.length].astype(bool)


def cells(column, form):
    if form == b"u":
        ends = buffer(column, 1, "i4", column.length + 1)
        text = ctypes.string_at(column.buffers[2], int(ends[-1]))
        values = [text[a:b].decode() for a, b in zip(ends, ends[1:])]
    else:
        values = bits(column, 1) if form == b"b" else buffer(column, 1, NUMBERS[form], column.length)
    if column.null_count:
        return [value if valid else None for value, valid in zip(values, bits(column, 0))]
    return list(values)


def units(table):
    """The units in the metadata of the fields, as the interface has them."""
    capsule = table.__arrow_c_schema__()
    schema = content(capsule, b"arrow_schema", Schema)
    found = {}
    for k in range(schema.contents.n_children):
        field = schema.contents.children[k].contents
        address = ctypes.cast(ctypes.byref(field, Schema.metadata.offset), ctypes.POINTER(ctypes.c_void_p))[0]
        if address:
            count, length = struct.unpack("=ii", ctypes.string_at(address, 8))
            key = ctypes.string_at(address + 8, length)
            (size,) = struct.unpack("=i", ctypes.string_at(address + 8 + length, 4))
            assert (count, key) == (1, b"units")
            found[field.name.decode()] = ctypes.string_at(address + 12 + length, size).decode()
    return found


class Offered:
    """Any library's table: all that is known of it is its stream."""

    def __init__(self, table):
        self.table = table

    def __arrow_c_stream__(self, requested_schema=None):
        return self.table.__arrow_c_stream__(requested_schema)


class Nullable:
    """A batch of integers, truth values and texts, the last of each of which is null."""

    def __init__(self, second=2):
        self.released = []
        self.left = 1
        self.buffers = [
            (b"i", b"l", [b"\3", np.array([1, second, 9])]),
            (b"b", b"b", [b"\3", np.array([0b101], "u1")]),
            (b"t", b"u", [b"\3", np.array([0, 1, 2, 3], "i4"), np.frombuffer(b"abc", "u1")]),
        ]

    def fill(self, kind, out, children, **fields):
        out.contents.children = (ctypes.POINTER(kind) * len(children))(*map(ctypes.pointer, children))
        out.contents.n_children = len(children)
        for name, value in fields.items():
            setattr(out.contents, name, value)

        def release(pointer):
            self.released.append(kind.__name__)
            pointer.contents.release = type(out.contents.release)()

        self.keep.append((children, release := type(out.contents.release)(release)))
        out.contents.release = release
        return 0

    def get_schema(self, stream, out):
        children = [Schema(format=form, name=name) for name, form, _ in self.buffers]
        return self.fill(Schema, out, children, format=b"+s", name=b"", metadata=None, flags=0)

    def get_next(self, stream, out):
        ctypes.memset(out, 0, ctypes.sizeof(Column))
        self.left -= 1
        if self.left < 0:
            return 0
        children = []
        for _, _, (validity, *rest) in self.buffers:
            addresses = [ctypes.cast(ctypes.c_char_p(validity), ctypes.c_void_p).value]
            addresses += [buffer.ctypes.data for buffer in rest]
            pointers = (ctypes.c_void_p * len(addresses))(*addresses)
            children.append(Column(length=3, null_count=1, n_buffers=len(addresses), buffers=pointers))
        none = (ctypes.c_void_p * 1)(None)
        return self.fill(Column, out, children, length=3, n_buffers=1, buffers=none)

    def __arrow_c_stream__(self, requested_schema=None):
        def release(stream):
            self.released.append("Stream")
            stream.contents.release = type(stream.contents.release)()

        calls = dict(Stream._fields_)
        self.keep = [
            calls["get_schema"](self.get_schema),
            calls["get_next"](self.get_next),
            calls["get_last_error"](lambda stream: None),
            calls["release"](release),
        ]
        self.stream = Stream(*self.keep, None)
        new = ctypes.pythonapi.PyCapsule_New
        new.restype, new.argtypes = ctypes.py_object, [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
        return new(ctypes.addressof(self.stream), b"arrow_array_stream", None)


def read(table):
    """The columns of a table through the stream."""
    capsule = table.__arrow_c_stream__()
    stream = content(capsule, b"arrow_array_stream", Stream)
    schema = Schema()
    assert stream.contents.get_schema(stream, ctypes.byref(schema)) == 0
    assert schema.format == b"+s"
    forms = {schema.children[k].contents.name.decode(): schema.children[k].contents.format for k in range(schema.n_children)}
    columns = {name: [] for name in forms}
    while True:
        batch = Column()
        assert stream.contents.get_next(stream, ctypes.byref(batch)) == 0, stream.contents.get_last_error(stream)
        if not batch.release:
            break
        assert batch.n_children == len(forms)
        for k, (name, form) in enumerate(forms.items()):
            columns[name] += cells(batch.children[k].contents, form)
        batch.release(ctypes.byref(batch))
    schema.release(ctypes.byref(schema))
    return columns


@pytest.mark.parametrize("dtype", ["i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f4", "f8", "?", "U3", "M8[us]"])
@pytest.mark.parametrize("count", [0, 1, 9, 70_000])
def test_gives_every_type_of_column(dtype, count):
    if dtype == "U3" and count > 1000:
        count = 1000
    values = (np.arange(count) % 7).astype("i8").astype(dtype)
    table = quillon.Dictionary({"v": quillon.Array(values, ["x"])}).to_table()
    columns = read(table)
    assert list(columns) == ["x", "v"]
    assert columns["x"] == list(range(count))
    assert columns["v"] == list(values)


def test_missing_times_are_null():
    times = np.array(["2011-08-01", "NaT", "1969-12-31"], "M8[s]")
    columns = read(quillon.Dictionary({"t": quillon.Array(times, ["x"])}).to_table())
    assert columns["t"] == [np.datetime64("2011-08-01", "us"), None, np.datetime64("1969-12-31", "us")]


def test_missing_floats_are_null():
    columns = read(quillon.Dictionary({"d": [1.0, np.nan], "f": np.array([np.nan, 2], "f4")}).to_table())
    assert columns["d"] == [1.0, None]
    assert columns["f"] == [None, 2.0]


def test_units_are_metadata():
    entries = {"d": quillon.Array([1.0], ["x"], unit="m s-1"), "n": quillon.Array([1], ["x"])}
    assert units(quillon.Dictionary(entries).to_table()) == {"d": "m s-1"}


def test_values_are_not_copied():
    values = np.arange(10.0)
    table = quillon.Dictionary({"d": quillon.Array(values, ["x"])}).to_table()
    capsule = table.__arrow_c_stream__()
    stream = content(capsule, b"arrow_array_stream", Stream)
    batch = Column()
    assert stream.contents.get_next(stream, ctypes.byref(batch)) == 0
    assert batch.children[1].contents.buffers[1] == values.ctypes.data
    del table, capsule, stream, values
    gc.collect()
    assert cells(batch.children[1].contents, b"g") == list(range(10))
    batch.release(ctypes.byref(batch))


def test_what_nobody_takes_is_released():
    table = quillon.Dictionary({"v": [1.0]}).to_table()
    for _ in range(100):
        table.__arrow_c_stream__(), table.__arrow_c_schema__()
    gc.collect()
    assert read(table)["v"] == [1.0]


def test_failures_are_told():
    def failing(start, stop):
        raise ValueError("not today")

    table = quillon.Dictionary({"v": quillon.Array.lazy(failing, [3])}).to_table()
    with pytest.raises(AssertionError, match="raised an exception: ValueError: not today"):
        read(table)


@pytest.mark.parametrize("dtype", ["i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f4", "f8", "?", "U3", "M8[us]"])
@pytest.mark.parametrize("count", [0, 1, 9, 70_000])
def test_takes_every_type_of_column(dtype, count):
    count = min(count, 1000) if dtype == "U3" else count
    values = (np.arange(count) % 7).astype("i8").astype(dtype)
    table = quillon.Dictionary({"v": quillon.Array(values, ["x"], unit="" if "M8" in dtype else "m")}).to_table()
    taken = quillon.from_arrow(Offered(table))
    assert taken.columns == ["x", "v"]
    assert taken.shape == (count, 2)
    assert taken.index == []
    assert taken.units == table.units
    assert taken["v"].dtype == table["v"].dtype
    np.testing.assert_array_equal(taken["v"], values)
    np.testing.assert_array_equal(taken["x"], np.arange(count))


def test_missing_values_are_taken():
    times = np.array(["2011-08-01", "NaT"], "M8[us]")
    table = quillon.Dictionary({"t": times, "d": [np.nan, 1.0]}).to_table(variables=["t", "d"])
    taken = quillon.from_arrow(Offered(table))
    np.testing.assert_array_equal(taken["t"], times)
    np.testing.assert_array_equal(taken["d"], [np.nan, 1.0])


def test_nulls_of_other_types_are_nan_and_empty_texts():
    offer = Nullable()
    taken = quillon.from_arrow(offer)
    assert sorted(offer.released) == ["Schema", "Stream"]
    np.testing.assert_array_equal(taken["i"], [1.0, 2.0, np.nan])
    np.testing.assert_array_equal(taken["b"], [1.0, 0.0, np.nan])
    np.testing.assert_array_equal(taken["t"], ["a", "b", ""])
    assert taken.to_csv() == "i,b,t\n1,true,a\n2,false,b\n,,\n"
    assert read(taken) == {"i": [1, 2, None], "b": [True, False, None], "t": ["a", "b", None]}
    del taken
    assert offer.released.count("Column") == 1


@pytest.mark.parametrize("number", [2**60, 2**53 + 1, -(2**53) - 1])
def test_integers_that_no_float_holds_are_not_rounded(number):
    offer = Nullable(second=number)
    taken = quillon.from_arrow(offer)
    with pytest.raises(quillon.ExportError, match=f"^The column 'i' has missing values beside {number}, which no float64 holds$"):
        taken["i"]
    assert taken.to_csv().splitlines()[2] == f"{number},false,b"
    del taken
    assert offer.released.count("Column") == 1


@pytest.mark.parametrize("number", [2**53, -(2**53)])
def test_the_largest_integers_that_floats_hold_are_taken(number):
    np.testing.assert_array_equal(quillon.from_arrow(Nullable(second=number))["i"], [1.0, number, np.nan])


def test_a_table_that_was_taken_is_a_table():
    area = quillon.Array([212, 96], ["label"], unit="um2")
    taken = quillon.from_arrow(quillon.Dictionary({"area": area}).to_table())
    assert str(taken) == "label  area\n        um2\n    0   212\n    1    96\n[2 rows x 2 columns]"
    assert read(taken) == {"label": [0, 1], "area": [212, 96]}
    frame = taken.to_pandas()
    assert list(frame.index) == [0, 1] and list(frame["area"]) == [212, 96]


@pytest.mark.parametrize("value", [None, 3, [1], np.zeros(2), quillon.Table])
def test_what_offers_no_stream_is_refused(value):
    with pytest.raises(TypeError, match=f"^an object with __arrow_c_stream__ is wanted, not a {type(value).__name__}$"):
        quillon.from_arrow(value)


def test_another_capsule_is_refused():
    class Other:
        def __arrow_c_stream__(self):
            return quillon.Dictionary({"a": [1]}).to_table().__arrow_c_schema__()

    with pytest.raises(ValueError, match="incorrect name"):
        quillon.from_arrow(Other())


def test_a_stream_is_taken_once():
    capsule = quillon.Dictionary({"a": [1]}).to_table().__arrow_c_stream__()

    class Once:
        def __arrow_c_stream__(self):
            return capsule

    assert len(quillon.from_arrow(Once())) == 1
    with pytest.raises(quillon.ExportError, match="^The stream has been released$"):
        quillon.from_arrow(Once())


def test_a_stream_that_fails_is_quoted():
    def failing(start, stop):
        raise ValueError("not today")

    table = quillon.Dictionary({"v": quillon.Array.lazy(failing, [3])}).to_table()
    with pytest.raises(quillon.ExportError, match="^The stream failed: .*ValueError: not today"):
        quillon.from_arrow(table)


def test_streams_are_compared():
    first = quillon.Dictionary({"d": quillon.Array([1.0, 2.0], ["x"], unit="m")}).to_table()
    second = quillon.Dictionary({"d": quillon.Array([1.0, 2.5], ["x"], unit="m")}).to_table()
    assert quillon.compare(Offered(first), first)
    assert quillon.compare(Offered(first), Offered(second)).lines() == [
        "/d: 1 of 2 values differ; the largest delta is 0.5 at row=1: 2 and 2.5"
    ]
    assert quillon.compare(first, {"x": [0, 1], "d": [1.0, 2.0]}).lines() == ["/x: the element types differ: UInt and Int"]
    assert quillon.compare({"t": Offered(first)}, {"t": second}).lines() == [
        "/t/d: 1 of 2 values differ; the largest delta is 0.5 at row=1: 2 and 2.5"
    ]


def test_a_dictionary_takes_the_columns_of_a_stream():
    table = quillon.Dictionary({"d": quillon.Array([1.0, 2.0], ["x"], unit="m")}).to_table()
    for given in (table, Offered(table)):
        columns = quillon.Dictionary({"t": given})["t"]
        assert {name: (array.dims, array.unit, array.values.tolist()) for name, array in columns.items()} == {
            "x": (("row",), "", [0, 1]),
            "d": (("row",), "m", [1.0, 2.0]),
        }


def test_streams_are_compared_with_frames():
    pandas = pytest.importorskip("pandas")
    frame = pandas.DataFrame({"d": [1.0, 2.0], "n": ["a", "b"]})
    table = quillon.from_pandas(frame).to_table(variables=["d", "n"])
    named = quillon.compare(frame, Offered(table), ignore=["/row"])
    assert named.lines() == []
    assert named
