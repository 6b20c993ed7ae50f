#!/bin/bash
# Compiles every public header by itself, as a host in C++17 may include it first.
#
#   check_headers.sh DIR...
#
# Each DIR is an include directory: every *.h and *.hpp below it is compiled, with
# all the DIRs on the include path, by each of $COMPILERS (default: g++ clang++),
# all warnings being errors.  Each is included twice, which a missing include guard
# does not survive.  Exit status: 0 all compile; 1 some do not, each named with the
# compiler's messages; 2 there is nothing to compile, or nothing to compile it with.
set -euo pipefail

readonly FLAGS=(-std=c++17 -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
                -fsyntax-only -x c++)

fail() {
  echo "check_headers: $*" >&2
  exit 2
}

[ $# -gt 0 ] || fail "usage: check_headers.sh DIR..."
read -ra compilers <<< "${COMPILERS:-g++ clang++}"
for compiler in "${compilers[@]}"; do
  command -v "$compiler" > /dev/null || fail "no compiler $compiler"
done

includes=()
headers=()
for dir in "$@"; do
  [ -d "$dir" ] || fail "no directory $dir"
  includes+=(-I "$dir")
  mapfile -t found < <(cd "$dir" && find . -name '*.h' -o -name '*.hpp' | sort)
  [ ${#found[@]} -gt 0 ] || fail "no header below $dir"
  headers+=("${found[@]#./}")
done

failures=0
for compiler in "${compilers[@]}"; do
  for header in "${headers[@]}"; do
    # From standard input, where a header's own "#pragma once" draws no warning.
    if ! messages=$(printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
                    "$compiler" "${FLAGS[@]}" "${includes[@]}" - 2>&1); then
      failures=$((failures + 1))
      printf '%s does not compile with %s:\n%s\n' "$header" "$compiler" "$messages"
    fi
  done
done

echo "check_headers: ${#headers[@]} headers, ${#compilers[@]} compilers, $failures failures"
[ "$failures" -eq 0 ]
