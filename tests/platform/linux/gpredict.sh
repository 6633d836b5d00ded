#!/usr/bin/env bash
# gpredict.sh PORT: Gpredict, on a display and with settings of its own, has its rotator at this port of this computer
# follow its first satellite. It runs until it is ended.
set -euo pipefail

home=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$home"' EXIT
trap 'exit 0' TERM

mkdir -p "$home/.config/Gpredict/hwconf"
cat >"$home/.config/Gpredict/hwconf/Rotor.rot" <<END
[Rotator]
Host=127.0.0.1
Port=$1
MinAz=0
MaxAz=360
MinEl=0
MaxEl=90
AzType=0
AzStopPos=0
END

Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$home/display" 2>/dev/null &
until [[ -s $home/display ]]; do sleep 0.1; done
DISPLAY=:$(<"$home/display")
export DISPLAY
HOME=$home XDG_CONFIG_HOME='' GTK_MODULES='' NO_AT_BRIDGE=1 gpredict >/dev/null 2>&1 &

# Prints the corner and the size of the window with this name, once it is there.
window() {
    local id
    until id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -1) && [[ $id ]]; do sleep 0.2; done
    xdotool getwindowgeometry --shell "$id"
}
click() { xdotool mousemove "$1" "$2" click 1; }

eval "$(window '^Gpredict: ')"
sleep 1
# The menu of the satellites' module, and in it Antenna Control, which it calls by its eighth place.
click $((X + WIDTH - 20)) $((Y + 45))
sleep 0.5
xdotool key Down Down Down Down Down Down Down Down Return
eval "$(window 'Rotator')"
sleep 1
click $((X + WIDTH * 416 / 1000)) $((Y + HEIGHT * 594 / 1000)) # Track
sleep 0.5
click $((X + WIDTH - 57)) $((Y + HEIGHT * 594 / 1000)) # Engage
wait
