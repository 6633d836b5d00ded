#!/usr/bin/env bash
# A thousand restarts of the bridge in order, and as many after a crash, or as many as the argument says: what is
# held open before and after. Takes half an hour.
set -euo pipefail

TWINSTEP_RESTARTS=${1:-1000} "$(dirname "${BASH_SOURCE[0]}")/run.sh" --gtest_filter='Restarts.*'
