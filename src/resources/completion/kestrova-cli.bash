# Completion of kestrova-cli in bash: with the bash-completion package.

_kestrova_cli() {
  local cur prev words cword split
  _init_completion -s || return

  local word command='' only_folders=''
  for word in "${words[@]:1:cword-1}"; do
    case $word in
      --) only_folders=yes ;;
      organise) command=organise ;;
    esac
  done

  if [[ ! $only_folders ]]; then
    local values=''
    case $prev in
      --to) _filedir -d && return ;;
      --media) values='all photos videos' ;;
      --photo-formats) values='jpeg jpeg+tiff jpeg+tiff+png' ;;
      --folders) values='long medium short' ;;
      --size) values='original 720p 1080p' ;;
    esac
    if [[ $values ]]; then
      COMPREPLY=($(compgen -W "$values" -- "$cur"))
      return
    fi
    $split && return
    if [[ $cur == -* ]]; then
      COMPREPLY=($(compgen -W '--to= --media= --photo-formats= --folders= --size= --upright --no-upright
        --skip-small-photos --skip-small-videos --json --quiet --log --help --version' -- "$cur"))
      [[ ${COMPREPLY-} == *= ]] && compopt -o nospace
      return
    fi
    if [[ ! $command ]]; then
      COMPREPLY=($(compgen -W organise -- "$cur"))
      return
    fi
  fi
  _filedir -d
}

complete -F _kestrova_cli kestrova-cli
