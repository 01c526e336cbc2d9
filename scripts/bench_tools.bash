# shellcheck shell=bash
# What the tool costs as a whole process, beside other tools at the same work.

BENCH_TOOLS_PACKAGES=(cdo hdf5-tools netcdf-bin pnetcdf-bin python3-pandas python3-xarray python3-netcdf4 time)

# How often each command is run; the least of each figure counts, as other load only adds to it.
BENCH_TOOLS_RUNS=5

# make_bench_files DIRECTORY: the climate data, small and 100 times longer along TIME. Beside each of
# the two an equal file and one with other wind speeds; all of them as CDF-2 and as netCDF-4.
make_bench_files() {
  local cdo=(cdo -s --no_history -f nc2) times size file
  for times in 1 100; do
    size="$1/$times"
    "${cdo[@]}" -duplicate,"$times" data/north_atlantic_climate.nc "$size.nc"
    cp "$size.nc" "$size-same.nc"
    "${cdo[@]}" -replace "$size.nc" -addc,1 -selname,WSPD "$size.nc" "$size-other.nc"
    for file in "$size" "$size-same" "$size-other"; do nccopy -k nc4 "$file.nc" "$file.nc4"; done
  done
}

# make_stored_files DIRECTORY: 27 million floats, the climate data 400 times longer along TIME, with an
# equal file and one with other wind speeds: classic, netCDF-4 as nccopy makes it, and netCDF-4 in
# larger chunks that are shuffled.
make_stored_files() {
  local cdo=(cdo -s --no_history -f nc2) classic="$1/long.nc" file
  "${cdo[@]}" -duplicate,400 data/north_atlantic_climate.nc "$classic"
  "${cdo[@]}" -replace "$classic" -addc,1 -selname,WSPD "$classic" "$1/long-other.nc"
  for file in long long-other; do
    nccopy -k nc4 -d 1 "$1/$file.nc" "$1/$file.nc4"
    nccopy -k nc4 -s -d 1 -c TIME/480,COADSY/35,COADSX/40 "$1/$file.nc" "$1/$file.chunks"
  done
  for file in nc nc4 chunks; do cp "$1/long.$file" "$1/long-same.$file"; done
}

# measure STATUS COMMAND...: sets `milliseconds` of processor time (user and system), `elapsed` ones, and
# `kibibytes` of memory, each the least of several runs, all of which must end with STATUS.
measure() {
  local run status real user system memory TIMEFORMAT='%3R %3U %3S'
  milliseconds='' elapsed='' kibibytes=''
  for ((run = 0; run < BENCH_TOOLS_RUNS; ++run)); do
    { time command time --quiet -f %M -o "$files/memory" "${@:2}" &>/dev/null; } 2>"$files/time" &&
      status=0 || status=$?
    ((status == $1)) || fail "status $status instead of $1: ${*:2}"
    read -r real user system <"$files/time"
    real=$((10#${real/./}))
    if [[ -z "$elapsed" ]] || ((real < elapsed)); then elapsed=$real; fi
    user=$((10#${user/./} + 10#${system/./}))
    memory="$(<"$files/memory")"
    if [[ -z "$milliseconds" ]] || ((user < milliseconds)); then milliseconds=$user; fi
    if [[ -z "$kibibytes" ]] || ((memory < kibibytes)); then kibibytes=$memory; fi
  done
}

# peer STATUS COMMAND...: measures another tool; appends its column to `row` and keeps the fastest.
# '-' for a tool that cannot do the work.
peer() {
  if [[ "$1" == - ]]; then
    row+=$'\t-'
    return
  fi
  measure "$@"
  row+=$'\t'"$milliseconds"
  if [[ -z "$fastest" ]] || ((milliseconds < fastest)); then fastest=$milliseconds; fi
}

# work_of JOB SUFFIX SIZE: sets `ours` and the peers' commands, each with its exit status before it.
work_of() {
  local first="$files/$3.$2" second="$files/$3-other.$2" with_cdo='' with_h5diff=() status=1
  cdo=(-) h5diff=(-) ncdump=(-)
  ours=(diff)
  case "$1" in
    equal)
      status=0 second="$files/$3-same.$2"
      # The least of comparing with a text tool: printing both.
      # shellcheck disable=SC2016  # the inner shell expands it
      ncdump=(0 sh -c 'ncdump "$1" && ncdump "$2"' - "$first" "$second")
      ;;
    different) ;;
    absolute) status=0 ours+=(--absolute 2) with_cdo=",abslim=2" with_h5diff=(-d 2) ;;
    relative) ours+=(--relative 0.01) with_cdo=",abslim=0,rellim=0.01" with_h5diff=(-p 0.01) ;;
    table) ours=(0 table "$first") ncdump=(0 ncdump "$first") ;;
    whole-table)
      ours=(0 table --max-rows 0 --variables "SST,AIRT" "$first")
      ncdump=(0 ncdump -v "SST,AIRT" "$first")
      ;;
  esac
  if [[ "${ours[0]}" == diff ]]; then
    ours=("$status" "${ours[@]}" "$first" "$second")
    cdo=("$status" cdo -s "diffn$with_cdo" "$first" "$second")
    # h5diff reads no CDF-2.
    [[ "$2" != nc4 ]] || h5diff=("$status" h5diff -q "${with_h5diff[@]}" "$first" "$second")
  fi
}

