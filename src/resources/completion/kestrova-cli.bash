# Completion of kestrova-cli in bash: with the bash-completion package.

_kestrova_cli() {
  local cur prev words cword split
  _init_completion -s || return

  local word command='' only_folders=''
  for word in "${words[@]:1:cword-1}"; do
    case $word in
      --) only_folders=yes ;;
      organise | check | undo | runs) command=${command:-$word} ;;
    esac
  done

  if [[ ! $only_folders ]]; then
    local values=''
    case $prev in
      --to | --in | --rescue) _filedir -d && return ;;
      --checksums) _filedir && return ;;
      --report) _filedir '@(ndjson|csv)' && return ;;
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
      local options=''
      case $command in
        organise) options='--to= --media= --photo-formats= --folders= --size= --upright --no-upright
          --skip-small-photos --skip-small-videos --jobs= --dry-run --verify --checksums= --report= --no-record --json --quiet --log' ;;
        check) options='--in= --rescue= --json' ;;
        undo) options='--dry-run --delete --json' ;;
        runs) options=--json ;;
      esac
      COMPREPLY=($(compgen -W "$options --help --version" -- "$cur"))
      [[ ${COMPREPLY-} == *= ]] && compopt -o nospace
      return
    fi
    if [[ ! $command ]]; then
      COMPREPLY=($(compgen -W 'organise check undo runs' -- "$cur"))
      return
    fi
  fi
  case $command in
    undo) COMPREPLY=($(compgen -W "$(ls "${XDG_STATE_HOME:-$HOME/.local/state}/kestrova/runs" 2>/dev/null)" -- "$cur")) ;;
    runs) ;;
    *) _filedir -d ;;
  esac
}

complete -F _kestrova_cli kestrova-cli
