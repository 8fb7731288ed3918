#compdef kestrova-cli
# Completion of kestrova-cli in zsh.

local -a questions=(
  '(- : *)--help[print a summary of the options]'
  '(- : *)--version[print the version]')
local -a organise=(
  '--to=[the folder for the new tree]:target folder:_directories'
  '--media=[what to copy]:media:(all photos videos)'
  '--photo-formats=[which formats count as photos]:formats:(jpeg jpeg+tiff jpeg+tiff+png)'
  '--folders=[how to name folders]:folder names:((
    long\:"2014/05/21-May-2014 Wednesday" medium\:"2014/05/21-May Wednesday" short\:"2014/05/21"))'
  '--size=[the largest size for photos]:size:(original 720p 1080p)'
  '(--no-upright)--upright[rotate photos upright]'
  '(--upright)--no-upright[keep the orientation of photos]'
  '--skip-small-photos[skip small photos]'
  '--skip-small-videos[skip small videos]'
  '--jobs=[how many files to prepare at a time]:number:(1 2 4 8)'
  '--dry-run[only show what would become of each file]'
  '--verify[compare what was written with the sources]'
  '--checksums=[verify, and write SHA-256 sums into a file]:file:_files'
  '--report=[write what becomes of each file into a new file, too]:report:_files -g "*.(ndjson|csv)"'
  '--no-record[keep no record of the run]'
  '--json[print the summary as one JSON object]'
  '--quiet[print errors only]'
  '--log[log what happens to each file]'
  '*:source folder:_directories')
local -a check=(
  '--in=[the folder to look in]:target folder:_directories'
  '--rescue=[copy what is missing into a folder]:folder:_directories'
  '--json[print the result as one JSON object]'
  '*:source folder:_directories')
local -a undo=(
  '--dry-run[only show what would be taken back]'
  '--delete[delete files for good]'
  '--json[print the result as one JSON object]'
  '1:run:_path_files -W ${XDG_STATE_HOME:-$HOME/.local/state}/kestrova/runs')
local -a runs=('--json[print the list as one JSON array]')

local state line
local -A opt_args
_arguments -S -C : $questions \
  '1:command:((organise\:"copy photos and videos into one folder tree sorted by date"
    check\:"say whether all photos and videos are in a folder"
    undo\:"take back what a run wrote"
    runs\:"list the recorded runs"))' \
  '*::argument:->arguments'
if [[ $state == arguments ]]; then
  case $line[1] in
    organise | check | undo | runs) _arguments -S : $questions ${(P)line[1]} ;;
  esac
fi
