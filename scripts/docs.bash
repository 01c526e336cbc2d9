# shellcheck shell=bash
# The documentation site, from the pages and the public headers: ./dev docs.

# Python's modules are imported for their reference, and so is what they import.
DOCS_PACKAGES=(
  doxygen python3-sphinx python3-myst-parser python3-breathe furo python3-sphinx-copybutton
  python3-numpy python3-xarray python3-dask)

# Enumerators without documentation, of which Doxygen 1.9.4 does not warn, by its XML.
undocumented_enumerators() {
  awk '
    /<enumvalue / { name = ""; documented = 0; inside = 1 }
    inside && /<name>/ { name = $0; gsub(/ *<[^>]*>/, "", name) }
    inside && /<para>/ { documented = 1 }
    /<\/enumvalue>/ { if (!documented) print name; inside = 0 }
  ' "$@"
}

# Warnings, such as on a public name without documentation or on a broken link, are errors.
check_docs() {
  say "doxygen"
  rm -rf build/docs
  mkdir -p build/docs
  doxygen docs/site/Doxyfile
  local names
  names="$(undocumented_enumerators build/docs/xml/*.xml)"
  [[ -z "$names" ]] || fail "enumerators without documentation:"$'\n'"$names"
  say "sphinx"
  # Debian's, which has the packages, and no caches beside the sources.
  local python=(/usr/bin/python3 -B)
  "${python[@]}" docs/site/sources.py build/docs/xml build/docs/source
  "${python[@]}" -m sphinx -q -W --keep-going -j "$(nproc)" -c docs -d build/docs/doctrees \
    build/docs/source build/docs/html
  "${python[@]}" docs/site/links.py build/docs/html
}

## docs (2 min): build the documentation site in build/docs/html
verb_docs() {
  need "${DOCS_PACKAGES[@]}"
  check_docs
  say "see build/docs/html/index.html"
}
