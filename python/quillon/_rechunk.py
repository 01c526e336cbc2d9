"""Chunks that are cut anew, which costs time and so is said."""

from __future__ import annotations

import sys
import warnings
from collections.abc import Mapping, Sequence
from typing import Any

__all__ = ["RechunkWarning", "rechunked", "unified"]


class RechunkWarning(UserWarning):
    """Chunks were cut anew, as those that belong together differ."""


def _warn(sentence: str) -> None:
    """Warn whoever called the package."""
    level, frame = 1, sys._getframe()
    while frame.f_back is not None and frame.f_globals.get("__name__", "").startswith("quillon."):
        level, frame = level + 1, frame.f_back
    warnings.warn(sentence, RechunkWarning, stacklevel=level)


def _counts(chunks: Sequence[Sequence[int]]) -> str:
    return " x ".join(str(len(sizes)) for sizes in chunks)


def rechunked(path: str, data: Any, chunks: Sequence[Sequence[int]]) -> Any:
    """The array of the second side in the chunks of the first."""
    _warn(
        f"{path}: the {_counts(data.chunks)} chunks of the second side are cut anew, as the "
        f"{_counts(chunks)} of the first are"
    )
    return data.rechunk(chunks)


def unified(data: Any) -> tuple[Any, Mapping[Any, Sequence[int]]]:
    """A Dataset whose variables are cut at the same places, and its chunks."""
    try:
        return data, data.chunks
    except ValueError as error:
        _warn(f"the variables are cut anew at the same places: {error}")
        data = data.unify_chunks()
        return data, data.chunks
