#!/usr/bin/env bash
# packages.sh DIR: installs the packages that the client's tests use into DIR, unless they are there already.
# SPDX-License-Identifier: MIT
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")

is_node_new_enough() {
  node -e 'process.exit(parseInt(process.versions.node) >= 18 ? 0 : 1)' 2>/dev/null
}

is_node_new_enough || {
  echo "packages.sh: the client's tests need Node 18 or later; there is $(node --version 2>/dev/null || echo none)" >&2
  exit 1
}
command -v npm >/dev/null || {
  echo "packages.sh: the client's tests need npm, which comes with Node" >&2
  exit 1
}
mkdir -p "$1"
cd "$1"
[[ ! -d node_modules ]] || ! cmp --silent installed "$here/package-lock.json" || exit 0
cp "$here/package.json" "$here/package-lock.json" .
npm ci --no-audit --no-fund >npm.log 2>&1 || {
  cat npm.log >&2
  echo "packages.sh: npm could not install the packages in $here/package-lock.json; the client's tests need them" >&2
  exit 1
}
cp package-lock.json installed
