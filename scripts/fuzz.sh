#!/usr/bin/env bash
# Builds the fuzz harnesses of fuzz/ with clang-14, libFuzzer and the address and
# undefined-behaviour sanitizers into build-fuzz/, then runs every target for SECONDS (default 60),
# two at a time, on a scratch copy of its corpus and regressions. Exits non-zero when a target
# found a fault, naming the input that shows it (kept under build-fuzz/artifacts/TARGET/).
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
seconds="${1:-60}"
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: scripts/fuzz.sh [SECONDS]   (seconds per target, default 60)" >&2
    exit 2
fi
build="${CLIPQUILL_FUZZ_BUILD_DIR:-$here/build-fuzz}"
parallel="${CLIPQUILL_FUZZ_JOBS:-2}"

"$here/scripts/install-deps.sh"

fail() {
    echo "fuzz: $*" >&2
    exit 1
}
command -v clang++-14 >/dev/null || fail "clang++-14 is missing (Debian package clang-14)."
probe="$(mktemp -d)"
trap 'rm -rf "$probe"' EXIT
printf 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }\n' \
    >"$probe/probe.cpp"
clang++-14 -fsanitize=fuzzer,address,undefined "$probe/probe.cpp" -o "$probe/probe" 2>"$probe/log" ||
    fail "clang-14 cannot link a fuzzer; the libFuzzer runtime is missing (Debian package libclang-rt-14-dev):
$(cat "$probe/log")"

if [[ ! -f "$build/build.ninja" ]]; then
    launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_COMPILER=clang++-14 -DCLIPQUILL_FUZZ=ON "${launcher[@]}" >&2
fi
cmake --build "$build" --target cq_fuzz -j "$(nproc)" >&2

# name, harness, longest input (targets.txt is the one list of the targets).
mapfile -t targets < <(grep -E '^[a-z]' "$here/fuzz/targets.txt" | awk '{print $1 " " $3}')
runs="$build/fuzz-runs"
rm -rf "$runs" "$build/artifacts"
mkdir -p "$runs"

run_target() {
    local name="$1" max_len="$2"
    local corpus="$runs/$name/corpus" artifacts="$build/artifacts/$name"
    mkdir -p "$corpus" "$artifacts"
    # The repository's corpus stays as it is; what the run finds lands in the scratch copy.
    local from
    for from in "$here/fuzz/corpus/$name" "$here/fuzz/regressions/$name"; do
        if [[ -d "$from" ]]; then find "$from" -maxdepth 1 -type f -exec cp -t "$corpus" {} +; fi
    done
    local dict=()
    if [[ -f "$here/fuzz/dict/$name.dict" ]]; then dict=(-dict="$here/fuzz/dict/$name.dict"); fi
    local rc=0
    UBSAN_OPTIONS=print_stacktrace=1 "$build/fuzz/bin/fuzz_$name" "$corpus" "${dict[@]}" \
        -max_total_time="$seconds" -max_len="$max_len" -timeout=10 -rss_limit_mb=1024 \
        -artifact_prefix="$artifacts/" -print_final_stats=1 >"$runs/$name.log" 2>&1 || rc=$?
    echo "$rc" >"$runs/$name.rc"
}

echo "Fuzzing ${#targets[@]} targets for $seconds s each, $parallel at a time." >&2
for entry in "${targets[@]}"; do
    read -r name max_len <<<"$entry"
    while (($(jobs -rp | wc -l) >= parallel)); do
        wait -n || true
    done
    echo "  $name" >&2
    run_target "$name" "$max_len" &
done
wait

faults=0
printf '\n%-18s %12s %8s %8s  %s\n' target executions exec/s cov result
for entry in "${targets[@]}"; do
    read -r name _ <<<"$entry"
    log="$runs/$name.log"
    execs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)"
    rate="$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)"
    cov="$(grep -oE 'cov: [0-9]+' "$log" | tail -1 | cut -d' ' -f2)"
    found="$(find "$build/artifacts/$name" -type f | head -1)"
    result=ok
    if [[ "$(cat "$runs/$name.rc")" != 0 || -n "$found" ]]; then
        result="FAULT ${found:-(no input kept)}; log $log"
        faults=$((faults + 1))
    fi
    printf '%-18s %12s %8s %8s  %s\n' "$name" "${execs:--}" "${rate:--}" "${cov:--}" "$result"
done
if ((faults > 0)); then
    echo "fuzz: $faults target(s) found a fault. Fix it, and keep the input in" \
        "fuzz/regressions/TARGET/ so that the normal tests replay it." >&2
    exit 1
fi
