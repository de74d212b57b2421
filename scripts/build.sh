#!/usr/bin/env bash
# Configures (once) and builds Clipquill into build/; the runnable application folder is build/app.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${CLIPQUILL_BUILD_DIR:-$here/build}"
if [[ ! -f "$build/build.ninja" ]]; then
    # ccache, where installed, makes a fresh checkout's first build quick.
    launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >&2
fi
cmake --build "$build" -j "$(nproc)" >&2
