"""What a comparison on dask costs beside that of the whole, and beside dask's own.

By processor time of all processes; the least of several rounds in turns counts.
"""

from __future__ import annotations

import time
from collections.abc import Callable
from typing import Any

import dask
import dask.array
import distributed
import numpy as np
import quillon
import quillon.dask
import xarray
from ratios import show, show_titles

ROUNDS = 5
CHUNK = 5_000_000
CHUNKS = 20


def ratio(ours: Callable[[], Any], theirs: Callable[[], Any], seconds: Callable[[], float]) -> tuple[float, float]:
    """The least time of each, in turns, after a first call that does not count."""
    assert ours()
    assert theirs()
    times: tuple[list[float], list[float]] = ([], [])
    for _ in range(ROUNDS):
        for call, taken in zip((ours, theirs), times):
            start = seconds()
            call()
            taken.append(seconds() - start)
    return min(times[0]), min(times[1])


def in_one_process() -> tuple[float, float]:
    """Both sides in memory, dask with the threads of this process."""
    values = np.random.default_rng(1).random(CHUNK * CHUNKS)
    whole = [xarray.DataArray(some, dims="x") for some in (values, values.copy())]
    parts = [side.copy(data=dask.array.from_array(side.values, chunks=CHUNK, name=False)) for side in whole]
    return ratio(
        lambda: quillon.dask.compare(*parts, rtol=1e-6, atol=1e-9),
        lambda: quillon.compare(*whole, rtol=1e-6, atol=1e-9),
        time.process_time,
    )


def on_a_cluster(client: Any) -> tuple[float, float]:
    """Both sides in the memory of the workers."""
    first = dask.array.random.RandomState(1).random_sample(CHUNK * CHUNKS, chunks=CHUNK).persist()
    second = (first + 0).persist()
    distributed.wait([first, second])
    sides = [xarray.DataArray(some, dims="x") for some in (first, second)]
    return ratio(
        lambda: quillon.dask.compare(*sides, rtol=1e-6, atol=1e-9),
        lambda: dask.array.allclose(first, second, rtol=1e-6, atol=1e-9).compute(),
        lambda: time.process_time() + sum(client.run(time.process_time).values()),
    )


def main() -> None:
    show_titles()
    many = f"{CHUNKS} chunks of {CHUNK:,} doubles"
    show(f"dask in one process, {many} / quillon.compare", 1.8, in_one_process())
    options = {"n_workers": 2, "threads_per_worker": 1, "dashboard_address": ":0"}
    with distributed.LocalCluster(**options) as cluster, distributed.Client(cluster) as client:
        show(f"two worker processes, {many} / da.allclose", 0.25, on_a_cluster(client))


if __name__ == "__main__":
    main()
