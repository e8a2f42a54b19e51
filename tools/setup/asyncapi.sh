#!/bin/bash
# Installs the reader of AsyncAPI documents into .deps/asyncapi: what tools/docs/package-lock.json names.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

mkdir -p "$VERNOXA_DEPS/asyncapi"
cp "$VERNOXA_ROOT"/tools/docs/package.json "$VERNOXA_ROOT"/tools/docs/package-lock.json "$VERNOXA_DEPS/asyncapi"
cd "$VERNOXA_DEPS/asyncapi"
npm ci --engine-strict --ignore-scripts --no-audit --no-fund --omit-lockfile-registry-resolved
