"""The contract: the library's own texts, byte for byte."""

import enum

import numpy as np
import pytest
import quillon
from quillon import object_model


@pytest.mark.parametrize(
    "first, second, rule, tolerance, expected",
    [
        ([1.0], [1.0], 0, 0, (True, "")),
        (
            [1.0, 2.0],
            [1.0, 2.5],
            object_model.ComparisonType.Absolute,
            0.25,
            (
                False,
                "The arrays 'a' have different values at the position (1)': '2.000000' and '2.500000'. "
                "The absolute delta is greater than 0.250000",
            ),
        ),
        ([1.0], [1], 0, 0, (False, "The arrays 'a' have different element type: '2' and '1'.")),
        ([1.0, 2.0], [2.0, 1.0], 2, 1, (True, "")),
        ([np.nan], [np.nan], 1, 1, None),
    ],
)
def test_compares_arrays(first, second, rule, tolerance, expected):
    arrays = [quillon.Array(values, name="a") for values in (first, second)]
    verdict = object_model.are_same_arrays(*arrays, rule, tolerance)
    assert verdict == expected or (expected is None and not verdict[0])


def test_compares_dictionaries():
    one, other = quillon.Dictionary({"a": [1]}, name="d"), quillon.Dictionary({"b": [1]}, name="d")
    missing = "The dictionary 'd'  doesn't have a 'a' entry."
    assert object_model.are_similar_dictionaries(one, other) == (False, missing)
    assert object_model.are_same_dictionaries(one, other, 0, 0) == (False, missing)
    assert object_model.are_same_dictionaries(one, one, 0, 0) == (True, "")


def test_refuses_rules_that_are_none():
    array = quillon.Array([1.0])
    with pytest.raises(quillon.InvalidCall, match="Invalid call at ObjectModel/src/ComparisonHelper.cpp"):
        object_model.are_same_arrays(array, array, 9, 0)


def test_exports_tables():
    cells = quillon.Dictionary({"area": quillon.Array(np.uint8([5, 6]), ["label"])})
    text = "Index [label]  area           \n"
    assert object_model.export_to_string(cells, ["label"], 1).splitlines()[0].split() == text.split()
    assert object_model.export_to_string(cells, ["label"], 1).splitlines()[1:] == ["0              5", "..."]
    assert "<th>5</th>" in object_model.export_to_html(cells, ["label"], 0)


def test_refuses_to_export_what_no_table_holds():
    sizes = quillon.Dictionary({"a": quillon.Array([1], ["x"]), "b": quillon.Array([1, 2], ["x"])})
    with pytest.raises(quillon.ExportError, match="^Unconvertible Dictionary. Same axes must have the same size$"):
        object_model.export_to_string(sizes, ["x"], 0)
    with pytest.raises(quillon.ExportError, match="^Non convertible type$"):
        object_model.export_to_html(quillon.Dictionary({"a": ["text"]}), ["x"], 0)


def test_enumerations_are_those_of_the_contract():
    assert object_model.PhysicalInformation["SQUARE_INTENSITY"] == 6
    for information in object_model.PhysicalInformation:
        assert object_model.determine_physical_information(information.name) is information
        assert isinstance(object_model.determine_physical_dimension(information), enum.IntEnum)
    assert object_model.determine_physical_dimension(2).name == "LENGTH_POWER_2"
    with pytest.raises(quillon.InvalidCall, match=r"^Invalid PhysicalInformation \(nothing\)$"):
        object_model.determine_physical_information("nothing")
    with pytest.raises(quillon.InvalidCall, match=r"\(99\)"):
        object_model.determine_physical_dimension(99)


def test_registers_descriptors():
    registry = object_model.Namespace.instance()
    before = registry.get_num_of_object()
    registry.register_object("b", quillon.Dictionary(name="cells", description="Some"))
    registry.register_object("a", None)
    assert registry.get_num_of_object() == before + 2
    assert [registry.get_object_name(k) for k in range(2)] == ["a", "b"]
    assert (registry.get_info("b").name, registry.get_info(1).description) == ("cells", "Some")
    assert registry.get_info("a") is None
    assert registry.get_info_by_name("c") is None
    assert object_model.Namespace.instance().get_num_of_object() == before + 3
    with pytest.raises(quillon.InvalidCall, match=r"^Invalid object name \(z\).$"):
        registry.get_info("z")
    for ask in (registry.get_info, registry.get_object_name):
        with pytest.raises(IndexError):
            ask(99)
