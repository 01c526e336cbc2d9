# shellcheck shell=bash
# Reads of memory that was never written, which no sanitizer of ./dev check sees: ./dev valgrind.

## valgrind (10 min): run the core tests under valgrind, which also sees reads of what was never written
verb_valgrind() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" valgrind
  # Tests that bring their own operator new, to let it fail, keep it: valgrind puts its own in the
  # place of malloc alone.
  run_core_tests dev valgrind --quiet --error-exitcode=1 --soname-synonyms=somalloc=nouserintercepts \
    --leak-check=full --show-leak-kinds=all --errors-for-leak-kinds=all
}
