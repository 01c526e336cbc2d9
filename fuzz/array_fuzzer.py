"""The law of `quillon.Array`: numpy's values of any type, shape and layout are read, compared and
refused as numpy has them.

A case is made of a number, so that one that breaks the law can be tried again.
"""

from __future__ import annotations

import argparse
import random
import sys
import time
from typing import Any

import numpy as np
import quillon

NUMBERS = ["i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "f2", "f4", "f8", "c8", "c16", "?"]
TIMES = ["M8[ns]", "M8[us]", "M8[s]", "M8[D]", "M8[Y]", "m8[ns]", "m8[h]"]
FOREIGN = [">i2", ">u4", ">f4", ">f8", ">c16", ">M8[s]"]
DTYPES = [np.dtype(name) for name in NUMBERS + TIMES + FOREIGN]
REFUSALS = (TypeError, ValueError, IndexError, quillon.Error)


def stored_values(rng: random.Random) -> np.ndarray:
    """Any bytes as values of any type, at any alignment."""
    dtype = rng.choice(DTYPES)
    shape = [rng.choice((0, 1, 2, 3, 3, 5)) for _ in range(rng.randrange(4))]
    size = int(np.prod(shape))
    offset = rng.choice((0, 0, 0, 1))
    memory = rng.randbytes(offset + size * dtype.itemsize)
    if dtype.kind == "b":
        memory = bytes(byte & 1 for byte in memory)
    return np.frombuffer(memory, dtype, size, offset).reshape(shape)


def viewed(values: np.ndarray, rng: random.Random) -> np.ndarray:
    """The same memory in another layout."""
    for _ in range(rng.randrange(4)):
        way = rng.randrange(4)
        if way == 0:
            values = values.transpose(rng.sample(range(values.ndim), values.ndim))
        elif way == 1:
            values = values[tuple(slice(None, None, rng.choice((1, 2, -1, -2))) for _ in values.shape)]
        elif way == 2 and values.ndim < 4:
            values = np.broadcast_to(values, (rng.randrange(4), *values.shape))
        elif way == 3 and values.ndim and len(values):
            values = values[rng.randrange(len(values)) :]
    return values


def window_of(shape: tuple[int, ...], rng: random.Random) -> tuple[list[int], list[int]]:
    """Where a block starts and how far it goes."""
    starts = [rng.randint(0, extent) for extent in shape]
    return starts, [rng.randint(0, extent - start) for start, extent in zip(starts, shape)]


def require(condition: bool, what: str) -> None:
    """Not an assert, which an interpreter may leave out."""
    if not condition:
        raise AssertionError(what)


def same_bytes(first: np.ndarray, second: np.ndarray) -> bool:
    return first.shape == second.shape and first.dtype == second.dtype and first.tobytes() == second.tobytes()


def missing(values: np.ndarray) -> np.ndarray:
    """Which values are NaN or no time."""
    if values.dtype.kind in "mM":
        return np.isnat(values)
    return np.isnan(values) if values.dtype.kind in "fc" else np.zeros(values.shape, bool)


def differing(first: np.ndarray, second: np.ndarray) -> int:
    """By numpy alone."""
    return int(np.sum((first != second) & ~(missing(first) & missing(second))))


def read_in_parts(array: quillon.Array, values: np.ndarray, rng: random.Random) -> None:
    """Blocks are those of numpy."""
    start, extent = window_of(values.shape, rng)
    block = values[tuple(slice(a, a + n) for a, n in zip(start, extent))]
    require(same_bytes(array._read(start, extent), block), f"block {start} {extent}")


def compared(array: quillon.Array, values: np.ndarray, rng: random.Random) -> None:
    """Differences are counted as numpy counts them, whatever the layouts."""
    report = quillon.compare(array, values.copy())
    require(report.same and report.values == values.size, "a copy differs")
    if values.size:
        other = np.array(values, order=rng.choice("CF"))
        at = rng.randrange(values.size)
        other.flat[at] = values.flat[rng.randrange(values.size)]
        report = quillon.compare(array, other)
        count = sum(row.count for row in report.rows)
        require(count == differing(values, other), f"{count} differences after a change at {at}")


def lazily_read(values: np.ndarray, rng: random.Random) -> None:
    """A function gives the same values; one that gives others is refused."""
    if not values.ndim:
        return
    plain = np.array(values)
    answers = [
        lambda start, stop: values[start:stop],
        lambda start, stop: values[start : stop + 1],
        lambda start, stop: values[start:stop].astype(object),
        lambda start, stop: None,
    ]
    read = rng.choice([answers[0], *answers])
    window = rng.choice((1, 7, 64, 1 << 20))
    array = quillon.Array.lazy(read, values.shape, dtype=values.dtype, window=window)
    start, extent = window_of(values.shape, rng)
    key = tuple(slice(a, a + n) for a, n in zip(start, extent))
    try:
        block = array[key]
    except REFUSALS:
        require(read is not answers[0], "sound values are refused")
        return
    require(same_bytes(block, plain[key]), f"lazy block {key}")


def misused(array: quillon.Array, values: np.ndarray, rng: random.Random) -> None:
    """What cannot be is refused, and changes nothing."""
    calls = [
        lambda: quillon.Array(values, ["x"] * (values.ndim + 1)),
        lambda: quillon.Array([values, "text", None]),
        lambda: quillon.compare(array, object()),
        lambda: array[(0,) * (values.ndim + 1)],
        lambda: quillon.Array.lazy(lambda start, stop: values, [-1]),
    ]
    call = rng.choice(calls)
    try:
        call()
    except REFUSALS:
        pass
    else:
        raise AssertionError("a misuse is not refused")
    require(same_bytes(array.values, quillon.Array(values).values), "a misuse changes values")


def try_case(number: int) -> None:
    """Try one case; an AssertionError says what breaks the law."""
    rng = random.Random(number)
    values = viewed(stored_values(rng), rng)
    array = quillon.Array(values, [f"d{k}" for k in range(values.ndim)])
    held = array.values
    require(held.shape == values.shape and differing(held, values) == 0, "the values are others")
    read_in_parts(array, held, rng)
    rng.choice((compared, misused, lambda array, held, rng: lazily_read(held, rng)))(array, held, rng)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--seconds", type=float, default=float("inf"), help="how long cases are tried")
    parser.add_argument("--runs", type=int, help="how many; by default without end")
    parser.add_argument("--from", type=int, dest="first", help="the first case; by default any one")
    options = parser.parse_args()
    first = random.SystemRandom().getrandbits(48) if options.first is None else options.first
    end = time.monotonic() + options.seconds
    runs = 0
    while runs != options.runs and time.monotonic() < end:
        try:
            with np.errstate(all="ignore"):  # numpy warns of NaN that signal
                try_case(first + runs)
        except Exception:
            print(f"broken by the case {first + runs}", file=sys.stderr)
            raise
        runs += 1
    print(f"{runs} executions")
    return 0


if __name__ == "__main__":
    sys.exit(main())
