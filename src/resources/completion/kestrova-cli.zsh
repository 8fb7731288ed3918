#compdef kestrova-cli
# Completion of kestrova-cli in zsh.

_arguments -S : \
  '--to=[the folder that the tree grows in]:target folder:_directories' \
  '--media=[what to take]:media:(all photos videos)' \
  '--photo-formats=[which files are photos]:formats:(jpeg jpeg+tiff jpeg+tiff+png)' \
  '--folders=[how folders are named]:folder names:((
    long\:"2014/05/21-May-2014 Wednesday" medium\:"2014/05/21-May Wednesday" short\:"2014/05/21"))' \
  '--size=[the largest size of the photos written]:size:(original 720p 1080p)' \
  '(--no-upright)--upright[turn photos upright]' \
  '(--upright)--no-upright[leave photos as they lie]' \
  '--skip-small-photos[leave out small photos]' \
  '--skip-small-videos[leave out small videos]' \
  '--json[print the summary as one JSON object]' \
  '--quiet[show no progress and no table]' \
  '--log[show what is done to each file]' \
  '(- : *)--help[print a summary of the options]' \
  '(- : *)--version[print the version]' \
  '1:command:((organise\:"copy photos and videos into one dated folder tree"))' \
  '*:source folder:_directories'
