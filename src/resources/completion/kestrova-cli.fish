# Completion of kestrova-cli in fish.

set -l command complete -c kestrova-cli

$command -f
$command -n 'not __fish_seen_subcommand_from organise' -a organise -d 'Copy photos and videos into one dated folder tree'
$command -n '__fish_seen_subcommand_from organise' -a '(__fish_complete_directories (commandline -ct) "Source folder")'

$command -l to -d 'The folder that the tree grows in' -x \
  -a '(__fish_complete_directories (commandline -ct) "Target folder")'
$command -l media -d 'What to take' -x -a 'all photos videos'
$command -l photo-formats -d 'Which files are photos' -x -a 'jpeg jpeg+tiff jpeg+tiff+png'
$command -l folders -d 'How folders are named' -x \
  -a 'long\t"2014/05/21-May-2014 Wednesday" medium\t"2014/05/21-May Wednesday" short\t"2014/05/21"'
$command -l size -d 'The largest size of the photos written' -x -a 'original 720p 1080p'
$command -l upright -d 'Turn photos upright'
$command -l no-upright -d 'Leave photos as they lie'
$command -l skip-small-photos -d 'Leave out small photos'
$command -l skip-small-videos -d 'Leave out small videos'
$command -l json -d 'Print the summary as one JSON object'
$command -l quiet -d 'Show no progress and no table'
$command -l log -d 'Show what is done to each file'
$command -l help -d 'Print a summary of the options'
$command -l version -d 'Print the version'
