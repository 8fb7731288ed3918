#!/usr/bin/env bash
# lengths.sh FOLDER: names every function of the folder's sources that has more than 35 lines, from its name to its
# closing brace, and every file that has more than 300. Either is too long to be read at one go.
set -euo pipefail
cd "$1"
mapfile -t files < <(find . -name '*.h' -o -name '*.cpp' | LC_ALL=C sort)

too_long_functions() {
  ctags -x --language-force=C++ --kinds-C++=f -D 'Q_PROPERTY(property)=' --_xformat='%F:%n:%{end}:%N' "${files[@]}" |
    awk -F: '$3 == "" { print $1 ":" $2 ": where " $4 " ends is unclear"; next }
      $3 - $2 + 1 > 35 { print $1 ":" $2 ": " $4 " has " $3 - $2 + 1 " lines" }
      END { if (NR == 0) print "no function was found" }'
}

too_long_files() {
  wc --lines "${files[@]}" | awk '$2 != "total" && $1 > 300 { print $2 " has " $1 " lines" }'
}

complaints=$(too_long_functions; too_long_files)
if [ -n "$complaints" ]; then
  printf '%s\n' "$complaints" >&2
  exit 1
fi
