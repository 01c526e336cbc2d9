"""Comparison: whatever has values on either side, and what was found."""

from __future__ import annotations

from collections.abc import Callable, Mapping, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple, Optional

import numpy as np

from quillon import _core
from quillon._arguments import mapping, number, text, texts, whole_number
from quillon._array import Array
from quillon._dictionary import Dictionary, as_entry
from quillon._numpy import PLAIN

if TYPE_CHECKING:
    import pandas

__all__ = ["Difference", "Report", "compare"]


class Difference(NamedTuple):
    """One reason why an entry is not the same.

    Attributes
    ----------
    path : str
        Such as "/cells/area", "/t2m@long_name", or "/".
    reason : str
        "values", "shape", "element type", "dimensions", "unit", "attribute", "kind", "only in the
        first" or "only in the second".
    count, size : int
        So many of so many values differ; 0 for other reasons.
    largest : float
        The greatest \\|a - b\\|; NaN where nothing has a delta.
    where : dict
        Its index along each dimension.
    first, second
        The two values there; for other reasons the two shapes, names, units, ...
    largest_relative : float
        The greatest \\|a - b\\| / \\|b\\|.
    mean : float
        The mean \\|a - b\\| of the values that differ.
    missing : int
        How many values are missing on one side alone.
    """

    path: str
    reason: str
    count: int
    size: int
    largest: float
    where: dict[str, int]
    first: Any
    second: Any
    largest_relative: float
    mean: float
    missing: int


class Report:
    """What a comparison found: true when all was compared and is the same.

    Examples
    --------
    >>> import quillon
    >>> report = quillon.compare([1.0, 2.0], [1.0, 2.5])
    >>> bool(report), report.values, report.rows[0].where
    (False, 2, {'dim_0': 1})
    >>> report
    /: 1 of 2 values differ; the largest delta is 0.5 at dim_0=1: 2 and 2.5
    """

    __slots__ = ("_largest", "_names", "_report")

    def __init__(
        self, report: _core.Report, largest: int = 1, names: tuple[str, str] = ("", "")
    ) -> None:
        self._report = report
        self._largest = largest
        self._names = names

    @property
    def same(self) -> bool:
        """Whether nothing differs and all was compared."""
        return self._report.same

    @property
    def values(self) -> int:
        """How many values were compared."""
        return self._report.values

    @property
    def message(self) -> str:
        """One sentence about the first difference; "" for the same."""
        return self._report.message

    @property
    def rows(self) -> list[Difference]:
        """All differences."""
        return [Difference(*row) for row in self._report.rows()]

    @property
    def not_compared(self) -> list[tuple[str, str]]:
        """The path of each entry that could not be compared, and why."""
        return self._report.not_compared()

    @property
    def differences(self) -> pandas.DataFrame:
        """The rows as a DataFrame."""
        from quillon._optional import require

        return require("pandas").DataFrame(self.rows, columns=list(Difference._fields))

    def lines(self) -> list[str]:
        """Give a line for each difference, then one for each entry that was not compared.

        Examples
        --------
        >>> import quillon
        >>> quillon.compare({"a": [1]}, {"b": [1]}).lines()
        ['/a: only in the first', '/b: only in the second']
        """
        return self._report.lines(self._largest)

    def to_json(self) -> str:
        """Give it as one JSON object, as the tool ``quillon diff`` does.

        Examples
        --------
        >>> import json, quillon
        >>> json.loads(quillon.compare([1], [1]).to_json())["same"]
        True
        """
        return self._report.to_json(*self._names)

    def __bool__(self) -> bool:
        return self._report.same

    def __repr__(self) -> str:
        return self._report.text(self._largest)

    __str__ = __repr__

    def _repr_html_(self) -> str:
        from quillon import _display

        return _display.report_html(self)

    def __reduce__(self) -> tuple[Any, ...]:
        return Report, (self._report, self._largest, self._names)


def _like(values: Any, model: Any) -> Array:
    """An array of what has no names, under those of the other side where these fit."""
    array = Array(values)
    if not isinstance(model, Array) or model.ndim != array.ndim:
        return array
    return Array(values, model.dims, unit=model.unit, physical_unit=model.physical_unit)


def _is_nameless(value: Any) -> bool:
    package = type(value).__module__.partition(".")[0]
    return not (
        isinstance(value, (Array, Dictionary))
        or package in ("xarray", "pandas")
        or hasattr(value, "__arrow_c_stream__")
    )


def _entry(value: Any, other: Any) -> Array | Dictionary:
    """What is compared of a side; `other` is the other one, as far as it has names."""
    if not _is_nameless(value):
        return as_entry(value)
    if not isinstance(value, Mapping):
        return _like(value, other)
    inner = other if isinstance(other, Dictionary) else {}
    return Dictionary({name: _entry(v, inner.get(name)) for name, v in value.items()})


def _named(value: Any) -> Array | Dictionary | None:
    """What has names on a side."""
    if not _is_nameless(value):
        return as_entry(value)
    if isinstance(value, Mapping):
        named = {name: _named(v) for name, v in value.items()}
        return Dictionary({name: v for name, v in named.items() if v is not None})
    return None


