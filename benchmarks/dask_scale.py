"""What a chunk costs beside its values: `quillon.dask.compare` of chunks of one value each.

Graph, tasks, scheduler and merge are those of a comparison of real chunks; there is only nothing to
read. The figures of docs/scale.md come from this program: `dask_scale.py 1000000` for a million chunks.
"""

from __future__ import annotations

import argparse
import os
import resource
import time
from typing import Any

import dask.array
import distributed
import numpy as np
import xarray

import quillon.dask


def processor_seconds(client: Any) -> tuple[float, float]:
    """Of this process, which has the scheduler, and of all workers."""
    return time.process_time(), sum(client.run(time.process_time).values())


def peak_memory() -> float:
    """The largest memory of this process so far, in GiB."""
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / (1 << 20)


class Nothing:
    """An array of one number, which takes neither memory nor time to read."""

    def __init__(self, number: float, size: int) -> None:
        self.number, self.shape, self.ndim, self.dtype = number, (size,), 1, np.dtype("f8")

    def __getitem__(self, key: tuple[slice]) -> np.ndarray:
        return np.full(key[0].stop - key[0].start, self.number)


def compared(chunks: int) -> None:
    """Compare `chunks` values that differ with a chunk for each; the figures are checked."""
    sources = (Nothing(number, chunks) for number in (0.0, 1.0))
    sides = (dask.array.from_array(some, chunks=1, inline_array=True) for some in sources)
    report = quillon.dask.compare(*(xarray.DataArray(side, dims="x") for side in sides))
    row = report.rows[0]
    assert (report.values, row.count, row.largest, row.where) == (chunks, chunks, 1.0, {"x": 0})


def measure(client: Any, chunks: int) -> None:
    before, start = processor_seconds(client), time.monotonic()
    compared(chunks)
    elapsed = time.monotonic() - start
    here, there = (b - a for a, b in zip(before, processor_seconds(client)))
    print(
        f"{chunks:>9,}  {elapsed:>7.1f}  {chunks / elapsed:>8,.0f}  {here / chunks * 1e3:>9.3f}  "
        f"{there / chunks * 1e3:>7.3f}  {peak_memory():>6.2f}",
        flush=True,
    )


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("chunks", type=int, nargs="*", default=[1_000, 10_000, 100_000])
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    arguments = parser.parse_args()
    options = {"n_workers": arguments.workers, "threads_per_worker": 1, "dashboard_address": ":0"}
    with distributed.LocalCluster(**options) as cluster, distributed.Client(cluster) as client:
        print("   chunks  elapsed s  chunks/s  scheduler ms  workers ms  GiB")
        compared(100)
        for chunks in arguments.chunks:
            measure(client, chunks)


if __name__ == "__main__":
    main()
