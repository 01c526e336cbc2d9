"""The notebook in examples/, run from its first cell to its last."""

import base64
import json
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
NOTEBOOK = ROOT / "examples" / "tour.ipynb"


def outputs(path):
    """All outputs of the cells with code, by their media types."""
    cells = json.loads(path.read_text())["cells"]
    return [o for cell in cells if cell["cell_type"] == "code" for o in cell["outputs"]]


def test_the_notebook_runs(tmp_path):
    for package in ("nbconvert", "ipykernel", "matplotlib"):
        pytest.importorskip(package)
    executed = tmp_path / "tour.ipynb"
    command = [sys.executable, "-m", "nbconvert", "--to", "notebook", "--execute", str(NOTEBOOK), "--output", str(executed)]
    done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=False, timeout=300)
    assert done.returncode == 0, done.stderr
    shown = outputs(executed)
    pages = ["".join(o["data"]["text/html"]) for o in shown if "text/html" in o.get("data", {})]
    assert sum('class="quillon"' in page for page in pages) == 5
    assert not [o for o in shown if o["output_type"] == "error"]
    pictures = [base64.b64decode(o["data"]["image/png"]) for o in shown if "image/png" in o.get("data", {})]
    assert len(pictures) == 2
    for number, picture in enumerate(pictures):
        colours = pixels(picture, tmp_path / f"{number}.png")
        assert len(colours) > 20, "an empty picture"


def pixels(picture, path):
    """The distinct colours of a picture."""
    from matplotlib import image

    path.write_bytes(picture)
    values = (image.imread(path)[..., :3] * 255).astype(int)
    return {tuple(pixel) for row in values[::4, ::4] for pixel in row}


def test_the_notebook_is_kept_without_outputs():
    assert outputs(NOTEBOOK) == []
