#!/usr/bin/env bash
# The manuals are found and well-formed, and tell of every option and its values.
. "$(dirname "$0")/support.sh"
needs mandoc man
needs_installed
export MANWIDTH=100 LC_ALL=C.UTF-8

for name in kestrova kestrova-cli; do
  manual=$(MANPATH=$share/man man --where "$name") || fail "man does not find $name"
  # The lint looks for manuals that are referred to among those of the system.
  problems=$(zcat "$manual" | mandoc -T lint -W style | grep -v 'referenced manual not found' || true)
  problems+=$(man --warnings --local-file "$manual" 2>&1 >/dev/null)
  [ -z "$problems" ] || fail "$manual: $problems"
done

text=$(MANPATH=$share/man man kestrova-cli | col -bx | sed 's/^ *//')
all_options=$(options)
all_choices=$(choices)
[ -n "$all_options" ] && [ -n "$all_choices" ] || fail "the help names no options or no values"
for option in $all_options; do
  grep -qE -- "(^|^--.*, )$option( |,|\$)" <<<"$text" || fail "the manual does not tell of $option"
done
while read -r option values; do
  includes "$text" "$option ${values// / | }" || fail "the manual does not tell that $option takes $values"
done <<<"$all_choices"
