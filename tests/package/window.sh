#!/usr/bin/env bash
# The installed window opens on an X server, with its icon and under the name that the desktop file gives.
. "$(dirname "$0")/support.sh"
needs xvfb-run xwininfo xprop
needs_installed
if [ "${1-}" != inside ]; then exec xvfb-run -a -s '-screen 0 1280x1024x24' "$0" inside; fi
temporary_folder
export HOME=$scratch XDG_RUNTIME_DIR=$scratch QT_QPA_PLATFORM=xcb
desktop_file=$share/applications/example.kestrova.Kestrova.desktop

"$installed/usr/bin/kestrova" &
program=$!
is_shown() { [[ $(xwininfo -name Kestrova 2>/dev/null) == *'Map State: IsViewable'* ]]; }
for _ in {1..300}; do
  ! is_shown || break
  kill -0 $program 2>/dev/null || fail "the program ended before it showed its window"
  sleep 0.1
done
is_shown || fail "no window is shown"

class=$(sed -n 's/^StartupWMClass=//p' "$desktop_file")
[[ $(xprop -name Kestrova WM_CLASS) == *"\"$class\""* ]] || fail "the window's class is not $class"
icons=$(xprop -name Kestrova -len 16000000 _NET_WM_ICON | grep -aoE 'Icon \([0-9]+ x [0-9]+\)' || true)
for size in 16 32 256; do
  includes "$icons" "Icon ($size x $size)" || fail "the window has no icon of size $size: $icons"
done

kill $program
status=0
wait $program || status=$?
[ $status -eq 143 ] || fail "the program ended with $status instead of by the signal"
