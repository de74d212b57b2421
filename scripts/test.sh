#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (CTest over GoogleTest) with no display:
# widgets on the offscreen platform, sound through a private PulseAudio server.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$here/scripts/install-deps.sh"
"$here/scripts/build.sh"
source "$here/scripts/test-audio-env.sh"
cq_audio_start
trap cq_audio_stop EXIT
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "${CLIPQUILL_BUILD_DIR:-$here/build}" --output-on-failure -j "$(nproc)" "$@"
