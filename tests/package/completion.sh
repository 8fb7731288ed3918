#!/usr/bin/env bash
# What bash, zsh and fish offer, with the completions installed where they look for them.
. "$(dirname "$0")/support.sh"
needs bash zsh fish
[ -f /usr/share/bash-completion/bash_completion ] || skip "bash-completion is not installed"
needs_installed
temporary_folder
export HOME=$scratch XDG_DATA_DIRS=$share:/usr/share XDG_CONFIG_HOME=$scratch PATH=$installed/usr/bin:$PATH TERM=xterm
unset ZDOTDIR

# offered_by_SHELL LINE: what it offers for the last word of the line, which is empty after a blank.
offered_by_bash() {
  local words
  read -ra words <<<"$1"
  if [[ $1 == *' ' ]]; then words+=(''); fi
  bash --norc "$here/candidates.bash" "${words[@]}"
}
offered_by_zsh() { zsh -f "$here/candidates.zsh" "$share/zsh/vendor-completions" "$1"; }
offered_by_fish() { fish -c "complete -C '$1'" | cut -f 1; }

# expect SHELL LINE WORD...: the words are offered, folders with or without a slash, and files never are.
expect() {
  local shell=$1 line="kestrova-cli $2" offered word
  offered=$("offered_by_$shell" "$line" | sed 's|/$||')
  for word in "${@:3}"; do
    includes "$offered" "$word" || fail "$shell does not offer $word after \"$line\", but: $offered"
  done
  ! includes "$offered" notes || fail "$shell offers a file after \"$line\""
}

cd "$scratch"
mkdir album
touch notes
all_commands=$(commands)
all_choices=$(choices)
[ -n "$all_commands" ] || fail "the help names no commands"
[ -n "$all_choices" ] || fail "the help names no values"

for shell in bash zsh fish; do
  expect $shell '' $all_commands
  expect $shell 'organise ' album
  expect $shell 'organise --to ' album
  expect $shell 'organise -- ' album
  for command in $all_commands; do
    expect $shell "$command --" $(options "$command")
  done
  while read -r option values; do
    expect $shell "organise $option " $values
  done <<<"$all_choices"
done
