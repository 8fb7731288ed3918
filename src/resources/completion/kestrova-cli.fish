# Completion of kestrova-cli in fish.

set -l command complete -c kestrova-cli

$command -f
$command -n 'not __fish_seen_subcommand_from organise' -a organise -d 'Copy photos and videos into one folder tree sorted by date'
$command -n '__fish_seen_subcommand_from organise' -a '(__fish_complete_directories (commandline -ct) "Source folder")'

$command -l to -d 'The folder for the new tree' -x \
  -a '(__fish_complete_directories (commandline -ct) "Target folder")'
$command -l media -d 'What to copy' -x -a 'all photos videos'
$command -l photo-formats -d 'Which formats count as photos' -x -a 'jpeg jpeg+tiff jpeg+tiff+png'
$command -l folders -d 'How to name folders' -x \
  -a 'long\t"2014/05/21-May-2014 Wednesday" medium\t"2014/05/21-May Wednesday" short\t"2014/05/21"'
$command -l size -d 'The largest size for photos' -x -a 'original 720p 1080p'
$command -l upright -d 'Rotate photos upright'
$command -l no-upright -d 'Keep the orientation of photos'
$command -l skip-small-photos -d 'Skip small photos'
$command -l skip-small-videos -d 'Skip small videos'
$command -l json -d 'Print the summary as one JSON object'
$command -l quiet -d 'Print errors only'
$command -l log -d 'Log what happens to each file'
$command -l help -d 'Print a summary of the options'
$command -l version -d 'Print the version'
