#!/usr/bin/env bash
# Builds the Debian package. The last line is its path, build/package/twinstep_VERSION_ARCHITECTURE.deb.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh
source scripts/build.sh

need_packages "${package_packages[@]}"
build_preset package
rm -f build/package/*.deb
cpack --preset package >&2
ls build/package/*.deb
