#!/usr/bin/env bash
# Builds Twinstep where needed and starts it; arguments go to the program.
set -euo pipefail

started_in=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD
source scripts/packages.sh
source scripts/build.sh

need_packages "${program_packages[@]}"
build_preset release

# Relative paths among the arguments mean what they meant to the caller.
cd "$started_in"
exec "$root/build/release/twinstep" "$@"
