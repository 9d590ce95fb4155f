#!/bin/bash
# What a user types at a terminal, one command after the other, in a folder with plate.inp.
#
#   terminal.sh PROGRAM...      the words that run orv.exe
program=("$@")

orv() {
  echo "\$ orv $*"
  "${program[@]}" "$@" 2>&1 | sed 's|"/[^"]*/|"|'
  local status=${PIPESTATUS[0]}
  ((status == 0)) || echo "(exit status $status)"
}

mkdir 'Träger 1'
mv plate.inp 'Träger 1/plåte.inp'
deck='Träger 1/plåte.inp' model='Träger 1/plate.orvdb'
orv import "$deck" "$model"
orv import "$deck" "$model"
orv list "$model" --csv
orv list "$model" force --where 'Magnitude > 1' --json
orv list "$model" NodalForces --set 'Step 1, CLOAD'
orv list "$model" moment
orv list "$model" LoadSets
orv list "$model" spring
orv list nowhere.orvdb

orv check "$model"
orv check "$model" --about 1.5,0,0 --json | tail -n 2
orv acting "$model" 2 | sed -n 1,6p
orv acting "$model" 3

orv export "$deck" "$model" same.inp
cmp "$deck" same.inp && echo 'the deck is the same'
orv export "$deck" "$model" "./$deck"

cat >forces.csv <<'CSV'
VertexID,X,Y,Z,Magnitude,Vx,LoadSets,Description
2,,,,"1,5",1,,
99,,,,1,1,,
3,4,,,1,1,,
CSV
orv csv-import "$model" force forces.csv
printf 'NodalForceID;VertexID;Magnitude;Vz;LoadSets;Description\r\n' >forces.csv
printf '1;3;-7.25;;"Step 1, CLOAD";first\r\n;13;1e-3;-1;Step 2: wind; Step 1, CLOAD;"second; ""new"""\r\n' |
  sed 's/Step 2: wind; Step 1, CLOAD/"&"/' >>forces.csv
orv csv-import "$model" force forces.csv
printf 'VertexID;Magnitude;Description\r\n1;250;B\366\r\n' >latin.csv
orv csv-import "$model" force latin.csv
rm latin.csv
orv csv-export "$model" force out.csv
head -2 out.csv
tail -1 out.csv
orv csv-import "$model" force out.csv
orv export "$deck" "$model" changed.inp
diff "$deck" changed.inp
orv export changed.inp "$model" other.inp
orv export --other-deck changed.inp "$model" other.inp
ls
orv draw "$model" --deck "$deck" -o picture.svg --view sideways
orv draw "$model" --deck "$deck" -o picture.svg --step 1
head -c 4 picture.svg
echo
orv report "$model" -o report.html --set snow
orv report "$model" --deck "$deck" -o report.html --labels nodes
grep -c -e '<h1>' -e 'Findings</h2>' -e 'Resultants</h2>' -e '<td class="number">held</td>' report.html

printf 'VertexID,FixedX,Stiffness\n2,-1,\n3,,4\n' >rigid.csv
orv csv-import "$model" NodalRigidBoundaries rigid.csv
orv csv-export "$model" NodalRigidBoundaries
orv list
orv frobnicate
orv undo "$model" 1.5
orv draw "$model" -o picture.svg --scale big
orv check "$model" --about 1,x,2
orv list "$model" force --where '1=1) UNION ALL SELECT 1 FROM LoadSets WHERE (1=1'
orv draw "$model" --deck "$deck" -o "$deck"
orv csv-export "$model" force "$model"
orv csv-export "$model" force ''
orv draw "$model" -o "$(printf '%0256d' 0)" | grep -o 'is too long.*'
orv draw "$model" -o "$(printf '%0251d' 0).svg" | tail -c 13
rm 0*0.svg
orv draw "$model" -o nowhere/deep/picture.svg
printf 'VertexID;LoadSets;Description\r\n1;"""a;b""; snow";"two\nlines \033[31m 漢ü"\r\n' >names.csv
printf "2;;O'Neill \"x\"\n" >>names.csv
orv csv-import "$model" force names.csv
orv csv-export "$model" force names.csv
tail -3 names.csv | cat -v
orv list "$model" force | sed 's/  *$//' | tail -5
orv check "$model" | grep -A1 no-direction

printf 'VertexID,LoadSets\n1,a\xef\xbf\xbf\n1,"""\t"""\n' >unnamed.csv
orv csv-import "$model" force unnamed.csv
rm unnamed.csv

echo 'Nobody reads it, and a full disk:'
exec 3> >(:)
wait $!
"${program[@]}" list "$model" >&3
echo "(exit status $?)"
"${program[@]}" list "$model" 2>&1 >/dev/full
echo "(exit status $?)"
printf 'NodalForceID,VertexID,Magnitude\n11,,7\n' >stays.csv
orv csv-import "$model" force stays.csv
orv list "$model" force --csv --where 'NodalForceID = 11' | grep -o '",1,0,0,0,1,7,0'
printf 'NodalForceID,VertexID,LoadSets\n11,2,snow\n12,2,\n' >moved.csv
orv csv-import "$model" force moved.csv
orv list "$model" force --csv --where 'NodalForceID = 11' | grep -o '",2,1.5,0,0,1,7,0.*'
echo 11,3, >>moved.csv
orv csv-import "$model" force moved.csv
{
  echo VertexID,Magnitude
  for row in {2..600}; do ((row % 400 == 2)) && echo 3,x || echo 3,1; done
} >faults.csv
orv csv-import "$model" force faults.csv

echo 'Values that a record cannot hold, and no model:'
printf 'VertexID,FixedX\n2,-1\n\n3,70000\n' >rigid.csv
orv csv-import "$model" NodalRigidBoundaries rigid.csv
: >nothing.orvdb
orv list nothing.orvdb

echo 'An import is undone:'
cp "$deck" "l'åme.inp"
"${program[@]}" import "l'åme.inp" again.orvdb >/dev/null
orv undo again.orvdb
orv list again.orvdb
orv redo again.orvdb 1
orv redo again.orvdb
orv history again.orvdb --json | grep -o '"Name":[^,]*'