def sides(first: Any, second: Any) -> tuple[Array | Dictionary, Array | Dictionary]:
    """Both sides as arrays or dictionaries. One without names takes the other's."""
    return _entry(first, _named(second)), _entry(second, _named(first))


def _tolerances(tolerances: Mapping[str, Any] | None) -> list[tuple[str, float, float]]:
    result = []
    for pattern, rule in mapping("tolerances", tolerances).items():
        unknown = set(mapping(f"the tolerance of {pattern!r}", rule)) - {"atol", "rtol"}
        if unknown:
            raise ValueError(
                f"the tolerance of {pattern!r} has {sorted(unknown)[0]!r}, not 'atol' or 'rtol'"
            )
        atol, rtol = (number(f"{key} of {pattern!r}", rule.get(key, 0)) for key in ("atol", "rtol"))
        result.append((text("a pattern of tolerances", pattern), atol, rtol))
    return result


def _name_of(side: Any) -> str:
    return str(getattr(side, "path", "") or getattr(side, "name", "") or "")


def _are_data_arrays(*values: Any) -> bool:
    return all(
        type(v).__name__ == "DataArray" and type(v).__module__.startswith("xarray.") for v in values
    )


def core_rules(
    atol: float = 0.0,
    rtol: float = 0.0,
    tolerances: Mapping[str, Mapping[str, float]] | None = None,
    equal_nan: bool = True,
    attrs: bool = False,
    ignore: Sequence[str] = (),
    largest: int = 1,
) -> tuple[Any, ...]:
    """The rules of a comparison as the library takes them."""
    wanted = whole_number("largest", largest)
    if wanted < 0:
        raise ValueError(f"the number of the largest deltas is not negative, as {largest} is")
    return (
        number("atol", atol),
        number("rtol", rtol),
        _tolerances(tolerances),
        bool(equal_nan),
        bool(attrs),
        texts("ignore", ignore),
        max(wanted, 1),  # as every row tells one
    )


Known = Callable[[str, float, float], Optional[tuple[_core.Figures, list[str]]]]


class Comparison:
    """Two sides, and the rules by which they are compared."""

    def __init__(self, first: Any, second: Any, rules: tuple[Any, ...]) -> None:
        left, right = sides(first, second)
        self._rules = rules
        self._names = _name_of(left), _name_of(right)
        self._pairs = [(left._handle, right._handle)]
        if _are_data_arrays(first, second):
            self._pairs.append(tuple(Dictionary(side._coordinates())._handle for side in (left, right)))

    def report(self, known: Known | None = None) -> Report:
        """What there is to say, with the figures that `known(path, atol, rtol)` gives."""
        report, *beside = (_core.compare(*pair, *self._rules, known) for pair in self._pairs)
        for other in beside:
            report = _core.joined(report, other)
        return Report(report, self._rules[-1], self._names)


def compare(
    first: Any,
    second: Any,
    *,
    atol: float = 0.0,
    rtol: float = 0.0,
    tolerances: Mapping[str, Mapping[str, float]] | None = None,
    equal_nan: bool = True,
    attrs: bool = False,
    ignore: Sequence[str] = (),
    largest: int = 1,
) -> Report:
    """Compare two objects down to the last value.

    Values are the same where ``a == b``, where both are finite and
    ``abs(a - b) <= atol + rtol * abs(b)``, or where both are missing and `equal_nan` says so.

    Parameters
    ----------
    first, second
        Arrays, dictionaries, files, mappings, what numpy, xarray and pandas have, and tables, ours
        and of whatever offers Arrow's streams, an array along "row" for each column. A side without
        names of dimensions and units takes those of the other one.
    atol, rtol : float, optional
        How far values may be apart.
    tolerances : mapping, optional
        Shell patterns of paths and what holds for these, such as ``{"*/area": {"atol": 1}}``; of
        several that match, the last one holds.
    equal_nan : bool, optional
        Whether missing values are the same.
    attrs : bool, optional
        Whether attributes are compared, too.
    ignore : sequence of str, optional
        Patterns of paths, or "path@attribute", that are left out.
    largest : int, optional
        How many of the largest deltas of each array are listed.

    Returns
    -------
    Report

    Raises
    ------
    ValueError
        For a tolerance that is negative or NaN.

    Examples
    --------
    >>> import quillon
    >>> quillon.compare({"t": [1.0, 2.0]}, {"t": [1.0, 2.5]}, rtol=0.1)
    /t: 1 of 2 values differ; the largest delta is 0.5 at dim_0=1: 2 and 2.5
    """
    rules = core_rules(atol, rtol, tolerances, equal_nan, attrs, ignore, largest)
    if type(first) is type(second) is np.ndarray and not (tolerances or attrs or ignore):
        if first.dtype in PLAIN and second.dtype in PLAIN and first.flags.aligned and second.flags.aligned:
            values_rules = (rules[0], rules[1], rules[3], rules[-1])
            return Report(_core.compare_values(first, second, *values_rules), rules[-1])
    return Comparison(first, second, rules).report()
