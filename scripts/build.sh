#!/usr/bin/env bash
# Configures (once) and builds Clipquill into build/; the runnable application folder is build/app.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${CLIPQUILL_BUILD_DIR:-$here/build}"
if [[ ! -f "$build/build.ninja" ]]; then
    cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >&2
fi
cmake --build "$build" -j "$(nproc)" >&2
