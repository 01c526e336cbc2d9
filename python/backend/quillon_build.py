"""Builds the wheel of the Python package (PEP 517): CMake compiles it, this file packs it.

What it needs, CMake, a compiler and pybind11, comes with the system, so that nothing is fetched.
"""

from __future__ import annotations

import base64
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
EPOCH = (1980, 1, 1, 0, 0, 0)
OPTIONS = {
    "CMAKE_BUILD_TYPE": "Release",
    "CMAKE_UNITY_BUILD": "ON",
    "BUILD_TESTING": "OFF",
    "QUILLON_PYTHON": "ON",
    "QUILLON_TOOLS": "OFF",
    "Python_EXECUTABLE": sys.executable,
}


def _version() -> str:
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    found = re.search(r"^ *VERSION ([0-9.]+)", text, re.MULTILINE)
    assert found, "CMakeLists.txt names no version"
    return found.group(1)


def _run(*command: str) -> None:
    if shutil.which(command[0]) is None:
        raise SystemExit(f"quillon is built by {command[0]}, which is not installed")
    print("+", *command, flush=True)
    subprocess.run(command, check=True)


def _installed(folder: pathlib.Path, settings: dict[str, str]) -> pathlib.Path:
    """Compile the package, and install its files below `folder`."""
    build, prefix = str(folder / "build"), folder / "wheel"
    options = {**OPTIONS, **settings}
    _run("cmake", "-S", str(ROOT), "-B", build, *(f"-D{k}={v}" for k, v in options.items()))
    _run("cmake", "--build", build, "--target", "quillon_python", "--parallel", str(os.cpu_count() or 1))
    _run("cmake", "--install", build, "--component", "wheel", "--prefix", str(prefix), "--strip")
    return prefix


def _tag() -> str:
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    platform = re.sub(r"[-.]", "_", sysconfig.get_platform())
    return f"{python}-{python}-{platform}"


def _metadata() -> dict[str, str]:
    head = f"""Metadata-Version: 2.1
Name: quillon
Version: {_version()}
Summary: Measurement results: arrays with units, compared, made tables of, read and written
Requires-Python: >=3.9
Requires-Dist: numpy
Provides-Extra: all
Requires-Dist: pandas; extra == 'all'
Requires-Dist: xarray; extra == 'all'
Requires-Dist: dask; extra == 'all'
Description-Content-Type: text/markdown

"""
    text = (ROOT / "docs" / "guides" / "python.md").read_text(encoding="utf-8")
    wheel = f"Wheel-Version: 1.0\nGenerator: quillon_build\nRoot-Is-Purelib: false\nTag: {_tag()}\n"
    return {"METADATA": head + text, "WHEEL": wheel}


def _digest(content: bytes) -> str:
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"sha256={digest},{len(content)}"


class _Wheel:
    """A wheel that is being written: alike for the same content."""

    def __init__(self, path: pathlib.Path) -> None:
        self._zip = zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED)
        self._record: list[str] = []

    def add(self, name: str, content: bytes, mode: int = 0o644) -> None:
        info = zipfile.ZipInfo(name, EPOCH)
        info.compress_type = zipfile.ZIP_DEFLATED
        info.external_attr = (0o100000 | mode) << 16
        self._zip.writestr(info, content)
        self._record.append(f"{name},{_digest(content)}")

    def finish(self, record: str) -> None:
        lines = [*self._record, f"{record},,"]
        self._zip.writestr(zipfile.ZipInfo(record, EPOCH), "\n".join(lines) + "\n")
        self._zip.close()


def prepare_metadata_for_build_wheel(metadata_directory: str, config_settings=None) -> str:
    """Write what the wheel will say of itself, which takes no compiler, and return the folder."""
    info = pathlib.Path(metadata_directory, f"quillon-{_version()}.dist-info")
    info.mkdir()
    for name, text in _metadata().items():
        (info / name).write_text(text, encoding="utf-8")
    return info.name


def build_wheel(wheel_directory: str, config_settings=None, metadata_directory=None) -> str:
    """Build the wheel in a folder and return its name.

    What pip is given as `--config-settings` are options of CMake's.
    """
    name = f"quillon-{_version()}-{_tag()}.whl"
    info = f"quillon-{_version()}.dist-info"
    with tempfile.TemporaryDirectory() as folder:
        prefix = _installed(pathlib.Path(folder), config_settings or {})
        wheel = _Wheel(pathlib.Path(wheel_directory) / name)
        for file in sorted(path for path in prefix.rglob("*") if path.is_file()):
            mode = 0o755 if file.suffix == ".so" else 0o644
            wheel.add(file.relative_to(prefix).as_posix(), file.read_bytes(), mode)
        for file_name, text in _metadata().items():
            wheel.add(f"{info}/{file_name}", text.encode())
        wheel.finish(f"{info}/RECORD")
    return name


def build_sdist(sdist_directory: str, config_settings=None) -> str:
    """Pack the sources in a folder and return the name of the archive."""
    base = f"quillon-{_version()}"
    list_files = ["git", "-c", f"safe.directory={ROOT}", "-C", str(ROOT), "ls-files", "-z"]
    names = subprocess.run(list_files, check=True, capture_output=True).stdout.decode().split("\0")
    path = pathlib.Path(sdist_directory) / f"{base}.tar.gz"
    with tempfile.NamedTemporaryFile("w", encoding="utf-8") as info, tarfile.open(path, "w:gz") as tar:
        info.write(_metadata()["METADATA"])
        info.flush()
        tar.add(info.name, f"{base}/PKG-INFO")
        for name in filter(None, names):
            tar.add(ROOT / name, f"{base}/{name}")
    return path.name


def get_requires_for_build_wheel(config_settings=None) -> list[str]:
    """What pip would have to fetch first: nothing."""
    return []


def get_requires_for_build_sdist(config_settings=None) -> list[str]:
    """The same."""
    return []