# bench_job JOB SUFFIX TITLE: prints a row about a job on the long file.
bench_job() {
  local ours cdo h5diff ncdump row fastest='' long
  local milliseconds kibibytes our_milliseconds
  work_of "$1" "$2" 100
  measure "${ours[0]}" "$quillon" "${ours[@]:1}"
  our_milliseconds=$milliseconds long=$kibibytes
  row="$3"$'\t'"$milliseconds"
  peer "${cdo[@]}"
  peer "${h5diff[@]}"
  peer "${ncdump[@]}"
  work_of "$1" "$2" 1
  measure "${ours[0]}" "$quillon" "${ours[@]:1}"
  awk -v row="$row" -v ours="$our_milliseconds" -v fastest="$fastest" -v short="$kibibytes" \
    -v long="$long" 'BEGIN {
      printf "%s\t%.2f\t%.1f\t%.1f\n", row, ours / fastest, short / 1024, long / 1024 }'
}

# bench_jobs: prints what verbs cost beside other tools at the same work.
bench_jobs() {
  printf 'job\tquillon\tcdo\th5diff\tncdump\tquillon/fastest\tMiB small\tMiB long\n'
  bench_job equal nc 'diff, equal'
  bench_job different nc 'diff, 1 of 4 variables differs'
  bench_job absolute nc 'diff, absolute tolerance'
  bench_job relative nc 'diff, relative tolerance'
  bench_job equal nc4 'diff, equal, netCDF-4'
  bench_job different nc4 'diff, 1 of 4 differs, netCDF-4'
  bench_job absolute nc4 'diff, absolute, netCDF-4'
  bench_job relative nc4 'diff, relative, netCDF-4'
  bench_job table nc 'table, 10 rows'
  bench_job whole-table nc 'table, all rows of 2 variables'
}

# print_ratio PEER MOST OURS THEIRS: prints a row of the job `title`; MOST is the ratio to reach.
print_ratio() {
  awk -v row="$title"$'\t'"$3"$'\t'"$1"$'\t'"$4" -v ours="$3" -v theirs="$4" -v most="$2" -v memory="$memory" \
    'BEGIN {
      ratio = ours / (theirs > 0 ? theirs : 1)
      printf "%s\t%.2f\t%s\t%.1f\t%s\n", row, ratio, most, memory / 1024, ratio <= most ? "" : "missed" }'
}

# beside MOST COMMAND...: prints a row for another tool, given the job's two files.
beside() {
  measure "$status" "${@:2}" "${stored[@]}"
  print_ratio "${*:2}" "$1" "$ours" "$milliseconds"
}

# stored_job STATUS SUFFIX KIND TITLE: measures `quillon diff` of two long files, the other of which is
# of that KIND, for the rows that follow.
stored_job() {
  status=$1 title="$4" stored=("$files/long.$2" "$files/long-$3.$2")
  measure "$status" "$quillon" diff "${stored[@]}"
  ours=$milliseconds our_elapsed=$elapsed memory=$kibibytes
}

