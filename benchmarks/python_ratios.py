"""What operations of the Python package cost beside those of numpy, xarray and pandas.

Both sides of each ratio are measured in turn in one run, by processor time; the least of several
rounds counts.
"""

from __future__ import annotations

import subprocess
import sys
import time
from collections.abc import Callable

import numpy as np
import quillon
import xarray
from quillon import object_model
from ratios import show, show_titles

ROUNDS = 5
SHAPE = (12, 135, 120)  # 194,400 rows


def seconds(call: Callable[[], object], times: int) -> float:
    start = time.process_time()
    for _ in range(times):
        call()
    return (time.process_time() - start) / times


def ratio(ours: Callable[[], object], theirs: Callable[[], object], times: int = 1) -> tuple[float, float]:
    """The least time of each, in turns, after a first call that does not count."""
    ours(), theirs()
    pairs = [(seconds(ours, times), seconds(theirs, times)) for _ in range(ROUNDS)]
    return min(pair[0] for pair in pairs), min(pair[1] for pair in pairs)


def dataset(shape: tuple[int, ...], columns: int) -> xarray.Dataset:
    rng = np.random.default_rng(1)
    dims = ("time", "lat", "lon")
    names = [f"v{k}" for k in range(columns)]
    data = {name: (dims, rng.random(shape, dtype="f4")) for name in names}
    return xarray.Dataset(data, {dim: np.arange(float(n)) for dim, n in zip(dims, shape)})


def comparisons() -> list[tuple[str, float, tuple[float, float]]]:
    a = np.random.default_rng(1).random(10**7)
    b = a.copy()
    one, other = quillon.Array(a), quillon.Array(b)
    few, same = np.arange(12.0), np.arange(12.0)
    compare = quillon.compare
    return [
        (
            "compare(atol, rtol), 10^7 equal doubles / np.testing.assert_allclose",
            0.2,
            ratio(lambda: compare(a, b, atol=1e-9, rtol=1e-6), lambda: np.testing.assert_allclose(a, b, 1e-6)),
        ),
        (
            "the same / np.array_equal",
            4,
            ratio(lambda: compare(a, b, atol=1e-9, rtol=1e-6), lambda: np.array_equal(a, b)),
        ),
        (
            "object_model.are_same_arrays, exact, 10^7 / np.array_equal",
            3,
            ratio(lambda: object_model.are_same_arrays(one, other, 0, 0), lambda: np.array_equal(a, b)),
        ),
        (
            "one call of compare on 12 values / np.allclose",
            0.5,
            ratio(lambda: compare(few, same, rtol=1e-5), lambda: np.allclose(few, same), 2000),
        ),
    ]


def tables() -> list[tuple[str, float, tuple[float, float]]]:
    data = dataset(SHAPE, 10)
    ours = quillon.from_xarray(data)
    stored, other = ["lon", "lat", "time"], ["time", "lat", "lon"]
    small = quillon.from_xarray(dataset((12, 45, 36), 7)).to_table(stored)
    frame = small.to_pandas().reset_index()
    return [
        (
            "to_pandas, 194,400 x 10, storage order / xarray.to_dataframe",
            1,
            ratio(lambda: ours.to_pandas(stored), lambda: data.to_dataframe(stored[::-1])),
        ),
        (
            "to_pandas, 194,400 x 10, another order / xarray.to_dataframe",
            1,
            ratio(lambda: ours.to_pandas(other), lambda: data.to_dataframe(other[::-1])),
        ),
        (
            f"to_html, {small.shape[0]:,} x {small.shape[1]} / pandas",
            0.02,
            ratio(small.to_html, lambda: frame.to_html(index=False)),
        ),
    ]


IMPORT = "import numpy, time; t = time.process_time(); import quillon; print(time.process_time() - t)"


def importing() -> float:
    """The least time of importing the package after numpy."""
    runs = (subprocess.run([sys.executable, "-c", IMPORT], capture_output=True, check=True) for _ in range(ROUNDS))
    return min(float(run.stdout) for run in runs)


def main() -> None:
    show_titles()
    for name, goal, times in comparisons() + tables():
        show(name, goal, times)
    show("import quillon after numpy / 50 ms", 1, (importing(), 0.05))


if __name__ == "__main__":
    main()
