# shellcheck shell=bash
# Iterators that are no longer valid and ranges that are none: ./dev debugmode.

## debugmode (5 min): run the core tests in the debug mode of the standard library
verb_debugmode() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" googletest
  run_core_tests debug-mode
}
