# Draws what grows with the number of packages and with the log; see scripts/bench for the files.
set terminal svg size 900,640 font "sans-serif,13" background "white"
set output plot
set multiplot layout 2,2
set logscale xy
set key left top
set grid
set format x "%g"
set xlabel "packages"
set ylabel "ms"
set title "Tick of the Software Information tab"
plot packages using 1:2 with linespoints pt 7 title "sysinfo, painted", \
     packages using 1:3 with linespoints pt 6 title "the three commands"
set ylabel "MiB"
set title "Memory of the page"
plot packages using 1:($4/1024) with linespoints pt 7 notitle
set xlabel "MB of log"
set ylabel "s"
set title "Output of a tool, to shown"
plot log using 1:2 with linespoints pt 7 title "sysinfo", log using 1:3 with linespoints pt 6 title "bare QTextEdit"
set ylabel "MiB"
set title "Memory with the log"
plot log using 1:($4/1024) with linespoints pt 7 notitle
