"""Texts that are not of Unicode characters alone, such as file names of odd bytes have them."""

import pickle

import numpy as np
import pytest

import quillon
from quillon import object_model

BYTE = "a\udcff"  # as Python reads the byte 0xff


@pytest.fixture
def cells():
    return quillon.Dictionary({"area": quillon.Array([1, 2], ["label"])})


@pytest.mark.parametrize(
    ("call", "sentence"),
    [
        (lambda _: quillon.Array([1], ["x"], name=BYTE), "name has lone surrogates: 'a\\udcff'"),
        (lambda _: quillon.Array([1], [BYTE]), "each of dims has lone surrogates: 'a\\udcff'"),
        (lambda _: quillon.Array([1], ["x"], unit=BYTE), "unit has lone surrogates: 'a\\udcff'"),
        (lambda cells: cells.to_table(index=BYTE), "index has lone surrogates: 'a\\udcff'"),
        (lambda cells: cells.to_table(variables=[BYTE]), "each of variables has lone surrogates: 'a\\udcff'"),
        (
            lambda cells: cells.to_table(select={BYTE: 1}),
            "a dimension of select has lone surrogates: 'a\\udcff'",
        ),
        (
            lambda cells: cells.to_table(select={"label": BYTE}),
            "a coordinate of 'label' has lone surrogates: 'a\\udcff'",
        ),
        (
            lambda cells: cells.update({BYTE: [1]}),
            "no entry can be called 'a\\udcff': it has lone surrogates",
        ),
        (
            lambda cells: object_model.export_to_string(cells, [BYTE], 0),
            "each of index has lone surrogates: 'a\\udcff'",
        ),
        (
            lambda _: object_model.determine_physical_information(BYTE),
            "text has lone surrogates: 'a\\udcff'",
        ),
        (
            lambda _: object_model.Namespace.instance().get_info(BYTE),
            "name has lone surrogates: 'a\\udcff'",
        ),
    ],
)
def test_names_with_lone_surrogates_are_refused_in_a_sentence(cells, call, sentence):
    with pytest.raises(ValueError) as error:
        call(cells)
    assert str(error.value) == sentence
    assert list(cells) == ["area"]


def test_a_name_that_no_entry_can_have_is_missing(cells):
    assert BYTE not in cells
    with pytest.raises(KeyError) as error:
        cells[BYTE]
    assert error.value.args == (
        "there is no entry 'a\\udcff': the dictionary has no 'a\\udcff'; the nearest are 'area'",
    )
    with pytest.raises(KeyError) as error:
        cells.to_table()["\ud800"]
    assert error.value.args == ("there is no column '\\ud800'; the nearest are 'area', 'label'",)


def test_values_keep_bytes_that_are_no_utf8():
    texts = quillon.Array([BYTE, "c"], ["x"], attrs={"k": BYTE})
    assert texts.values.tolist() == [BYTE, "c"]
    assert dict(texts.attrs) == {"k": BYTE}
    assert "a\\xff" in texts._repr_html_()
    data = quillon.Dictionary({"t": texts})
    assert str(data.to_table()) == "x  t\n0  a\\xff\n1  c\n[2 rows x 2 columns]"
    report = quillon.compare(data, {"t": ["c", "c"]})
    assert report.rows[0].first == BYTE
    assert "a\\xff" in report._repr_html_()
    assert pickle.loads(pickle.dumps(report)).rows[0].first == BYTE


def test_other_lone_surrogates_stand_for_no_byte():
    with pytest.raises(UnicodeEncodeError):
        quillon.Array(["\ud800"], ["x"])


def test_files_may_have_names_of_any_bytes(tmp_path):
    path = tmp_path / f"{BYTE}.nc"
    quillon.save({"area": quillon.Array([1, 2], ["label"])}, path)
    assert [each.name for each in tmp_path.iterdir()] == [f"{BYTE}.nc"]
    for given in (path, str(path), bytes(path)):
        assert np.array_equal(quillon.open(given)["area"].values, [1, 2])
    assert np.array_equal(quillon.open(path, trusted=False)["area"].values, [1, 2])
    assert np.array_equal(pickle.loads(pickle.dumps(quillon.open(path)))["area"].values, [1, 2])
    path.unlink()
    with pytest.raises(quillon.FileError) as error:
        quillon.open(path)
    assert str(error.value).endswith(".nc': there is no such file")
    with pytest.raises(quillon.FileError) as error:
        quillon.open(path, trusted=False)
    assert str(error.value).endswith(".nc': there is no such file")
