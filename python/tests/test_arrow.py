"""Arrow's stream of a table, as a consumer written after its C interface takes it."""

import ctypes
import gc

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
        return [text[a:b].decode() for a, b in zip(ends, ends[1:])]
    values = bits(column, 1) if form == b"b" else buffer(column, 1, NUMBERS[form], column.length)
    if column.null_count:
        values = np.where(bits(column, 0), values, np.datetime64("NaT"))
    return list(values)


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
    np.testing.assert_array_equal(np.array(columns["t"]), times.astype("M8[us]"))


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
    with pytest.raises(AssertionError, match="raised an exception"):
        read(table)
