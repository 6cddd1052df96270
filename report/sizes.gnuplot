# Time and peak memory over the size of documents of every kind: gnuplot -e "data='FILE'; set output 'FILE'" sizes.gnuplot
set terminal svg size 900,520 font "sans-serif,11" background "white"
kinds = system("grep -c '\"' ".data)
set multiplot layout 1,2
set logscale xy
set xlabel "bytes of the document"
set format x "10^{%L}"
set grid
set key top left font ",9"
set ylabel "seconds to load and save, or to import"
plot for [i=0:kinds-1] data index i using 1:2 with linespoints title columnheader(1)
set ylabel "peak memory, MB"
plot for [i=0:kinds-1] data index i using 1:3 with linespoints title columnheader(1)
