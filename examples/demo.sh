#!/usr/bin/env bash
# demo.sh COMMAND FOLDER [LIBRARY]: shows what the command zorvex does to the example documents, in
# a copy of them in FOLDER. LIBRARY holds the adapter for the geometry file that they name.
set -euo pipefail

zorvex=$(realpath "$1") folder=$2 library=${3:+$(realpath "$3")}
data=$(cd "$(dirname "${BASH_SOURCE[0]}")/data" && pwd)

rm -rf "$folder"
mkdir -p "$folder"
cp -r "$data/." "$folder"
cd "$folder"
if [ -n "$library" ]; then
    export ZORVEX_LIBRARIES=$library
fi

say() { printf '\n\033[1m%s\033[0m\n' "$*"; }
run()
{
    printf '$ zorvex'
    printf ' %q' "$@"
    printf '\n'
    "$zorvex" "$@"
}

say "A shaft support, and the fasteners that it takes from a second document"
run info bracket-assembly.zorvex

say "Its structure with quantities"
run tree bracket-assembly.zorvex

say "One part in detail, and its name in Japanese and other languages"
run get bracket-assembly.zorvex id26
run get bracket-assembly.zorvex id103

say "Two washers under each foundation bolt, in a new revision"
run set bracket-assembly.zorvex id47 quantity 8 -O revised.zorvex
run set revised.zorvex id21 revision C -O revised.zorvex
run tree revised.zorvex --depth 1

say "What that changed in the document"
diff -u bracket-assembly.zorvex revised.zorvex || [ $? -eq 1 ]

say "The revised document is sound"
run check revised.zorvex
