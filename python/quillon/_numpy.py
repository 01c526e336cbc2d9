"""What numpy gives, as the libraries take it: conventions, no rules."""

from __future__ import annotations

from collections.abc import Mapping
from typing import Any

import numpy as np

__all__ = ["PLAIN", "attribute", "lazy_dtype", "prepared", "window"]

PLAIN = frozenset(np.dtype(code) for code in "bhilBHILfdFD?")
"""The dtypes whose values are viewed as they are."""

_ATTRIBUTES = frozenset(np.dtype(code) for code in "bhilBHILfd")


def _plain_numbers(values: np.ndarray) -> np.ndarray:
    """The very array, or a copy where its values do not lie as a machine reads them."""
    dtype = values.dtype
    if dtype.kind == "f" and dtype.itemsize == 2:
        return values.astype(np.float32)
    if not dtype.isnative:
        return values.astype(dtype.newbyteorder("="))
    if not values.flags.aligned or any(step % dtype.alignment for step in values.strides):
        return values.copy()
    return values


def _unfit(dtype: np.dtype, which: str = "") -> TypeError:
    return TypeError(f"no array holds values of the dtype '{dtype}'{which}")


def _copied(values: np.ndarray) -> np.ndarray:
    """A copy that nobody changes, as the libraries have copies of what is in it."""
    copy = values.copy()
    copy.flags.writeable = False
    return copy


def _objects(values: np.ndarray) -> tuple[str, np.ndarray]:
    cells = values.ravel().tolist()
    if all(isinstance(cell, str) for cell in cells):
        return "texts", _copied(values)
    if all(isinstance(cell, Mapping) for cell in cells):
        return "dictionaries", values
    odd = next(c for c in cells if not isinstance(c, str if isinstance(cells[0], str) else Mapping))
    raise _unfit(values.dtype, f" that are not all texts or all mappings, such as {odd!r}")


class _Held:
    """A mapping that numpy does not look into."""

    __slots__ = ("content",)

    def __init__(self, content: Mapping[str, Any]) -> None:
        self.content = content


def _holding(values: Any) -> Any:
    """The same nested lists, their mappings held."""
    if isinstance(values, (list, tuple)):
        return [_holding(value) for value in values]
    return _Held(values) if isinstance(values, Mapping) else values


def _as_array(values: Any) -> np.ndarray:
    """What numpy makes of values. Of a mapping that is no dict it would take the names alone."""
    first = values
    while isinstance(first, (list, tuple)) and first:
        first = first[0]
    if not isinstance(first, Mapping):
        return np.asarray(values)
    array = np.asarray(_holding(values))
    cells = array.reshape(-1)
    for k, cell in enumerate(cells):
        if isinstance(cell, _Held):
            cells[k] = cell.content
    return array


def _require_all(values: Any) -> None:
    if isinstance(values, np.ma.MaskedArray) and np.ma.is_masked(values):
        raise ValueError("a masked array hides values; fill them first, with NaN for instance")


def prepared(values: Any) -> tuple[str, np.ndarray]:
    """What values are, "numbers", "texts" or "dictionaries", and the array to make ours of."""
    _require_all(values)
    array = _as_array(values)
    kind = array.dtype.kind
    if kind in "biufcMm":
        return "numbers", _plain_numbers(array)
    if kind in "US":
        return "texts", _copied(array)
    if kind == "O":
        return _objects(array)
    raise _unfit(array.dtype)


def lazy_dtype(dtype: Any) -> np.dtype:
    """The dtype of the values that a lazy array of this one has."""
    plain = np.dtype(dtype)
    is_half = plain.kind == "f" and plain.itemsize == 2
    return np.dtype(np.float32) if is_half else plain.newbyteorder("=")


def window(values: Any, dtype: str) -> np.ndarray:
    """What a lazy array was given, as values of its dtype that lie one after the other."""
    _require_all(values)
    given = np.asarray(values)
    wanted = np.dtype(dtype)
    if not np.can_cast(given.dtype, wanted, "same_kind"):
        raise TypeError(f"a lazy array of the dtype '{wanted}' was given values of '{given.dtype}'")
    cast = np.ascontiguousarray(given, wanted).reshape(given.shape)
    if wanted.kind in "iu" and not np.can_cast(given.dtype, wanted):
        lost = given[(cast != given) | ((cast < 0) != (given < 0))]
        if lost.size:
            raise ValueError(
                f"a lazy array of the dtype '{wanted}' was given {lost.flat[0]}, which that does not hold"
            )
    return cast


def attribute(name: str, value: Any) -> str | list[str] | np.ndarray:
    """An attribute's value: a text, a list of texts, or an array of one dimension."""
    if not isinstance(name, str):
        raise TypeError(f"attributes are called by texts, not by {name!r}")
    if isinstance(value, str):
        return str(value)
    if isinstance(value, (list, tuple)) and value and all(isinstance(v, str) for v in value):
        return [str(text) for text in value]
    array = np.atleast_1d(np.asarray(value))
    if array.dtype == np.bool_:
        array = array.astype(np.int8)
    if array.dtype.kind in "US" and array.ndim == 1:
        texts = [str(text) for text in array.astype(str)]
        return texts[0] if np.ndim(value) == 0 else texts
    if array.ndim != 1 or array.dtype.newbyteorder("=") not in _ATTRIBUTES:
        raise TypeError(
            f"the attribute '{name}' is of the type {type(value).__name__}; attributes hold texts, "
            "numbers and lists of these"
        )
    return np.ascontiguousarray(array, array.dtype.newbyteorder("="))
