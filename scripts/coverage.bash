# shellcheck shell=bash
# What the tests reach: ./dev coverage.

COVERAGE_PACKAGES=(clang llvm libclang-rt-dev python3)

# The libraries whose sources are to be reached, and the folders of their tests.
COVERED=(ObjectModel tabra memory compare tables arrow netcdf)

## coverage (20 min): list the lines and branches of the libraries that no test reaches (./dev coverage FOLDER...: of some)
verb_coverage() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${COVERAGE_PACKAGES[@]}"
  build coverage
  local build=build/coverage folders=("${COVERED[@]}") list programs program
  if (($# > 0)); then folders=("$@"); fi
  list="$(find "${folders[@]/#/$build/tests/}" "$build/tests/abi" -type f -name '*_tests')"
  mapfile -t programs <<<"$list"
  rm -rf "$build/profiles"
  for program in "${programs[@]}"; do
    say "${program##*/}"
    # One file for the program and for each shared library, to which child processes add.
    LLVM_PROFILE_FILE="$PWD/$build/profiles/%m.profraw" "$program" --gtest_brief=1 >&2
  done
  llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/all.profdata"
  say "the report: $build/report/index.html"
  python3 scripts/coverage.py "$build/all.profdata" "$build/report" "${folders[*]}" \
    "$build"/{ObjectModel/libquillon_object_model,tabra/libtabra}.so "${programs[@]}"
}
