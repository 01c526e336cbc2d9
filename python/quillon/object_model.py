"""The contract: the functions of the C++ library itself, with nothing added.

Texts and results are the library's, byte for byte. Numbers of enumerations go as well as their
members.

Examples
--------
>>> import quillon
>>> from quillon import object_model
>>> one, two = (quillon.Array(values, name="area") for values in ([1.0], [1.5]))
>>> object_model.are_same_arrays(one, two, object_model.ComparisonType.Absolute, 1.0)
(True, '')
"""

from __future__ import annotations

import enum
from collections.abc import Sequence

from quillon import _arguments, _core
from quillon._array import Array
from quillon._dictionary import Dictionary

__all__ = [
    "ComparisonType",
    "Namespace",
    "PhysicalDimension",
    "PhysicalInformation",
    "are_same_arrays",
    "are_same_dictionaries",
    "are_similar_dictionaries",
    "determine_physical_dimension",
    "determine_physical_information",
    "export_to_html",
    "export_to_string",
]


class ComparisonType(enum.IntEnum):
    """When two numbers count as the same."""

    Exact = 0
    Absolute = 1
    Relative = 2


class PhysicalInformation(enum.IntEnum):
    """What a value is physically."""

    UNKNOWN = 0
    LENGTH = 1
    AREA = 2
    VOLUME = 3
    ANGLE = 4
    INTENSITY = 5
    SQUARE_INTENSITY = 6
    BOOLEAN = 7
    COORDINATE = 8
    COEFFICIENT = 9
    COUNT = 10
    FRACTION = 11
    INDEX = 12
    PERCENTAGE = 13
    RATIO = 14


class PhysicalDimension(enum.IntEnum):
    """Which power of length a value carries."""

    UNDEFINED = 0
    DIMENSIONLESS = 1
    LENGTH_POWER_1 = 2
    LENGTH_POWER_2 = 3
    LENGTH_POWER_3 = 4


def _name(name: str) -> str:
    return _arguments.text("name", name)


class Namespace:
    """The registry of the process: descriptors of dictionaries by object name."""

    __slots__ = ("_registry",)

    @classmethod
    def instance(cls) -> Namespace:
        """The registry of the process."""
        registry = cls.__new__(cls)
        registry._registry = _core.Namespace.instance()
        return registry

    def register_object(self, name: str, dictionary: Dictionary | None) -> None:
        """Register the descriptor of a dictionary, or none, in place of whatever has the name."""
        self._registry.register_object(_name(name), None if dictionary is None else dictionary._handle)

    def get_info(self, name: str | int) -> _core.DictionaryInfo | None:
        """The descriptor of that name, or at that position; it has a `name` and a `description`."""
        return self._registry.get_info(_name(name) if isinstance(name, str) else name)

    def get_info_by_name(self, name: str) -> _core.DictionaryInfo | None:
        """The same, or None; a name that is not there becomes registered without a descriptor."""
        return self._registry.get_info_by_name(_name(name))

    def get_num_of_object(self) -> int:
        """The number of registered names."""
        return self._registry.get_num_of_object()

    def get_object_name(self, index: int) -> str:
        """The name at a position, in ascending order of bytes."""
        return self._registry.get_object_name(index)


def are_same_arrays(first: Array, second: Array, type: int, tolerance: float) -> tuple[bool, str]:
    """Whether two arrays have the same name, element type, shape and values; else a sentence.

    Examples
    --------
    >>> import quillon
    >>> one, two = quillon.Array([1.0], name="area"), quillon.Array([1.5], name="area")
    >>> are_same_arrays(one, two, ComparisonType.Exact, 0)
    (False, "The arrays 'area' have different values at the position (0)': '1.000000' and '1.500000'.")
    """
    return _core.are_same_arrays(first._handle, second._handle, int(type), tolerance)


def are_same_dictionaries(
    first: Dictionary, second: Dictionary, type: int, tolerance: float
) -> tuple[bool, str]:
    """Whether two dictionaries have the same outline and content; else a sentence.

    Examples
    --------
    >>> import quillon
    >>> one, two = quillon.Dictionary({"area": [1.0]}), quillon.Dictionary({"area": [1.5]})
    >>> are_same_dictionaries(one, two, ComparisonType.Exact, 0)[1]
    "Array 'area': The arrays 'area' have different values at the position (0)': '1.000000' and '1.500000'."
    """
    return _core.are_same_dictionaries(first._handle, second._handle, int(type), tolerance)


def are_similar_dictionaries(first: Dictionary, second: Dictionary) -> tuple[bool, str]:
    """Whether two dictionaries have the same outline; else a sentence.

    Examples
    --------
    >>> import quillon
    >>> one, two = quillon.Dictionary({"area": [1.0]}), quillon.Dictionary({"area": [1.5]})
    >>> are_similar_dictionaries(one, two)
    (True, '')
    """
    return _core.are_similar_dictionaries(first._handle, second._handle)


def export_to_string(dictionary: Dictionary, index: Sequence[str], max_rows: int) -> str:
    """The library's own table of a dictionary as text; every row when `max_rows` is 0.

    Examples
    --------
    >>> import quillon
    >>> cells = quillon.Dictionary({"area": quillon.Array([212, 96], ["label"])})
    >>> print(export_to_string(cells, ["label"], 1))
    Index [label]  area
    0              212
    ...
    <BLANKLINE>
    """
    return _core.export_to_string(dictionary._handle, _arguments.texts("index", index), max_rows)


def export_to_html(dictionary: Dictionary, index: Sequence[str], max_rows: int) -> str:
    """The same as the library's HTML, all of whose cells are headings.

    Examples
    --------
    >>> import quillon
    >>> cells = quillon.Dictionary({"area": quillon.Array([212, 96], ["label"])})
    >>> export_to_html(cells, ["label"], 1).count("<th>")
    6
    """
    return _core.export_to_html(dictionary._handle, _arguments.texts("index", index), max_rows)


def determine_physical_information(text: str) -> PhysicalInformation:
    """The physical information that is spelt `text`.

    Examples
    --------
    >>> determine_physical_information("AREA").name
    'AREA'
    """
    return PhysicalInformation(_core.determine_physical_information(_arguments.text("text", text)))


def determine_physical_dimension(information: int) -> PhysicalDimension:
    """The power of length that a value of `information` carries.

    Examples
    --------
    >>> determine_physical_dimension(PhysicalInformation.AREA).name
    'LENGTH_POWER_2'
    """
    return PhysicalDimension(_core.determine_physical_dimension(int(information)))
