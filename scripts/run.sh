#!/usr/bin/env bash
# Installs what is missing, builds Vuro and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh release
exec build/release/src/vuro "$@"
