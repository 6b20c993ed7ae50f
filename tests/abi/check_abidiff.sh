#!/bin/bash
# Compares built libraries with the kept dumps of their binary interface.
#
#   check_abidiff.sh [--update] [--dumps DIR] LIBRARY...
#
# The dump of libNAME.so is libNAME.abi, beside this script unless --dumps says
# otherwise; --update writes it anew.  Where layout.txt says what the layout must
# be, a dump says what it was: it also knows parameter and result types and default
# visibility, which the table leaves out.  (abigail's --headers-dir is not used: it
# filters out changed fields and slots of the very classes that the headers define.)
#
# The libraries must have been built by gcc with -g: from clang's debug information
# the same classes read differently.  Exit status: 0 alike; 1 not alike, with
# abidiff's report; 2 nothing to compare.  Needs abigail-tools and binutils.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
readonly here

fail() {
  echo "check_abidiff: $*" >&2
  exit 2
}

update=no
dumps=$here
while [ $# -gt 0 ]; do
  case $1 in
    --update) update=yes ;;
    --dumps) [ $# -ge 2 ] || fail "--dumps needs a directory"; dumps=$2; shift ;;
    -*) fail "unknown option $1" ;;
    *) break ;;
  esac
  shift
done
[ $# -gt 0 ] || fail "usage: check_abidiff.sh [--update] [--dumps DIR] LIBRARY..."
for tool in abidw abidiff readelf; do
  command -v "$tool" > /dev/null || fail "no $tool; install abigail-tools and binutils"
done

# Common to dumping and comparing: what is exported, without the templates of the
# standard library that were instantiated here, which are no promise.
selection=(--exported-interfaces-only --suppr "$here/abidiff.suppr")

dump() {  # dump LIBRARY FILE
  abidw "${selection[@]}" --no-corpus-path --no-comp-dir-path --no-show-locs \
        --type-id-style hash --out-file "$2" "$1"
}

compare() {  # compare FILE LIBRARY; virtual tables as symbols are check_symbols.py's
  abidiff "${selection[@]}" --leaf-changes-only --no-unreferenced-symbols --no-show-locs "$1" "$2"
}

differing=0
for library in "$@"; do
  [ -r "$library" ] || fail "no library $library"
  sections=$(readelf -SW "$library") || fail "$library is not a library"
  grep -q '\.debug_info' <<< "$sections" || fail "$library: no debug information; build with -g"
  compilers=$(readelf -p .comment "$library" 2>&1 || true)
  ! grep -q clang <<< "$compilers" || fail "$library was built by clang; the dumps are of builds by gcc"
  name=$(basename "$library")
  file=$dumps/${name%%.so*}.abi
  if [ "$update" = yes ]; then
    dump "$library" "$file"
    echo "check_abidiff: $file written"
    continue
  fi
  [ -r "$file" ] || fail "no dump $file; --update makes it"
  status=0
  compare "$file" "$library" || status=$?
  # Bits 1 and 2 are errors of the tool, 4 a change, 8 an incompatible one.
  [ $((status & 3)) -eq 0 ] || fail "abidiff failed on $library"
  if [ "$status" -eq 0 ]; then
    echo "check_abidiff: $name: alike"
  else
    echo "check_abidiff: $name: not alike"
    differing=1
  fi
done
exit "$differing"
