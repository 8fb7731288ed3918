#!/usr/bin/env bash
# The installed command line organises an album.
. "$(dirname "$0")/support.sh"
needs_installed
temporary_folder
export HOME=$scratch
cli=$installed/usr/bin/kestrova-cli

"$build/kestrova-sample-album" "$scratch/album"
before=$(cd "$scratch/album" && find . -type f -exec md5sum {} + | sort)
"$cli" organise "$scratch/album" --to "$scratch/organised" --photo-formats jpeg+tiff
[ "$before" = "$(cd "$scratch/album" && find . -type f -exec md5sum {} + | sort)" ] || fail "an original has changed"

organised=$(cd "$scratch/organised" && find . -type f)
[ "$(wc -l <<<"$organised")" -ge 10 ] || fail "too few files were written: $organised"
misnamed=$(grep -vE '^\./[0-9]{4}/[0-9]{2}/[0-9]{2}-[A-Z][a-z]+-[0-9]{4} [A-Z][a-z]+day/(PHOTO|VIDEO)_[0-9]{14}_[0-9]+\.[A-Z0-9]+$' \
  <<<"$organised" || true)
[ -z "$misnamed" ] || fail "not named by their dates: $misnamed"

again=$("$cli" organise "$scratch/album" --to "$scratch/organised" --photo-formats jpeg+tiff --json --quiet)
grep -qE '"written":.*"total":\{"bytes":0,"files":0\}' <<<"$again" || fail "a second run wrote again: $again"

status=0
"$cli" organise "$scratch/album" 2>/dev/null || status=$?
[ $status -eq 2 ] || fail "wrong usage ended with $status"
