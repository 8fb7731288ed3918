#compdef kestrova-cli
# Completion of kestrova-cli in zsh.

_arguments -S : \
  '--to=[the folder for the new tree]:target folder:_directories' \
  '--media=[what to copy]:media:(all photos videos)' \
  '--photo-formats=[which formats count as photos]:formats:(jpeg jpeg+tiff jpeg+tiff+png)' \
  '--folders=[how to name folders]:folder names:((
    long\:"2014/05/21-May-2014 Wednesday" medium\:"2014/05/21-May Wednesday" short\:"2014/05/21"))' \
  '--size=[the largest size for photos]:size:(original 720p 1080p)' \
  '(--no-upright)--upright[rotate photos upright]' \
  '(--upright)--no-upright[keep the orientation of photos]' \
  '--skip-small-photos[skip small photos]' \
  '--skip-small-videos[skip small videos]' \
  '--json[print the summary as one JSON object]' \
  '--quiet[print errors only]' \
  '--log[log what happens to each file]' \
  '(- : *)--help[print a summary of the options]' \
  '(- : *)--version[print the version]' \
  '1:command:((organise\:"copy photos and videos into one folder tree sorted by date"))' \
  '*:source folder:_directories'
