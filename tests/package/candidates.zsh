# Prints what zsh offers for the last word of a command line: candidates.zsh FUNCTIONS COMMAND-LINE
# zsh completes at a prompt only, so one on a terminal of its own is asked. It leaves its answer in a file, as the
# terminal shows it in columns.
zmodload zsh/zpty
answer=$(mktemp)
zpty shell zsh -f -i
ask() { zpty -w shell "$1" }

ask "fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D"
ask "compadd() {
  if ((\${argv[(I)-[OAD]]})) { builtin compadd \"\$@\"; return }
  local -a found
  builtin compadd -O found \"\$@\"
  print -rl -- \$found >>${(q)answer}
  builtin compadd \"\$@\"
}"
ask "leave() { exit }; zle -N leave; bindkey '^X' leave; bindkey '^I' complete-word; print rea''dy"
zpty -r shell output '*ready*'
zpty -w -n shell "$2"$'\t\x18'
while zpty -r shell output; do :; done
sort -u $answer
rm $answer
