# shellcheck shell=bash
# What the tests reach: ./dev coverage.

COVERAGE_PACKAGES=(clang llvm libclang-rt-dev python3)

## coverage (10 min): list the lines and branches of the libraries that no test reaches
verb_coverage() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${COVERAGE_PACKAGES[@]}"
  build coverage
  local build=build/coverage list programs program
  list="$(find "$build"/tests/{ObjectModel,abi,tabra} -name '*_tests' -type f)"
  mapfile -t programs <<<"$list"
  rm -rf "$build/profiles"
  for program in "${programs[@]}"; do
    say "${program##*/}"
    LLVM_PROFILE_FILE="$build/profiles/%p.profraw" "$program" --gtest_brief=1 >&2
  done
  llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/all.profdata"
  say "the report: $build/report/index.html"
  python3 scripts/coverage.py "$build/all.profdata" "$build/report" \
    "$build"/{ObjectModel/libquillon_object_model,tabra/libtabra}.so "${programs[@]}"
}
