# gnuplot -c growth.gnuplot DATA PICTURE: what one element costs, by their number. A level line is a
# cost that grows as the number of elements does.
data = ARG1
set terminal svg size 900,600 font "sans-serif,13" background "white"
set output ARG2

set colorsequence podo
set logscale xy
set format x "10^{%T}"
set xlabel "elements, entries, cells or rows" offset 0,0.5
set ylabel "nanoseconds for each"
set grid
set key outside below maxcols 2

stats data using 1 nooutput
blocks = STATS_blocks
plot for [k = 0:blocks - 1] data index k using 1:2 \
       with linespoints linecolor k + 1 pointtype 7 pointsize 0.5 title columnheader(1), \
     for [k = 0:blocks - 1] data index k using 1:3 \
       with lines linecolor k + 1 dashtype 2 title "", \
     NaN with lines linecolor "black" dashtype 2 title "the floors"
