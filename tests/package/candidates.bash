# Prints what bash offers for the last word of a command line: candidates.bash WORD...
# Loads the completion as bash does, by the program's name.
. /usr/share/bash-completion/bash_completion
compopt() { :; } # which only a completion in flight may call
_completion_loader "$1"
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
COMP_LINE=$*
COMP_POINT=${#COMP_LINE}
"_${1//-/_}" "$1" "${!#}" "${*: -2:1}"
printf '%s\n' "${COMPREPLY[@]%=}"
