# Sourced by scripts/test.sh --sanitize: the build with AddressSanitizer and
# UndefinedBehaviorSanitizer in build-sanitize/, and the options every instrumented program of the
# run inherits, the studio and Emailer started by the tests included.

cq_sanitize_fail() {
    echo "test.sh --sanitize: $*" >&2
    exit 1
}

# The run needs clang 14 and its sanitizer runtime; without them it fails rather than test less.
cq_sanitize_check_tools() {
    local tool probe
    for tool in clang-14 clang++-14; do
        command -v "$tool" >/dev/null ||
            cq_sanitize_fail "$tool is missing; install the Debian packages clang-14 and libclang-rt-14-dev."
    done
    probe="$(mktemp -d)"
    if ! echo 'int main() { return 0; }' |
        clang++-14 -x c++ -fsanitize=address,undefined -o "$probe/probe" - 2>"$probe/log"; then
        cat "$probe/log" >&2
        rm -rf "$probe"
        cq_sanitize_fail "clang++-14 cannot link a program with the sanitizers; install the Debian package libclang-rt-14-dev."
    fi
    rm -rf "$probe"
}

# Each report is written to a file of its own under CQ_SANITIZE_REPORTS, named after the program
# and its process id. A test sees a report in its own process (the program ends with exit code 86),
# but the studio and Emailer that a test starts may end with any code the test expects, and their
# stderr is often the test's to read: so the run also fails when any report file exists at its end.
cq_sanitize_environment() {
    local build="$1"
    export CQ_SANITIZE_REPORTS="$build/sanitizer-reports"
    rm -rf "$CQ_SANITIZE_REPORTS"
    mkdir -p "$CQ_SANITIZE_REPORTS"
    local common="halt_on_error=1:exitcode=86:log_path=$CQ_SANITIZE_REPORTS/report:log_exe_name=1"
    export ASAN_OPTIONS="$common:detect_leaks=1:abort_on_error=0:strict_string_checks=1:check_initialization_order=1:detect_stack_use_after_return=0"
    export UBSAN_OPTIONS="$common:print_stacktrace=1"
    export LSAN_OPTIONS="suppressions=$CQ_SANITIZE_HERE/tests/sanitizer-leaks.supp:print_suppressions=0"
}

# Configures build-sanitize/ once and builds it.
cq_sanitize_build() {
    local build="$1"
    cq_sanitize_check_tools
    if [[ ! -f "$build/build.ninja" ]]; then
        local launcher=()
        command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        cmake -S "$CQ_SANITIZE_HERE" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
            -DCMAKE_CXX_COMPILER=clang++-14 -DCLIPQUILL_SANITIZE=ON "${launcher[@]}" >&2
    fi
    CLIPQUILL_BUILD_DIR="$build" "$CQ_SANITIZE_HERE/scripts/build.sh"
}

# Prints every report the run left and fails when there is one.
cq_sanitize_reports() {
    local reports=("$CQ_SANITIZE_REPORTS"/report*)
    [[ -e "${reports[0]}" ]] || return 0
    local report
    for report in "${reports[@]}"; do
        echo "==== ${report##*/}" >&2
        cat "$report" >&2
    done
    echo "test.sh --sanitize: ${#reports[@]} sanitizer report(s), listed above." >&2
    return 1
}
