"""What the tests share."""

import os
import pathlib

import pytest
from hypothesis import settings

# A machine that is shared by many has no deadlines, and no change is to fail for what it did not touch.
settings.register_profile("shared", deadline=None, max_examples=100, database=None, derandomize=True)
# Other cases each time: pytest --hypothesis-profile=random
settings.register_profile("random", settings.get_profile("shared"), derandomize=False)
settings.load_profile("shared")


@pytest.fixture
def data():
    """The folder of real measurements."""
    return pathlib.Path(os.environ.get("QUILLON_DATA", pathlib.Path(__file__).parents[2] / "data"))
