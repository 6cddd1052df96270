# Time and peak memory over the number of items: gnuplot -e "data='FILE'; set output 'FILE'" sizes.gnuplot
set terminal svg size 900,420 font "sans-serif,11" background "white"
set multiplot layout 1,2
set logscale xy
set format x "10^{%L}"
set xlabel "items of the tree"
set grid
set key top left
set ylabel "seconds"
plot data using 1:2 with linespoints title "load", data using 1:3 with linespoints title "load by pugixml", \
     data using 1:4 with linespoints title "save"
set ylabel "peak memory, MB"
plot data using 1:($5/1e6) with linespoints title "load", \
     data using 1:($6/1e6) with linespoints title "load by pugixml", \
     data using 1:($7/1e6) with linespoints title "save"
