#!/usr/bin/env bash
# Installs silently in the present Wine prefix, starts the program from its menu entry, ends it as a task manager does,
# starts the zip's program in another folder, and uninstalls. Run by run.sh.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# folder VARIABLE: of the user, in the present prefix.
folder() { wine cmd /c "echo %$1%" 2>/dev/null | tr -d '\r'; }

local_data=$(winepath -u "$(folder LOCALAPPDATA)")
program=$local_data/Programs/Twinstep
settings=$local_data/twinstep

# starts COMMAND...: until the folder of its settings holds save.cfg; then it is asked to end, politely.
runs_in() {
    local folder=$1
    shift
    rm -f "$folder/save.cfg"
    "$@" &
    local tries=0
    until [[ -f $folder/save.cfg ]]; do
        ((++tries < 600)) || { echo "$* made no $folder/save.cfg" >&2; return 1; }
        sleep 0.1
    done
    wine taskkill /IM twinstep.exe >/dev/null 2>&1
    wait $!
}

echo "The installer"
wine build/windows/twinstep-*-setup.exe /S
[[ -f $program/twinstep.exe && -f $program/uninstall.exe ]]
runs_in "$settings" wine start /wait "$(folder APPDATA)\\Microsoft\\Windows\\Start Menu\\Programs\\Twinstep\\Twinstep.lnk"

echo "The zip"
stick=$WINEPREFIX/drive_c/stick
mkdir "$stick"
(cd "$stick" && cmake -E tar xf "$OLDPWD"/build/windows/twinstep-*-portable.zip)
runs_in "$stick/Twinstep" wine "$stick/Twinstep/twinstep.exe"

echo "The uninstaller"
wine "$program/uninstall.exe" /S
for _ in $(seq 600); do [[ -d $program ]] || break; sleep 0.1; done
[[ ! -d $program && -f $settings/save.cfg ]]
