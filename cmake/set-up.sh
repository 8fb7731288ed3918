# shellcheck shell=bash
# What run and test share: installing missing packages and building. Meant to be sourced; reads $root, the project's
# folder. All messages go to standard error, as standard output belongs to the programs.

: "${root:?the folder of the project}"

say() { printf '%s\n' "$*" >&2; }

# The packages in the given parts of packages.debian, of the project and of bench.
wanted_packages() {
  local part
  for part in "$@"; do
    sed -n "/^\[$part\]/,/^\[/ { s/[[:space:]].*//; /^[a-z0-9]/p }" "$root/packages.debian" "$root/bench/packages.debian"
  done
}

# Those of them that are not installed.
missing_packages() {
  local wanted
  mapfile -t wanted < <(wanted_packages "$@" | LC_ALL=C sort -u)
  LC_ALL=C comm -23 <(printf '%s\n' "${wanted[@]}") \
    <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null | sed -n 's/^installed //p' | LC_ALL=C sort -u)
}

apt_get() {
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then as_root=(sudo); fi
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet "$@" >&2
}

# install_packages PART...: installs the missing ones. Package lists are fetched only if installing with the present
# ones fails.
install_packages() {
  if ! command -v dpkg-query >/dev/null; then
    say "This is not Debian: install what packages.debian lists."
    return
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  if [ ${#missing[@]} -eq 0 ]; then return; fi
  say "Installing ${missing[*]}"
  local install=(install --yes --no-install-recommends "${missing[@]}")
  apt_get "${install[@]}" 2>/dev/null || { apt_get update && apt_get "${install[@]}"; }
}

# build PRESET [TARGET...]: builds everything if no target is given. A first build shows its progress in place.
build() {
  local preset=$1 folder=$root/build/$1 options=()
  shift
  if [ -n "${KESTROVA_WERROR-}" ]; then options+=("-DKESTROVA_WERROR=$KESTROVA_WERROR"); fi
  if [ ! -e "$folder/build.ninja" ]; then
    configure
    ninja -C "$folder" "$@" >&2
  else
    if [ "$root/CMakePresets.json" -nt "$folder/build.ninja" ] || [ ${#options[@]} -gt 0 ]; then configure; fi
    ninja -C "$folder" "$@" | sed '/no work to do/d; /Entering directory/d; /Re-checking globbed/d' >&2
  fi
}

# Uses the variables of build.
configure() {
  (cd "$root" && cmake --preset "$preset" --log-level=WARNING "${options[@]}" >&2)
  touch "$folder/build.ninja"
}
