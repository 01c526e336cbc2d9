"""The settings of Sphinx, which makes the documentation site; ./dev docs runs it.

Its sources are laid out by site/sources.py, in build/docs/source.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "docs" / "site"), str(ROOT / "python")]

project = "quillon"
version = release = re.search(r"^  VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
root_doc = "index"

extensions = [
    "myst_parser",
    "breathe",
    "sphinx.ext.autodoc",
    "sphinx.ext.napoleon",
    "sphinx_copybutton",
    "extension",
]

# Dashes alone: texts that the library produces are quoted as they are.
smartquotes_action = "D"

# Links to sections are those that GitHub takes: [text](page.md#its-title).
myst_heading_anchors = 4

breathe_projects = {"quillon": str(ROOT / "build" / "docs" / "xml")}
breathe_default_project = "quillon"
breathe_show_include = False
primary_domain = "cpp"
highlight_language = "cpp"

# The modules are imported, since a part of the names is made public only then, but not what is
# compiled: the site is built where nothing else is.
autodoc_mock_imports = ["quillon._core"]
autodoc_typehints_format = "short"
autodoc_preserve_defaults = True
autodoc_member_order = "bysource"
autodoc_inherit_docstrings = False
napoleon_google_docstring = False
napoleon_use_rtype = False
napoleon_use_ivar = True
# In Python's docstrings a single backtick stands around names.
default_role = "py:obj"

html_theme = "furo"
html_title = f"{project} {release}"
html_static_path = ["site/static"]
html_css_files = ["site.css"]
html_copy_source = False
html_show_copyright = False
html_show_sphinx = False

# What is copied from a block of commands are the commands.
copybutton_prompt_text = "$ "
