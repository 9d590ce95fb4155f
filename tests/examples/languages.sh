#!/bin/bash
# What docs/languages.md says was run as it stands there.
#
#   languages.sh PAGE BUILD PROGRAM...      the folder of the build, the words that run a program
#
# A folder that has nothing but the build, as build/x64, and ./dev stands for the checkout.
page=$1 build=$2
shift 2

# block LANGUAGE WORDS prints the first block of that language which has the words in it.
block() {
  awk -v fence="\`\`\`$1" -v words="$2" '
    !open && /^```/ { open = $0; text = ""; next }
    /^```/ { if (open == fence && index(text, words)) { printf "%s", text; exit }; open = "" }
    { text = text $0 "\n" }' "$page"
}

mkdir build
ln -s "$build" build/x64
printf '#!/bin/bash\nshift\nexec %s "$@"\n' "$(printf '%q ' "$@")" >dev
chmod +x dev

block vb CreateObject | tee tip_load.vbs | tail -n 1
./dev run cscript //nologo tip_load.vbs
block js Enumerator | tee tip_load.js | tail -n 1
./dev run cscript //nologo tip_load.js
block cpp main | tee tip_load.cpp | tail -n 1
. <(block '' tip_load.exe) 2>&1
