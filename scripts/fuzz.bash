# shellcheck shell=bash
# Looks for inputs that break the laws that the targets in fuzz/ state: ./dev fuzz.

FUZZ_PACKAGES=(clang libclang-rt-dev llvm)
FUZZ_OUTPUT=build/fuzz/found # what was found: TARGET/ is new corpus, TARGET.log what was said

# fuzz_target TARGET SECONDS: lets one target look for new inputs, from those known.
fuzz_target() {
  local new="$PWD/$FUZZ_OUTPUT/$1"
  mkdir -p "$new"
  # A block of memory that no input needs is a finding, as is one that takes five minutes: the
  # reader gives up a netCDF-4 file after 30 seconds of processor time, and all targets run at once.
  # A copy in which it tries such a file is told that its memory is used up, as in any program, and
  # does not end with a finding of its own.
  ASAN_OPTIONS=allocator_may_return_null=1 \
    nice "build/fuzz/fuzz/fuzz_$1" -max_total_time="$2" -max_len=16384 -timeout=300 \
    -rss_limit_mb=2048 -malloc_limit_mb=256 -print_final_stats=1 \
    -artifact_prefix="$PWD/$FUZZ_OUTPUT/$1-" "$new" "fuzz/corpus/$1" >"$new.log" 2>&1
}

# fuzz_array SECONDS: lets Python's arrays look for cases, without sanitizers, which Python would need too.
fuzz_array() {
  PYTHONPATH=build/release/python nice /usr/bin/python3 fuzz/array_fuzzer.py --seconds "$1" \
    >"$FUZZ_OUTPUT/array.log" 2>&1
}

# report_array: its line of figures, and the case that breaks the law.
report_array() {
  local runs
  runs="$(sed -n 's/ executions$//p' "$FUZZ_OUTPUT/array.log")"
  printf '%-22s %12s %12s %12s\n' array "${runs:--}" - -
  sed -n 's/^broken by the case \(.*\)/  broken by the case \1; replay with\n  PYTHONPATH=build\/release\/python \/usr\/bin\/python3 fuzz\/array_fuzzer.py --runs 1 --from \1/p' \
    "$FUZZ_OUTPUT/array.log"
}

# report_fuzzing TARGET: one line of figures, and for a finding where it is.
report_fuzzing() {
  local log="$FUZZ_OUTPUT/$1.log" runs new coverage finding
  runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  new="$(sed -n 's/^stat::new_units_added: *//p' "$log")"
  coverage="$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)"
  printf '%-22s %12s %12s %12s\n' "$1" "${runs:--}" "${new:--}" "${coverage:--}"
  finding="$(sed -n "s|^Test unit written to $PWD/||p; s|.*Test unit written to $PWD/||p" "$log" | tail -n 1)"
  if [[ -n "$finding" ]]; then
    printf '  broken by %s; see %s; replay with\n  build/fuzz/fuzz/fuzz_%s %s\n' \
      "$finding" "$log" "$1" "$finding"
  fi
}

# merge_corpus TARGET...: takes into the committed corpora what reaches new code, not what only reaches
# known code more often.
merge_corpus() {
  local target
  for target in "$@"; do
    mkdir -p "$FUZZ_OUTPUT/$target"
    say "merging the corpus of $target"
    "build/fuzz/fuzz/fuzz_$target" -set_cover_merge=1 -use_counters=0 \
      "fuzz/corpus/$target" "$FUZZ_OUTPUT/$target" 2>&1 | tail -n 1
  done
}

## fuzz: look for inputs that break the laws in fuzz/, all targets at once for SECONDS (default: 60); --merge keeps what was found
verb_fuzz() {
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"
  build fuzz
  local target targets=() jobs=() failed=()
  for target in fuzz/corpus/*/; do targets+=("$(basename "$target")"); done
  if [[ "${1:-}" == --merge ]]; then
    merge_corpus "${targets[@]}"
    return
  fi
  build release --target quillon_python
  mkdir -p "$FUZZ_OUTPUT"
  say "fuzzing $((${#targets[@]} + 1)) targets at once for ${1:-60} seconds"
  for target in "${targets[@]}"; do
    fuzz_target "$target" "${1:-60}" &
    jobs+=($!)
  done
  targets+=(array)
  fuzz_array "${1:-60}" &
  jobs+=($!)
  local k
  for k in "${!jobs[@]}"; do wait "${jobs[k]}" || failed+=("${targets[k]}"); done
  printf '%-22s %12s %12s %12s\n' target executions 'new inputs' coverage
  for target in fuzz/corpus/*/; do report_fuzzing "$(basename "$target")"; done
  report_array
  ((${#failed[@]} == 0)) || fail "a law is broken: ${failed[*]}"
}
