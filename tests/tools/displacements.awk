# Displacements side by side: before, and after all loads were made 1.5 times as large and a force
# was added. Linear theory has 1.5 times the first, and what the added force does alone.
#
#   awk -f displacements.awk BEFORE.dat ADDED.dat AFTER.dat
FNR == 1 { ++file }
/displacements/ { within = 1; next }
/stresses/ { within = 0 }
within && NF == 4 {
  before = $1 in seen
  uy[file, $1] = $3
  if (!before) { seen[$1]; nodes[++count] = $1 }
}
END {
  printf "%8s %14s %14s %14s %10s\n", "node", "before", "after", "linear theory", "deviation"
  for (i = 1; i <= count; ++i) {
    node = nodes[i]
    theory = 1.5 * uy[1, node] + uy[2, node]
    deviation = uy[3, node] - theory
    if (deviation < 0) deviation = -deviation
    if (deviation > largest) largest = deviation
    size = uy[3, node] < 0 ? -uy[3, node] : uy[3, node]
    if (size > most) most = size
    if (i % 6 == 1)
      printf "%8d %14.6e %14.6e %14.6e %10.1e\n", node, uy[1, node], uy[3, node], theory, deviation
  }
  printf "displacements along y; the largest deviation of %d nodes is %.1e of the largest displacement\n",
         count, largest / most
}
