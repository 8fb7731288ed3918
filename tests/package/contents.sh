#!/usr/bin/env bash
# What the packages hold, and what they need.
. "$(dirname "$0")/support.sh"
needs dpkg-deb readelf
needs_installed

field() { dpkg-deb --field "$packages/$1"_*.deb "$2"; }
depends_on() { grep -qE "(^|, )$2( |,|$)" <<<"$(field "$1" Depends)"; }

depends_on kestrova libqt6widgets6 || fail "the window should need Qt Widgets"
depends_on kestrova-cli libqt6core6 || fail "the command line should need Qt"
! depends_on kestrova-cli libqt6widgets6 || fail "the command line must not need Qt Widgets"
! depends_on kestrova kestrova-cli || fail "the window must not need the command line"
! depends_on kestrova-cli kestrova || fail "the command line must not need the window"

for package in kestrova kestrova-cli; do
  [[ $(field $package Description) == photos* ]] || fail "$package is described by: $(field $package Description)"
  program=$installed/usr/bin/$package
  [ "$("$program" --version)" = "$package $version" ] || fail "$package is not of version $version"
  ! grep -qE '\.symtab|\.debug' <<<"$(readelf --sections --wide "$program")" || fail "$package is not stripped"
  ! grep -qE 'R(UN)?PATH' <<<"$(readelf --dynamic "$program")" || fail "$package looks for libraries where it was built"
  documents=$share/doc/$package
  for document in copyright changelog.gz changelog.Debian.gz; do
    [ -f "$documents/$document" ] || fail "$package lacks $document"
  done
  [[ $(zcat "$documents/changelog.Debian.gz") == "kestrova ($version-1)"* ]] ||
    fail "the changelog's newest version is not $version"
done
