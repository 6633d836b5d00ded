#!/usr/bin/env bash
# Builds what there is of Twinstep for 64-bit Windows: the core, the adapters, the watchdog, the bridge and their tests.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh
source scripts/windows_libraries.sh

need_packages "${windows_packages[@]}"
configure_preset windows -DTWINSTEP_WINDOW=OFF -DTWINSTEP_HIDAPI="$(windows_hidapi_folder)"
cmake --build --preset windows >&2
