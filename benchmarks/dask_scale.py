"""What a chunk costs `quillon.dask.compare`: beside its values, and with 5 million of them.

Graph, tasks, scheduler and merge are the same for both. Chunks of one value have nothing to read, so
that a million of them can be tried; the others are those of two files, which are made and read before
they are measured. The figures of docs/scale.md come from this program.
"""

from __future__ import annotations

import argparse
import os
import resource
import tempfile
import time
from collections.abc import Callable
from typing import Any

import dask.array
import distributed
import numpy as np
import quillon
import quillon.dask
import xarray

VALUES = 5_000_000


class Nothing:
    """An array of one number, which takes neither memory nor time to read."""

    def __init__(self, number: float, size: int) -> None:
        self.number, self.shape, self.ndim, self.dtype = number, (size,), 1, np.dtype("f8")

    def __getitem__(self, key: tuple[slice]) -> np.ndarray:
        return np.full(key[0].stop - key[0].start, self.number)


def nothing(chunks: int, _: str) -> list[Any]:
    """Two sides that differ by one, a chunk for each value."""
    sources = (Nothing(number, chunks) for number in (0.0, 1.0))
    sides = (dask.array.from_array(some, chunks=1, inline_array=True) for some in sources)
    return [xarray.Dataset({"t": ("x", side)}) for side in sides]


def files(chunks: int, folder: str) -> list[Any]:
    """Two files of so many chunks of VALUES that are the same, and which the system keeps in memory."""
    sides = []
    for name in ("first", "second"):
        path = os.path.join(folder, f"{name}.nc")
        shape = [chunks * VALUES // 1000, 1000]
        rows = quillon.Array.lazy(lambda a, b: np.random.default_rng(a).random((b - a, 1000)), shape)
        quillon.save({"t": rows}, path)
        sides.append(quillon.dask.open(path, chunks={"dim_0": VALUES // 1000, "dim_1": 1000}))
        sides[-1]["t"].sum().compute()
    return sides


def peak_memory() -> float:
    """The largest memory of this process so far, in GiB."""
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / (1 << 20)


def measure(client: Any, chunks: int, make: Callable[[int, str], list[Any]]) -> None:
    """Compare sides that are the same, or of which every value differs by one; the figures are checked."""

    def processor_seconds() -> tuple[float, float]:
        return time.process_time(), sum(client.run(time.process_time).values()) if client else 0.0

    with tempfile.TemporaryDirectory() as folder:
        sides = make(chunks, folder)
        size = sides[0]["t"].size
        before, start = processor_seconds(), time.monotonic()
        report = quillon.dask.compare(*sides)
        elapsed, after = time.monotonic() - start, processor_seconds()
    found = [(row.count, row.largest, row.where) for row in report.rows]
    assert (report.values, found) == (size, [] if make is files else [(size, 1.0, {"x": 0})])
    here, there = ((b - a) / chunks * 1e3 for a, b in zip(before, after))
    print(
        f"{chunks:>9,}  {size // chunks:>9,}  {elapsed:>9.1f}  {chunks / elapsed:>8,.1f}  {here:>12.2f}  "
        f"{there:>10.2f}  {peak_memory():>5.2f}",
        flush=True,
    )


def measure_all(client: Any, arguments: argparse.Namespace) -> None:
    quillon.dask.compare(*nothing(100, ""))
    print("   chunks  values of  elapsed s  chunks/s  scheduler ms  workers ms    GiB")
    for chunks in arguments.files:
        measure(client, chunks, files)
    for chunks in arguments.chunks:
        measure(client, chunks, nothing)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("chunks", type=int, nargs="*", help="of one value", default=[1_000, 10_000, 100_000])
    parser.add_argument("--files", type=int, nargs="*", help="of 5 million values, in files", default=[40])
    parser.add_argument("--workers", type=int, help="0: the threads of this process", default=os.cpu_count())
    arguments = parser.parse_args()
    if arguments.workers == 0:
        measure_all(None, arguments)
        return
    options = {"n_workers": arguments.workers, "threads_per_worker": 1, "dashboard_address": ":0"}
    with distributed.LocalCluster(**options) as cluster, distributed.Client(cluster) as client:
        measure_all(client, arguments)


if __name__ == "__main__":
    main()
