# shellcheck shell=bash
# What the tests of the packages share. From ctest they have $source and $build, the project's and the build's folder,
# $version, $cpack, and $work, where the packages and the folder that they are installed in are kept.
set -euo pipefail
: "${source:?}" "${build:?}" "${version:?}" "${work:?}"
here=$source/tests/package
packages=$work/packages
installed=$work/installed
share=$installed/usr/share

fail() {
  printf 'FAILED: %s\n' "$*" >&2
  exit 1
}

skip() {
  printf 'SKIPPED: %s\n' "$*"
  exit 77
}

# needs PROGRAM...
needs() {
  local program
  for program in "$@"; do
    command -v "$program" >/dev/null || skip "$program is not installed"
  done
}

needs_installed() { [ -d "$installed/usr" ] || skip "the packages could not be made"; }

# A folder that goes with the test.
temporary_folder() {
  scratch=$(mktemp -d "${TMPDIR:-/tmp}/kestrova-package-XXXXXX")
  trap 'rm -rf "$scratch"' EXIT
}

# All options that the installed command line names in its help, or those of one command: options [COMMAND]
options() {
  local help
  help=$("$installed/usr/bin/kestrova-cli" --help)
  if [ $# -gt 0 ]; then help=$(sed -n "/^kestrova-cli $1/,/^\$/p" <<<"$help"); fi
  grep -oE -- '--[a-z][a-z-]*' <<<"$help" | sort -u
}

# All commands.
commands() { "$installed/usr/bin/kestrova-cli" --help | sed -nE 's/^kestrova-cli ([a-z]+) .*/\1/p'; }

# Its options that take one of some words: "--option word word..." a line.
choices() {
  "$installed/usr/bin/kestrova-cli" --help | sed -nE 's/^ +(--[a-z-]+) ([a-z0-9+]+(\|[a-z0-9+]+)+)$/\1 \2/p' | tr '|' ' '
}

# includes LINES LINE
includes() { grep -qxF -- "$2" <<<"$1"; }