# bench_stored: prints what is read, and unpacked, no more than needed.
bench_stored() {
  local status title stored ours our_elapsed memory milliseconds elapsed kibibytes
  printf 'job\tquillon\tbeside\ttakes\tratio\tat most\tMiB\n'
  stored_job 0 nc4 same 'equal, deflated'
  beside 0.1 cdo -s diffn
  beside 3 cmp
  stored_job 0 chunks same 'equal, large chunks'
  beside 0.1 cdo -s diffn
  beside 3 cmp
  stored_job 1 nc4 other '1 of 4 differs, deflated'
  beside 0.4 cdo -s diffn
  print_ratio 'cdo -s diffn, elapsed' 0.3 "$our_elapsed" "$elapsed"
  stored_job 1 chunks other '1 of 4 differs, large chunks'
  beside 0.4 cdo -s diffn
  print_ratio 'cdo -s diffn, elapsed' 0.3 "$our_elapsed" "$elapsed"
  stored_job 0 nc same 'equal, classic'
  beside 1.5 cdfdiff
  beside 0.5 cdo -s diffn
}

# make_table_files DIRECTORY: rows.nc, the climate data 232 times longer along TIME; small.nc, as they
# are, and huge.nc, the same with so many records that it has 20 GB, most of which are a hole in the file;
# many.nc4 of 10,000 variables.
make_table_files() {
  local cdo=(cdo -s --no_history -f nc2) rows="$1/rows.nc" small="$1/small.nc" huge="$1/huge.nc"
  "${cdo[@]}" -duplicate,232 data/north_atlantic_climate.nc "$rows"
  "${cdo[@]}" -duplicate,1 data/north_atlantic_climate.nc "$small"
  local start record count
  start="$(stat -c %s "$small")"
  record=$((($(stat -c %s "$rows") - start) / (231 * 12)))
  count=$((20000000000 / record))
  cp "$small" "$huge"
  # The number of records stands behind the format's four bytes.
  # shellcheck disable=SC2059  # the format is made of the number
  printf "$(printf '\\x%02x' $((count >> 24)) $((count >> 16 & 255)) $((count >> 8 & 255)) $((count & 255)))" |
    dd of="$huge" bs=1 seek=4 conv=notrunc status=none
  truncate -s $((start + (count - 12) * record)) "$huge"
  awk 'BEGIN {
    print "netcdf many { dimensions: x = 2 ; variables:"
    for (k = 0; k < 10000; ++k) printf "float v%d(x) ; v%d:units = \"K\" ;\n", k, k
    print "}" }' | ncgen -k nc4 -o "$1/many.nc4" -
}

# table_job TITLE FILE ARGUMENT...: measures the tool with one file, for the rows that follow.
table_job() {
  status=0 title="$1" stored=("$2")
  measure 0 "$quillon" "${@:3}" "$2"
  ours=$milliseconds memory=$kibibytes
}

# bench_tables: prints what tables and outlines cost.
bench_tables() {
  local status title stored ours memory milliseconds elapsed kibibytes
  local to_csv='import sys, xarray
xarray.open_dataset(sys.argv[1], decode_times=False).to_dataframe().to_csv("/dev/null")'
  printf 'job\tquillon\tbeside\ttakes\tratio\tat most\tMiB\n'
  table_job 'CSV of 3.9 million rows' "$files/rows.nc" table --format csv
  beside 1 ncdump
  # Once is enough for what takes a minute.
  BENCH_TOOLS_RUNS=1 measure 0 /usr/bin/python3 -c "$to_csv" "$files/rows.nc"
  print_ratio 'xarray, to_csv' 0.1 "$ours" "$milliseconds"
  table_job 'text, 3.9 million rows' "$files/rows.nc" table --max-rows 0
  beside 1.2 ncdump
  table_job '10 rows of 20 GB' "$files/huge.nc" table
  measure 0 "$quillon" table "$files/small.nc"
  print_ratio 'the same of 0.3 MB' 1.2 "$ours" "$milliseconds"
  table_job 'outline of 10,000 variables' "$files/many.nc4" info
  beside 1 ncdump -h
}

# columns COMMAND...: prints the lines of a command, whose fields end in tabs, as columns.
columns() {
  "$@" | column -t -s $'\t'
}

# bench_tools QUILLON: prints how long the tool QUILLON takes beside other tools, and its memory.
bench_tools() (
  quillon="$1"
  need "${BENCH_TOOLS_PACKAGES[@]}"
  files="$(mktemp -d)"
  trap 'rm -r "$files"' EXIT
  say "measuring whole processes: ms of processor time, the least of $BENCH_TOOLS_RUNS runs"
  make_bench_files "$files"
  publish tools columns bench_jobs
  rm -r "${files:?}"/*
  make_stored_files "$files"
  printf '\n'
  publish stored columns bench_stored
  rm -r "${files:?}"/*
  make_table_files "$files"
  printf '\n'
  publish tables columns bench_tables
)
