# From Google Benchmark's results to what growth.gnuplot draws: a block for each operation that was
# timed at several sizes, with its name and then a line for each size: the size, and the median
# nanoseconds an element by the library and by hand.
def median: sort | .[length / 2 | floor];
def timeBy(way): map(select(.way == way) | .time) | median;

[.benchmarks[]
  | (.name | capture("^(?<operation>.*)/[0-9]+/(?<way>library|floor)$"))
    + {size, time: (.cpu_time / .size)}]
| group_by(.operation)
| map(select(map(.size) | unique | length > 1)
  | ["\"\(.[0].operation)\"",
     (group_by(.size)[] | [.[0].size, timeBy("library"), timeBy("floor")] | @tsv)]
  | join("\n"))
| join("\n\n\n")
