# Bars of the ratios, and the goals as lines: gnuplot -e "data='FILE'; set output 'FILE'" ratios.gnuplot
set terminal svg noenhanced size 900,1400 font "sans-serif,11" background "white"
set datafile separator "\t"
set logscale x 2
set xlabel "time, ours : peer (lower is better)"
set xrange [0.015:4]
set xtics ("1/64" 0.015625, "1/16" 0.0625, "1/4" 0.25, "1/2" 0.5, 1, 2, 4)
set grid xtics
set style fill solid 0.8 noborder
set key outside top center horizontal
stats data using 2 nooutput
set yrange [-1:STATS_records]
plot data using (0.015):0:(0.015):2:($0-0.35):($0+0.35):ytic(1) with boxxyerror lc rgb "#4878a8" title "ratio", \
     data using 3:($0-0.45):(0):(0.9) with vectors nohead lw 2 lc rgb "#c04020" title "goal", \
     1 with lines notitle lc rgb "#ffffff00"
