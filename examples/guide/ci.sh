#!/bin/sh
# The CI of the app: runs the transcripts, with a machine-readable report, then the tests. It needs Node 18 or later,
# Chromium, and emp-window, either in the PATH or at the path in EMP_WINDOW.
# SPDX-License-Identifier: MIT
set -eu
cd "$(dirname "$0")"
[ -d node_modules ] || npm install --no-audit --no-fund
mkdir -p reports
"${EMP_WINDOW:-emp-window}" check --junit reports/transcripts.xml transcripts/*.txt
npm test
