#!/usr/bin/env bash
# Builds build/bridge/bridge/twinstep-bridge.exe for 64-bit Windows, and makes sure that it runs on a bare one.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${bridge_packages[@]}"
build_preset bridge

program=build/bridge/bridge/twinstep-bridge.exe
size=$(stat -c %s "$program")
if ((size >= 2000000)); then
    echo "$program has $size bytes; it must stay under 2 MB." >&2
    exit 1
fi
# All that every Windows brings along.
foreign=$(x86_64-w64-mingw32-objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p' |
    grep -ivxE 'kernel32\.dll|msvcrt\.dll|shell32\.dll|user32\.dll|ws2_32\.dll' || true)
if [[ -n $foreign ]]; then
    echo "$program needs what not every system has: $foreign" >&2
    exit 1
fi
echo "$program: $size bytes"
