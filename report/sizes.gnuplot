# Time and peak memory over the size of documents of every kind: gnuplot -e "data='FILE'; set output 'FILE'" sizes.gnuplot
set terminal svg noenhanced size 900,520 font "sans-serif,11" background "white"
stats data nooutput
set multiplot layout 1,2
set logscale xy
set xlabel "bytes of the document"
set format x "%.0s %cB"
set grid
set key top left font ",9"
set ylabel "seconds to load and save"
plot for [i=0:STATS_blocks-1] data index i using 1:2 with linespoints title columnheader(1)
set ylabel "peak memory, MB"
plot for [i=0:STATS_blocks-1] data index i using 1:3 with linespoints title columnheader(1)
