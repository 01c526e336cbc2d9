"""The package as such: what importing it takes, its names, its examples."""

import doctest
import importlib
import pkgutil
import subprocess
import sys

import pytest
import quillon

MODULES = [name for _, name, _ in pkgutil.iter_modules(quillon.__path__) if name != "_core"]


def test_importing_needs_numpy_alone():
    program = (
        "import sys, quillon\n"
        "print(*sorted({name.partition('.')[0] for name in sys.modules} & {'pandas', 'xarray', 'dask'}))"
    )
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=True)
    assert done.stdout.strip() == ""


@pytest.mark.parametrize(
    "call, package",
    [
        ("quillon.Dictionary({'a': [1]}).to_pandas()", "pandas"),
        ("quillon.compare([1], [2]).differences", "pandas"),
        ("quillon.from_pandas(None)", "pandas"),
        ("quillon.Array([1]).to_xarray()", "xarray"),
        ("quillon.from_xarray(None)", "xarray"),
        ("quillon.xarray", "xarray"),
    ],
)
def test_says_what_is_missing(call, package):
    program = f"import sys\nsys.modules['{package}'] = None\nimport quillon\n{call}"
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False)
    assert done.stderr.splitlines()[-1].startswith(f"ImportError: this needs {package}, which is not installed")


@pytest.mark.parametrize("name", MODULES)
def test_examples_of_the_documentation_run(name, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    if name in ("dask", "xarray"):
        pytest.importorskip(name)
    module = importlib.import_module(f"quillon.{name}")
    flags = doctest.NORMALIZE_WHITESPACE | doctest.ELLIPSIS
    assert doctest.testmod(module, optionflags=flags).failed == 0
    assert module.__doc__
    assert hasattr(module, "__all__")


def test_examples_of_the_package_run():
    assert doctest.testmod(quillon).failed == 0


def test_public_names_are_there_and_documented():
    for name in quillon.__all__:
        thing = getattr(quillon, name)
        assert thing.__doc__, name
        assert thing.__module__ == "quillon" or not isinstance(thing, type), name
    assert {"dask", "object_model", "testing", "xarray"} <= set(dir(quillon))
    with pytest.raises(AttributeError, match="'nothing'"):
        quillon.nothing


def test_the_stub_has_what_the_module_has():
    import ast
    import pathlib

    from quillon import _core

    tree = ast.parse((pathlib.Path(quillon.__file__).parent / "_core.pyi").read_text())
    stubs = {node.name: node for node in tree.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
    bound = {name for name in dir(_core) if not name.startswith("__") and name != "version"}
    assert bound - set(stubs) == set()
    for name, node in stubs.items():
        if isinstance(node, ast.ClassDef) and name in bound:
            members = {m.name for m in node.body if isinstance(m, ast.FunctionDef)}
            members |= {m.target.id for m in node.body if isinstance(m, ast.AnnAssign)}
            public = {m for m in dir(getattr(_core, name)) if not m.startswith("_")}
            assert public == {m for m in members if not m.startswith("_")}, name
