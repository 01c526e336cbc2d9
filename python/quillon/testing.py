"""Assertions for tests."""

from __future__ import annotations

from typing import Any

from quillon._compare import compare

__all__ = ["assert_same"]


def assert_same(actual: Any, expected: Any, **options: Any) -> None:
    """Fail unless two objects are the same and all was compared.

    Parameters
    ----------
    actual, expected
        As for `quillon.compare`.
    **options
        As for `quillon.compare`.

    Raises
    ------
    AssertionError
        Its text are the lines of the report.

    Examples
    --------
    >>> from quillon.testing import assert_same
    >>> assert_same({"area": [1.0]}, {"area": [1.5]}, atol=0.25)
    Traceback (most recent call last):
        ...
    AssertionError: /area: 1 of 1 values differ; the largest delta is 0.5 at dim_0=0: 1 and 1.5
    """
    __tracebackhide__ = True
    report = compare(actual, expected, **options)
    if not report:
        raise AssertionError(str(report))
