#!/bin/sh
# What CI runs for the app: the transcripts, with a report for machines, then the tests. It needs Node 18 or later, Chromium, and
# emp-window on the path or where EMP_WINDOW says.
# SPDX-License-Identifier: MIT
set -eu
cd "$(dirname "$0")"
[ -d node_modules ] || npm install --no-audit --no-fund
mkdir -p reports
"${EMP_WINDOW:-emp-window}" check --junit reports/transcripts.xml transcripts/*.txt
npm test
