# shellcheck shell=bash
# What every change must pass besides its tests: ./dev check.
# shellcheck disable=SC2154  # tracked, in dev, sets `files`; bench.bash sets BENCH_PACKAGES

CHECK_PACKAGES=(clang libclang-rt-dev clang-tidy clang-format shellcheck git)

check_format() {
  say "clang-format"
  tracked '*.h' '*.cpp'
  clang-format --dry-run --Werror "${files[@]}"
}

check_scripts() {
  say "shellcheck"
  local file line scripts=()
  tracked .
  for file in "${files[@]}"; do
    read -r line <"$file" || true
    if [[ "$line" =~ ^'#!'.*sh$ || "$file" == *.bash ]]; then scripts+=("$file"); fi
  done
  shellcheck --external-sources --source-path=SCRIPTDIR "${scripts[@]}"
}

check_headers() {
  say "each public header alone"
  cmake --build --preset "$1" --target all_verify_interface_header_sets >&2
}

# Builds compile several sources as one, so that what one of them lacks another may have.
check_sources() {
  say "each source alone"
  cmake --preset alone >&2
  local commands
  commands="$(ninja -C build/alone -t commands |
    sed -nE 's/ -MD -MT [^ ]+ -MF [^ ]+ -o [^ ]+ -c / -fsyntax-only /p')"
  [[ -n "$commands" ]] || fail "no commands that compile a source"
  (cd build/alone && xargs --delimiter='\n' --max-procs="$(nproc)" -I COMMAND sh -c COMMAND <<<"$commands") >&2
}

# The thread sanitizer goes with no other, so the tests that need it have a build of their own.
check_threads() {
  build thread --target object_model_thread_tests tabra_thread_tests netcdf_thread_tests
  run_tests thread --label-regex '^threads$'
}

# The folders whose names are ours: tests and fuzz targets go by those that their frameworks give them.
LINTED=(ObjectModel tabra memory compare tables arrow netcdf tools examples benchmarks)

# tidy [CHECKS]: clang-tidy on these folders, with these checks more or less than .clang-tidy has.
# run-clang-tidy takes regular expressions on absolute paths: a source that includes several of ours,
# which is CMake's, is below build/.
tidy() {
  say "clang-tidy"
  cmake --preset lint >&2
  local root folders
  root="$(sed 's/[^a-zA-Z0-9_/-]/\\&/g' <<<"$PWD")"
  folders="$(printf '|%s' "${LINTED[@]}")"
  # The number of warnings in system headers that are not shown is no news.
  run-clang-tidy -quiet "-checks=${1:+$1,}-bugprone-suspicious-include" -p build/lint \
    "^$root/((${folders:1})/|build/lint/(${folders:1})/CMakeFiles/)" 2>&1 |
    sed -u '/[0-9]* warnings\? generated\.$/d'
}

## analyze (40 min): what ./dev check leaves out for time: each source alone, and clang's static analyzer
verb_analyze() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${CHECK_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
  check_sources
  tidy
}

## packaging (15 min): test the project as users meet it: fetched, installed, packed (options go to ctest)
verb_packaging() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
  build dev
  run_tests dev --label-regex '^packaging$' "$@"
}

## check (35 min): formatting, scripts, documentation, interface, packaging, clang-tidy, sanitizers, instruction counts
verb_check() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${CHECK_PACKAGES[@]}" "${DOCS_PACKAGES[@]}" \
    "${INTERFACE_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
  check_format
  check_scripts
  check_docs
  say "what bounds what misses its goal"
  python3 scripts/performance.py
  check_interface
  build dev
  run_tests dev --label-regex '^packaging$'
  # One build is both clang++'s opinion and the sanitizers' subject.
  build sanitize
  check_headers sanitize
  # The static analyzer takes most of the linter's time, so it is left to ./dev analyze.
  tidy '-clang-analyzer-*'
  # Each property is tried on all its cases without sanitizers, under which one takes ten times as long.
  RC_PARAMS="${RC_PARAMS-seed=1 max_success=100}" run_tests sanitize "$@"
  check_threads
  check_instructions
}
