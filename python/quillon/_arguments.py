"""What callers give, or a sentence that names what they gave instead."""

from __future__ import annotations

import operator
import sys
from collections.abc import Iterable, Mapping
from typing import Any

from quillon import _core

__all__ = ["is_text", "mapping", "nearest", "number", "text", "texts", "whole_number"]


def number(name: str, value: Any) -> float:
    """A number."""
    try:
        if not isinstance(value, (str, bytes, bytearray)):
            return float(value)
    except (TypeError, ValueError):
        pass
    except OverflowError:
        raise ValueError(f"{name} is too large for a float64") from None
    raise TypeError(f"{name} is a number, not {value!r}")


def whole_number(name: str, value: Any) -> int:
    """A whole number. One beyond all sizes is the largest of these, or its negative."""
    try:
        return max(-sys.maxsize, min(operator.index(value), sys.maxsize))
    except TypeError:
        raise TypeError(f"{name} is a whole number, not {value!r}") from None


def is_text(value: str) -> bool:
    """Whether it is of Unicode characters alone. Python's may have lone surrogates, such as '\\udcff' for a byte."""
    try:
        value.encode()
    except UnicodeEncodeError:
        return False
    return True


def text(name: str, value: Any) -> str:
    """A text."""
    if not isinstance(value, str):
        raise TypeError(f"{name} is a text, not {value!r}")
    if not is_text(value):
        raise ValueError(f"{name} has lone surrogates: {value!r}")
    return str(value)


def texts(name: str, value: str | Iterable[str]) -> list[str]:
    """Texts; one alone is a list of one."""
    if isinstance(value, str):
        return [text(name, value)]
    if not isinstance(value, Iterable):
        raise TypeError(f"{name} is a text or several, not {value!r}")
    return [text(f"each of {name}", each) for each in value]


def nearest(name: str, known: list[str]) -> str:
    """Those of the known names that are nearest, in quotes; empty without any."""
    return ", ".join(map(repr, _core.nearest_names(name.encode("utf-8", "replace").decode(), known)))


def mapping(name: str, value: Mapping[Any, Any] | None) -> Mapping[Any, Any]:
    """A mapping; none is an empty one."""
    if value is not None and not isinstance(value, Mapping):
        raise TypeError(f"{name} is a mapping, not {value!r}")
    return {} if value is None else value
