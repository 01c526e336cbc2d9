# shellcheck shell=bash
# Looks for inputs that break the laws that the targets in fuzz/ state: ./dev fuzz.

FUZZ_PACKAGES=(clang libclang-rt-dev llvm)
FUZZ_OUTPUT=build/fuzz/found # what was found: TARGET/ is new corpus, TARGET.NUMBER.log what a process said

# fuzz_targets: the names of all targets, in lines. Python's arrays have no corpus.
fuzz_targets() {
  local corpus
  for corpus in fuzz/corpus/*/; do basename "$corpus"; done
  echo array
}

# require_targets NAME...: fails unless all are names of targets.
require_targets() {
  local name known
  mapfile -t known < <(fuzz_targets)
  for name in "$@"; do
    [[ " ${known[*]} " == *" $name "* ]] || fail "no fuzz target '$name'; there are: ${known[*]}"
  done
}

# build_fuzzers TARGET...: builds what these targets need.
build_fuzzers() {
  local name programs=()
  for name in "$@"; do
    if [[ "$name" == array ]]; then
      build release --target quillon_python
    else
      programs+=("fuzz_$name")
    fi
  done
  ((${#programs[@]} == 0)) || build fuzz --target "${programs[@]}"
}

# processes_of NUMBER COUNT: how many processes the target of that number, from 0, gets among so many:
# one, or more of them where cores would be idle.
processes_of() {
  local cores
  cores="$(nproc)"
  echo $((cores <= $2 ? 1 : cores / $2 + ($1 < cores % $2 ? 1 : 0)))
}

# fuzz_target TARGET SECONDS: lets one process look for new inputs of a target, from those known. Other
# processes of that target take over what it finds.
fuzz_target() {
  if [[ "$1" == array ]]; then
    # Without sanitizers, which Python would need too. Each process begins with a case of its own.
    PYTHONPATH=build/release/python nice /usr/bin/python3 fuzz/array_fuzzer.py --seconds "$2"
    return
  fi
  local new="$PWD/$FUZZ_OUTPUT/$1" leaks=1 quarantine=256
  mkdir -p "$new"
  # The libraries below keep memory from one file to the next, so that a search for leaks after each
  # input is in vain where they are used; leaks are still looked for at the end.
  if [[ "$1" =~ ^(netcdf_|stored_bytes|command_line) ]]; then leaks=0; fi
  # Less of what is freed is held back where each input copies the process.
  if [[ "$1" == netcdf_4 ]]; then quarantine=8; fi
  # A block of memory that no input needs is a finding, as is one that takes five minutes: the
  # reader gives up a netCDF-4 file after 30 seconds of processor time, and all targets may run at once.
  # A copy in which it tries such a file is told that its memory is used up, as in any program, and
  # does not end with a finding of its own.
  # Who asked for a block of memory is noted by four callers, since more take a fifth of the time; a
  # replay has all.
  # Weighing inputs by how rare what they reach is takes up to two thirds of the time where an input
  # reaches much.
  ASAN_OPTIONS="allocator_may_return_null=1:malloc_context_size=4:quarantine_size_mb=$quarantine" \
    nice "build/fuzz/fuzz/fuzz_$1" -max_total_time="$2" -max_len=16384 -timeout=300 \
    -rss_limit_mb=2048 -malloc_limit_mb=256 -print_final_stats=1 -entropic=0 \
    -detect_leaks="$leaks" -artifact_prefix="$PWD/$FUZZ_OUTPUT/$1-" "$new" "fuzz/corpus/$1"
}

# report_fuzzing TARGET: one line of figures, and for findings where they are.
report_fuzzing() {
  local logs=("$FUZZ_OUTPUT/$1".*.log) log runs new coverage finding
  runs="$(sed -n 's/^stat::number_of_executed_units: *//p; s/^\([0-9]*\) executions$/\1/p' "${logs[@]}" | total)"
  new="$(sed -n 's/^stat::new_units_added: *//p' "${logs[@]}" | total)"
  coverage="$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "${logs[@]}" | sort -n | tail -n 1)"
  printf '%-22s %12s %12s %12s\n' "$1" "${runs:--}" "${new:--}" "${coverage:--}"
  for log in "${logs[@]}"; do
    # An input that is only slow breaks no law.
    finding="$(sed -n "/slow-unit-/d; s|.*Test unit written to $PWD/||p" "$log" | tail -n 1)"
    if [[ -n "$finding" ]]; then
      printf '  broken by %s; see %s; replay with\n  build/fuzz/fuzz/fuzz_%s %s\n' \
        "$finding" "$log" "$1" "$finding"
    fi
    finding="$(sed -n 's/^broken by the case //p' "$log")"
    if [[ -n "$finding" ]]; then
      printf '  broken by the case %s; see %s; replay with\n' "$finding" "$log"
      printf '  PYTHONPATH=build/release/python /usr/bin/python3 fuzz/array_fuzzer.py --runs 1 --from %s\n' \
        "$finding"
    fi
  done
}

# total: the sum of the numbers in the lines of standard input; nothing where there are none.
total() { awk '{ sum += $1 } END { if (NR > 0) print sum }'; }

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

# run_fuzzers SECONDS TARGET...: lets all look at once, and reports.
run_fuzzers() {
  local seconds="$1" jobs=() names=() failed=() k number processes
  shift
  mkdir -p "$FUZZ_OUTPUT"
  # Files in memory, where there is room for them. What a process leaves that ends early goes with it.
  if [[ -w /dev/shm ]]; then TMPDIR=/dev/shm; fi
  TMPDIR="$(TMPDIR="${TMPDIR:-/tmp}" mktemp -d -t quillon-fuzz-XXXXXX)"
  export TMPDIR
  trap 'rm -rf "$TMPDIR"' EXIT
  for ((k = 0; k < $#; ++k)); do
    local name="${*:k+1:1}"
    rm -f "$FUZZ_OUTPUT/$name".*.log
    processes="$(processes_of "$k" $#)"
    for ((number = 1; number <= processes; ++number)); do
      fuzz_target "$name" "$seconds" >"$FUZZ_OUTPUT/$name.$number.log" 2>&1 &
      jobs+=($!)
      names+=("$name")
    done
  done
  say "fuzzing for $seconds seconds by ${#jobs[@]} processes: $*"
  for k in "${!jobs[@]}"; do wait "${jobs[k]}" || failed+=("${names[k]}"); done
  printf '%-22s %12s %12s %12s\n' target executions 'new inputs' coverage
  for k in "$@"; do report_fuzzing "$k"; done
  ((${#failed[@]} == 0)) || fail "a law is broken: ${failed[*]}"
}

## fuzz: look for inputs that break the laws in fuzz/, for SECONDS (default: 60), with all TARGETs or those named at once on all cores; --merge [TARGET...] keeps what was found
verb_fuzz() {
  local what="${1:-60}" targets=("${@:2}")
  [[ "$what" == --merge || "$what" =~ ^[1-9][0-9]*$ ]] || fail "'$what' is no number of seconds"
  require_targets "${targets[@]}"
  ((${#targets[@]} > 0)) || mapfile -t targets < <(fuzz_targets)
  if [[ "$what" == --merge ]]; then mapfile -t targets < <(printf '%s\n' "${targets[@]}" | sed '/^array$/d'); fi
  need "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"
  build_fuzzers "${targets[@]}"
  if [[ "$what" == --merge ]]; then
    merge_corpus "${targets[@]}"
  else
    run_fuzzers "$what" "${targets[@]}"
  fi
}
