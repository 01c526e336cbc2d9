# shellcheck shell=bash
# The documentation site, from docs/ and the public headers: ./dev docs.

DOCS_PACKAGES=(doxygen doxygen-awesome-css)

# Enumerators without documentation, of which Doxygen 1.9.4 does not warn, by its XML.
undocumented_enumerators() {
  awk '
    /<enumvalue / { name = ""; documented = 0; inside = 1 }
    inside && /<name>/ { name = $0; gsub(/ *<[^>]*>/, "", name) }
    inside && /<para>/ { documented = 1 }
    /<\/enumvalue>/ { if (!documented) print name; inside = 0 }
  ' "$@"
}

# Warnings, such as on a public name without documentation, are errors: see docs/Doxyfile.
check_docs() {
  say "doxygen"
  rm -rf build/docs
  mkdir -p build/docs
  doxygen docs/Doxyfile
  local names
  names="$(undocumented_enumerators build/docs/xml/*.xml)"
  [[ -z "$names" ]] || fail "enumerators without documentation:"$'\n'"$names"
}

## docs (1 min): build the documentation site in build/docs/html
verb_docs() {
  need "${DOCS_PACKAGES[@]}"
  check_docs
  say "see build/docs/html/index.html"
}
