#!/usr/bin/env bash
# run.sh PACKAGE [TEST...]: runs the tests of the TV in memory on the package that tools/wasm has made, all or those named by
# their files. EMP_WINDOW_CLIENT_PACKAGES names the folder for what they need from the registry, EMP_WINDOW the program that the TV
# is compared with, EMP_WINDOW_SIMULATION that of the simulation; by default they are those of build/release.
# SPDX-License-Identifier: MIT
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
build=$here/../../build
[[ -f ${1:-}/emp-window.wasm ]] || {
  sed -n '2,4s/^# //p' "$0" >&2
  exit 2
}
EMP_WINDOW_PACKAGE=$(readlink -f "$1")
EMP_WINDOW_CLIENT_PACKAGES=${EMP_WINDOW_CLIENT_PACKAGES:-$build/packages}
EMP_WINDOW=${EMP_WINDOW:-$build/release/emp-window}
EMP_WINDOW_SIMULATION=${EMP_WINDOW_SIMULATION:-$build/release/tests/proof/simulation/proof_simulation}
export EMP_WINDOW_PACKAGE EMP_WINDOW_CLIENT_PACKAGES EMP_WINDOW EMP_WINDOW_SIMULATION
shift
"$here/../client/packages.sh" "$EMP_WINDOW_CLIENT_PACKAGES"
"$here/node18.sh" "$EMP_WINDOW_CLIENT_PACKAGES/node18"
if [[ $# -gt 0 ]]; then tests=("$@"); else tests=("$here"/*.test.js); fi
limit=(--test-timeout=1800000) # in case a file hangs; Node 18 lacks the option
node "${limit[@]}" -e '' 2>/dev/null || limit=()
exec node --test --test-concurrency=1 "${limit[@]}" "${tests[@]}"
