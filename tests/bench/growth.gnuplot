# Draws what grows with the number of packages and with the log, and prints the straight line that fits best to
# each; see scripts/bench for the files.
set terminal svg size 900,640 font "sans-serif,13" background "white"
set output plot
set fit quiet nolog
set print "-"
set multiplot layout 2,2
set key left top
set grid
set xrange [0:*]
set yrange [0:*]
line(x) = fixed + slope * x
fixed = 1
slope = 1

set xlabel "packages"
set ylabel "ms"
set title "Tick of the Software Information tab, painted"
fit line(x) packages using 1:2 via fixed, slope
print sprintf("tick: %.1f ms + %.2f ms for every 1,000 packages", fixed, slope * 1000)
plot packages using 1:2 with points pt 7 title "sysinfo", line(x) title "straight line", \
     packages using 1:3 with linespoints pt 6 title "the three commands"

set ylabel "MiB"
set key right bottom
set title "Memory of a program with that tab alone"
fit line(x) packages using 1:($4/1024) via fixed, slope
print sprintf("memory: %.1f MiB + %.2f MiB for every 1,000 packages", fixed, slope * 1000)
plot packages using 1:($4/1024) with points pt 7 title "sysinfo", line(x) title "straight line"

set key left top
set xlabel "MB of log"
set ylabel "s"
set title "Output of a tool, to shown"
fit line(x) log using 1:2 via fixed, slope
print sprintf("log: %.2f s + %.3f s for every MB", fixed, slope)
plot log using 1:2 with points pt 7 title "sysinfo", line(x) title "straight line", \
     log using 1:3 with linespoints pt 6 title "bare QTextEdit"

set ylabel "MiB"
set key right bottom
set title "Memory of a program with the Net Tools tab alone"
fit line(x) log using 1:($4/1024) via fixed, slope
print sprintf("memory: %.0f MiB + %.1f MiB for every MB of log", fixed, slope)
plot log using 1:($4/1024) with points pt 7 title "sysinfo", line(x) title "straight line"
