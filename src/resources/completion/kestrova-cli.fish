# Completion of kestrova-cli in fish.

set -l command complete -c kestrova-cli
set -l none 'not __fish_seen_subcommand_from organise check undo runs'
set -l organise '__fish_seen_subcommand_from organise'
set -l check '__fish_seen_subcommand_from check'
set -l undo '__fish_seen_subcommand_from undo'
set -l json '__fish_seen_subcommand_from organise check undo runs'

$command -f
$command -n $none -a organise -d 'Copy photos and videos into one folder tree sorted by date'
$command -n $none -a check -d 'Say whether all photos and videos are in a folder'
$command -n $none -a undo -d 'Take back what a run wrote'
$command -n $none -a runs -d 'List the recorded runs'
$command -n '__fish_seen_subcommand_from organise check' \
  -a '(__fish_complete_directories (commandline -ct) "Source folder")'
$command -n $undo -a '(command ls (set -q XDG_STATE_HOME; and echo $XDG_STATE_HOME; or echo ~/.local/state)/kestrova/runs 2>/dev/null)'

$command -n $organise -l to -d 'The folder for the new tree' -x \
  -a '(__fish_complete_directories (commandline -ct) "Target folder")'
$command -n $organise -l media -d 'What to copy' -x -a 'all photos videos'
$command -n $organise -l photo-formats -d 'Which formats count as photos' -x -a 'jpeg jpeg+tiff jpeg+tiff+png'
$command -n $organise -l folders -d 'How to name folders' -x \
  -a 'long\t"2014/05/21-May-2014 Wednesday" medium\t"2014/05/21-May Wednesday" short\t"2014/05/21"'
$command -n $organise -l size -d 'The largest size for photos' -x -a 'original 720p 1080p'
$command -n $organise -l upright -d 'Rotate photos upright'
$command -n $organise -l no-upright -d 'Keep the orientation of photos'
$command -n $organise -l skip-small-photos -d 'Skip small photos'
$command -n $organise -l skip-small-videos -d 'Skip small videos'
$command -n $organise -l jobs -d 'How many files to prepare at a time' -x -a '1 2 4 8'
$command -n $organise -l dry-run -d 'Only show what would become of each file'
$command -n $organise -l verify -d 'Compare what was written with the sources'
$command -n $organise -l checksums -d 'Verify, and write SHA-256 sums into a file' -r -F
$command -n $organise -l report -d 'Write what becomes of each file into a new file, too' -r -F
$command -n $organise -l no-record -d 'Keep no record of the run'
$command -n $organise -l quiet -d 'Print errors only'
$command -n $organise -l log -d 'Log what happens to each file'
$command -n $check -l in -d 'The folder to look in' -x \
  -a '(__fish_complete_directories (commandline -ct) "Target folder")'
$command -n $check -l rescue -d 'Copy what is missing into a folder' -x \
  -a '(__fish_complete_directories (commandline -ct) "Folder")'
$command -n $undo -l dry-run -d 'Only show what would be taken back'
$command -n $undo -l delete -d 'Delete files for good'
$command -n $json -l json -d 'Print the result as JSON'
$command -l help -d 'Print a summary of the options'
$command -l version -d 'Print the version'
