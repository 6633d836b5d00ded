#!/usr/bin/env bash
# Draws assets/twinstep.ico, the icon of programs for Windows, from assets/twinstep.svg.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh

need_packages "${icon_packages[@]}"
pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT
for size in 16 20 24 32 40 48; do
    rsvg-convert --width "$size" --height "$size" --output "$pictures/$size.png" assets/twinstep.svg
done
convert "$pictures"/*.png assets/twinstep.ico
