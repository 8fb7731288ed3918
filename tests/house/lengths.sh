#!/usr/bin/env bash
# lengths.sh SOURCES TESTS: names every function of the folder SOURCES that has more than 35 lines, from its name to its
# closing brace, and every file of both folders that has more than 300. Both are too long to be read in one go.
set -euo pipefail
sources=$1
tests=$2

files_of() (
  cd "$1"
  find . -name '*.h' -o -name '*.cpp' | LC_ALL=C sort
)

too_long_functions() (
  mapfile -t files < <(files_of "$sources")
  cd "$sources"
  ctags -x --language-force=C++ --kinds-C++=f -D 'Q_PROPERTY(property)=' --_xformat='%F:%n:%{end}:%N' "${files[@]}" |
    awk -F: '$3 == "" { print $1 ":" $2 ": where " $4 " ends is unclear"; next }
      $3 - $2 + 1 > 35 { print $1 ":" $2 ": " $4 " has " $3 - $2 + 1 " lines" }
      END { if (NR == 0) print "no function was found" }'
)

too_long_files() (
  mapfile -t files < <(files_of "$1")
  cd "$1"
  wc --lines "${files[@]}" | awk '$2 != "total" && $1 > 300 { print $2 " has " $1 " lines" }'
)

complaints=$(too_long_functions; too_long_files "$sources"; too_long_files "$tests")
if [ -n "$complaints" ]; then
  printf '%s\n' "$complaints" >&2
  exit 1
fi
