"""Lazy arrays: when they are read, in which parts, and what their errors do."""

import gc
import threading
import weakref

import numpy as np
import pytest
import quillon


class Recorder:
    """Gives windows of values and keeps which."""

    def __init__(self, values):
        self.values = values
        self.calls = []

    def __call__(self, start, stop):
        self.calls.append((start, stop))
        return self.values[start:stop]

    def array(self, window=8 << 20, **options):
        return quillon.Array.lazy(self, self.values.shape, dtype=self.values.dtype, window=window, **options)


def test_reads_nothing_before_it_is_asked():
    read = Recorder(np.arange(6.0).reshape(3, 2))
    array = read.array(dims=["time", "x"], unit="K")
    repr(array), array.shape, array._repr_html_(), quillon.Dictionary({"a": array}).to_table().shape
    assert read.calls == []
    np.testing.assert_array_equal(array.values, read.values)
    assert read.calls == [(0, 3)]


def test_says_what_other_arrays_say():
    array = quillon.Array.lazy(
        failing,
        [1, 2],
        ["time", "x"],
        name="t",
        unit="K",
        physical_unit="mK",
        description="Temperature",
        attrs={"standard_name": "air_temperature"},
    )
    assert (array.name, array.dims, array.shape, array.dtype) == ("t", ("time", "x"), (1, 2), "f8")
    assert (array.unit, array.physical_unit, array.description) == ("K", "mK", "Temperature")
    assert array.attrs == {"standard_name": "air_temperature"}


def test_reads_windows_of_about_the_given_size():
    read = Recorder(np.arange(40).reshape(10, 4))
    array = read.array(window=3 * 4 * 8)
    assert quillon.compare(array, read.values).same
    assert read.calls == [(0, 3), (3, 6), (6, 9), (9, 10)]


def test_keeps_the_window_that_it_read_last():
    read = Recorder(np.arange(6))
    array = read.array(window=3 * 8)
    assert [array[k] for k in (0, 2, 1, 3, 5, 0)] == [0, 2, 1, 3, 5, 0]
    assert read.calls == [(0, 3), (3, 6), (0, 3)]


def test_reads_one_index_at_least():
    read = Recorder(np.arange(8).reshape(2, 4))
    assert quillon.compare(read.array(window=1), read.values).same
    assert read.calls == [(0, 1), (1, 2)]


@pytest.mark.parametrize("dtype", ["i1", "u2", "f4", "f8", "c8", "c16", "?", "M8[ns]", "m8[h]"])
@pytest.mark.parametrize("shape", [(5,), (4, 3), (3, 2, 4), (0, 3), (3, 0), (2, 3, 2, 2)])
def test_gives_the_values_of_any_dtype_and_shape(dtype, shape):
    read = Recorder(np.arange(np.prod(shape)).reshape(shape).astype(dtype))
    array = read.array(window=24)
    assert array.dtype == read.values.dtype
    np.testing.assert_array_equal(array.values, read.values)
    for key in np.ndindex(*shape):
        assert array[key] == read.values[key]
    if not dtype.startswith("c"):
        table = quillon.Dictionary({"a": array}).to_table(array.dims)
        np.testing.assert_array_equal(table["a"], read.values.ravel(order="F"))


class Odd(Exception):
    pass


def failing(start, stop):
    raise Odd("not today")


@pytest.mark.parametrize(
    "ask",
    [
        lambda a: a.values,
        lambda a: a[1],
        lambda a: quillon.compare(a, np.zeros(3)),
        lambda a: quillon.compare({"a": a}, {"a": np.zeros(3)}),
        lambda a: quillon.Dictionary({"a": a}).to_table()["a"],
        lambda a: quillon.Dictionary({"a": a}).to_table().to_csv(),
        lambda a: str(quillon.Dictionary({"a": a}).to_table()),
        lambda a: quillon.object_model.are_same_arrays(a, a, 0, 0),
        lambda a: quillon.object_model.export_to_string(quillon.Dictionary({"a": a}), ["dim_0"], 0),
    ],
)
def test_passes_on_what_reading_raises(ask):
    with pytest.raises(Odd, match="not today"):
        ask(quillon.Array.lazy(failing, [3]))


@pytest.mark.parametrize(
    "given, sentence",
    [(np.zeros(2), r"\(2,\).*\(3,\)"), (np.zeros((3, 1)), r"\(3, 1\).*\(3,\)"), (0.0, r"\(\).*\(3,\)")],
)
def test_refuses_values_of_another_shape(given, sentence):
    with pytest.raises(ValueError, match=sentence):
        quillon.Array.lazy(lambda a, b: given, [3]).values


def test_refuses_values_of_another_kind():
    with pytest.raises(TypeError, match="int64.*float64"):
        quillon.Array.lazy(lambda a, b: np.zeros(b - a), [3], dtype="int64").values


def test_takes_values_of_another_precision():
    array = quillon.Array.lazy(lambda a, b: np.arange(a, b), [3], dtype="f4")
    assert array.values.dtype == np.float32
    assert array.values.tolist() == [0, 1, 2]


def test_refuses_integers_that_its_dtype_does_not_hold():
    for given, dtype, sentence in (
        (np.int64([1, 300]), "i1", "'int8' was given 300"),
        (np.int64([-1, -200]), "i1", "'int8' was given -200"),
        (np.uint64([1, 2**64 - 1]), "i8", "'int64' was given 18446744073709551615"),
    ):
        with pytest.raises(ValueError, match=sentence):
            quillon.Array.lazy(lambda a, b, values=given: values[a:b], [2], dtype=dtype).values
    held = quillon.Array.lazy(lambda a, b: np.uint64([1, 2**63 - 1])[a:b], [2], dtype="i8")
    assert held.values.tolist() == [1, 2**63 - 1]


def test_refuses_values_that_are_masked():
    masked = np.ma.masked_equal([1.0, 2.0], 2)
    with pytest.raises(ValueError, match="masked"):
        quillon.Array.lazy(lambda a, b: masked[a:b], [2]).values
    assert quillon.Array.lazy(lambda a, b: masked[a:b], [1]).values.tolist() == [1]


@pytest.mark.parametrize("given, kept", [(">f8", "f8"), (">i2", "i2"), (">M8[s]", "M8[s]"), ("f2", "f4")])
def test_takes_what_other_arrays_copy(given, kept):
    values = np.array([1, 0, 1]).astype(given)
    array = quillon.Array.lazy(Recorder(values), [3], dtype=given)
    assert array.dtype == kept
    assert array.values.dtype == kept
    np.testing.assert_array_equal(array.values, values)


@pytest.mark.parametrize("shape, window", [([], 8), ([-1], 8), ([1], 0)])
def test_refuses_shapes_and_windows_that_are_none(shape, window):
    with pytest.raises(ValueError):
        quillon.Array.lazy(failing, shape, window=window)


def test_lets_go_of_its_function():
    read = Recorder(np.zeros(3))
    gone = weakref.ref(read)
    array = read.array()
    array.values
    del read, array
    gc.collect()
    assert gone() is None


def test_may_be_read_by_several_threads():
    read = Recorder(np.arange(300).reshape(100, 3))
    array = read.array(window=64)
    wrong = []
    threads = [
        threading.Thread(target=lambda: wrong.extend([] if quillon.compare(array, read.values) else [1]))
        for _ in range(4)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []
