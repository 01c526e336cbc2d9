# shellcheck shell=bash
# Whether the tests notice when the sources are changed: ./dev mutate.

MUTATE_PACKAGES=(clang lld llvm libclang-rt-dev python3-clang)

## mutate (hours): change the sources, or those of the PATHs alone, a little and list what no test notices; --again: only what survived the last time; --every N: only each N-th change; --jobs N: at once
verb_mutate() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${MUTATE_PACKAGES[@]}"
  build coverage
  # Tests write small files, and wait for the disk to have them.
  if [[ -z "${TMPDIR:-}" && -d /dev/shm && -w /dev/shm ]]; then export TMPDIR=/dev/shm; fi
  # Debian's python3, which its python3-clang is for.
  /usr/bin/python3 scripts/mutation build/coverage "$@"
}
