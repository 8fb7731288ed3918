#!/usr/bin/env bash
# Makes both packages and installs them as dpkg does, into a folder, with this system's packages to depend on.
. "$(dirname "$0")/support.sh"
needs dpkg dpkg-deb dpkg-shlibdeps file gzip fakeroot

rm -rf "$work/cpack" "$packages" "$installed"
mkdir -p "$packages"
(
  umask 077 # packages must not take their permissions from whoever makes them
  "$cpack" --config "$build/CPackConfig.cmake" -B "$work/cpack"
)
mv "$work"/cpack/*.deb "$packages"
rm -rf "$work/cpack"

for package in kestrova kestrova-cli; do
  [ -f "$packages/${package}_$version-1_$(dpkg --print-architecture).deb" ] || fail "there is no package $package"
done

# Dependencies and clashes are judged by a copy of the system's list of packages; triggers belong to the system.
mkdir -p "$installed/var/lib/dpkg/updates"
cp -r /var/lib/dpkg/status /var/lib/dpkg/info "$installed/var/lib/dpkg"
fakeroot dpkg --instdir="$installed" --admindir="$installed/var/lib/dpkg" --log="$installed/dpkg.log" \
  --no-triggers --force-not-root --force-bad-path --path-include='/usr/share/*' --install "$packages"/*.deb
