#!/bin/bash
# Installs what the report page is made of into .deps/report: the libraries that report/package-lock.json names.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

mkdir -p "$VERNOXA_DEPS/report"
cp "$VERNOXA_ROOT"/report/package.json "$VERNOXA_ROOT"/report/package-lock.json "$VERNOXA_DEPS/report"
cd "$VERNOXA_DEPS/report"
npm ci --engine-strict --ignore-scripts --no-audit --no-fund --omit-lockfile-registry-resolved
