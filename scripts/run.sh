#!/usr/bin/env bash
# Installs what is missing, builds, and starts the studio. Extra arguments go to the studio.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/install-deps.sh"
"$here/scripts/build.sh"
exec "${CLIPQUILL_BUILD_DIR:-$here/build}/app/clipquill" "$@"
