#!/bin/bash
# A model goes to a server and comes back, in a folder with plate.inp.
#
#   terminal.sh PROGRAM...      the words that run orv.exe
program=("$@")
server="odbc:${ORV_TEST_SERVER}Database=postgres"
password=$(sed 's/.*Pwd=\([^;]*\);.*/\1/' <<<"$ORV_TEST_SERVER")

# The port is another one each time, and a password would be seen here.
orv() {
  echo "\$ orv $*" | sed 's/odbc:.*Database=postgres/SERVER/'
  "${program[@]}" "$@" 2>&1 | sed 's/"Z:[^"]*\\/"/; s/Port=[0-9]*/Port=.../'
  local status=${PIPESTATUS[0]}
  ((status == 0)) || echo "(exit status $status)"
}

{
  orv import plate.inp plate.orvdb
  orv copy plate.orvdb "$server"
  orv copy plate.orvdb "$server"
  orv copy "$server" back.orvdb
  orv copy plate.orvdb "${server/Pwd=/Pwd=x}"
  orv copy "${server/Driver=/Treiber=}" none.orvdb
  orv copy nowhere.orvdb "$server"
  orv list "$server" NodalForces
  orv list plate.orvdb | tail -n +2 >back.csv && orv list "$server" | tail -n +2 | cmp - back.csv
  orv undo "$server"
  for table in Vertices LoadSets NodalForces; do
    orv list back.orvdb "$table" --csv | tail -n +2 >back.csv
    orv list "$server" "$table" --csv | tail -n +2 >server.csv
    orv list plate.orvdb "$table" --csv | tail -n +2 | cmp - back.csv && cmp back.csv server.csv
  done
  orv export plate.inp "$server" same.inp
  cmp plate.inp same.inp && echo 'the deck is the same'
  ls -I printed
} | tee printed
grep -c "$password" printed
rm printed
