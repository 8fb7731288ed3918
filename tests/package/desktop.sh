#!/usr/bin/env bash
# Desktop file, AppStream metadata and icons are what desktops expect, and agree with each other.
. "$(dirname "$0")/support.sh"
needs desktop-file-validate appstreamcli rsvg-convert compare
needs_installed
temporary_folder
id=example.kestrova.Kestrova
desktop_file=$share/applications/$id.desktop
metainfo=$share/metainfo/$id.metainfo.xml

problems=$(desktop-file-validate "$desktop_file") || true
[ -z "$problems" ] || fail "$problems"
appstreamcli validate --no-net "$metainfo" || fail "the AppStream metadata is not valid"
appstreamcli validate-tree --no-net "$installed" || fail "AppStream metadata and desktop file do not fit together"

grep -qxF "Icon=$id" "$desktop_file" || fail "the desktop file names another icon"
[ -x "$installed/usr/bin/$(sed -n 's/^Exec=//p' "$desktop_file")" ] || fail "the desktop file starts nothing"
newest=$(grep -m 1 -oP '<release version="\K[^"]+' "$metainfo")
[ "$newest" = "$version" ] || fail "the metadata's newest release is $newest instead of $version"

icons=$share/icons/hicolor
cmp -s "$icons/scalable/apps/$id.svg" "$source/src/resources/icons/kestrova.svg" || fail "the drawing is not installed"
"$source/src/resources/icons/render" "$scratch"
for size in 16 24 32 48 64 128 256 512; do
  picture=$icons/${size}x$size/apps/$id.png
  [ "$(identify -format %wx%h "$picture")" = "${size}x$size" ] || fail "$picture has another size"
  differing=$(compare -metric AE -fuzz 3% "$picture" "$scratch/kestrova-$size.png" null: 2>&1) ||
    fail "$picture is not what kestrova.svg shows ($differing pixels): run src/resources/icons/render"
done
