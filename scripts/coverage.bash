# shellcheck shell=bash
# What the tests reach: ./dev coverage.

# shellcheck disable=SC2034  # also used by ./dev mutate
COVERAGE_PACKAGES=(clang llvm libclang-rt-dev)

## coverage: lines and branches of the libraries that the tests reach
verb_coverage() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${COVERAGE_PACKAGES[@]}"
  build coverage
  fail "not yet"
}
