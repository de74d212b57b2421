#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (CTest over GoogleTest) with no display:
# widgets on the offscreen platform, sound through a private PulseAudio server.
# With --sanitize as first argument, builds with AddressSanitizer and UndefinedBehaviorSanitizer
# into build-sanitize/ (clang 14) and fails on any report of theirs (scripts/sanitize.sh).
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
sanitize=0
if [[ "${1:-}" == "--sanitize" ]]; then
    sanitize=1
    shift
fi
"$here/scripts/install-deps.sh"
if ((sanitize)); then
    CQ_SANITIZE_HERE="$here"
    source "$here/scripts/sanitize.sh"
    build="${CLIPQUILL_SANITIZE_BUILD_DIR:-$here/build-sanitize}"
    cq_sanitize_environment "$build"
    cq_sanitize_build "$build"
else
    build="${CLIPQUILL_BUILD_DIR:-$here/build}"
    "$here/scripts/build.sh"
fi
source "$here/scripts/test-audio-env.sh"
cq_audio_start
trap cq_audio_stop EXIT
export QT_QPA_PLATFORM=offscreen
if ((!sanitize)); then
    ctest --test-dir "$build" --output-on-failure -j "$(nproc)" "$@"
    exit
fi
status=0
ctest --test-dir "$build" --output-on-failure -j "$(nproc)" "$@" || status=$?
cq_sanitize_reports || status=1
exit "$status"
