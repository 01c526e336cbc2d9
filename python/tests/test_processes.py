"""Work in other processes and in threads."""

import multiprocessing
import os
import threading

import numpy as np
import pytest
import quillon


def compared(pair):
    return quillon.compare(*pair, rtol=1e-3)


def opened(path):
    return quillon.open(path)["SST"]


@pytest.mark.parametrize("method", ["spawn", "fork"])
def test_objects_travel_to_other_processes_and_back(data, method):
    cells = quillon.Dictionary({"a": quillon.Array(np.arange(5.0), ["x"], unit="K"), "b": {"c": ["text"]}})
    with multiprocessing.get_context(method).Pool(1) as pool:
        reports = pool.map(compared, [(cells, cells), (cells, {"a": [1.0]})])
        entry = pool.apply(opened, [data / "north_atlantic_climate.nc"])
    assert reports[0].same
    assert [row.path for row in reports[1].rows] == ["/a", "/b"] or reports[1].rows
    assert quillon.compare(entry, opened(data / "north_atlantic_climate.nc"), attrs=True).same


def test_threads_compare_read_and_render_at_once(data):
    """For as many seconds as QUILLON_THREAD_SECONDS says."""
    stop, wrong = threading.Event(), []
    file = quillon.open(data / "north_atlantic_climate.nc")
    values = {name: array.values for name, array in file.items()}
    lazy = quillon.Array.lazy(lambda a, b: values["SST"][a:b], values["SST"].shape, window=1 << 15, dtype="f4")

    def same():
        if not quillon.compare(file, values):
            wrong.append("values differ")

    def render():
        if "1010.52" not in file.to_table().to_html(3):
            wrong.append("another table")

    def read():
        if not np.array_equal(lazy[3:5], values["SST"][3:5], equal_nan=True):
            wrong.append("other values")

    def again(task):
        try:
            while not stop.is_set():
                task()
        except Exception as error:  # noqa: BLE001
            wrong.append(error)

    threads = [threading.Thread(target=again, args=[task]) for task in (same, render, read) * 2]
    for thread in threads:
        thread.start()
    stop.wait(float(os.environ.get("QUILLON_THREAD_SECONDS", "3")))
    stop.set()
    for thread in threads:
        thread.join()
    assert wrong == []


def test_an_interrupt_ends_a_comparison():
    """As Ctrl-C does: the handler of the signal runs while values are compared."""
    import signal

    class Interrupted(Exception):
        pass

    def handler(number, frame):
        raise Interrupted

    many = quillon.Array(np.broadcast_to(np.float64(1), (1 << 15, 1 << 20)))
    before = signal.signal(signal.SIGALRM, handler)
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.2)
        with pytest.raises(Interrupted):
            quillon.compare(many, many)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
