#!/usr/bin/env bash
# Builds the Debian package and takes it apart. One case per call:
#   deb-test.sh build CPACK BUILD_DIR
#   deb-test.sh CASE
# The environment names the package folder (CQ_DEB_DIR), the version, the desktop id and the
# installed application folder relative to /usr. Exit 77 means skipped (a tool is missing).
set -euo pipefail

fail() {
    echo "FAIL: $*" >&2
    exit 1
}
skip() {
    echo "SKIP: $*" >&2
    exit 77
}
need_tool() {
    command -v "$1" >/dev/null || skip "$1 is not installed (Debian package $2)"
}

arch() { dpkg --print-architecture; }
deb_file() { echo "$CQ_DEB_DIR/clipquill_${CQ_VERSION}_$(arch).deb"; }

need_deb() {
    need_tool dpkg-deb dpkg
    [[ -f "$(deb_file)" ]] || fail "$(deb_file) was not built"
}

scratch=""
cleanup() {
    [[ -z "$scratch" ]] && return
    chmod -R u+w "$scratch" 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanup EXIT
make_scratch() {
    scratch="$(mktemp -d "${TMPDIR:-/tmp}/clipquill-deb-XXXXXX")"
}

# Unpacks the package into $scratch/root, as dpkg would lay it out under /.
extract() {
    make_scratch
    dpkg-deb -x "$(deb_file)" "$scratch/root"
    root="$scratch/root"
    app="$root/usr/$CQ_INSTALL_APP_DIR"
}

expect_file() { [[ -f "$1" && ! -L "$1" ]] || fail "missing file ${1#"$root"}"; }
expect_program() { [[ -f "$1" && -x "$1" ]] || fail "missing program ${1#"$root"}"; }
expect_link() {
    [[ -L "$1" ]] || fail "${1#"$root"} is not a link"
    [[ "$(readlink "$1")" == "$2" ]] || fail "${1#"$root"} points to $(readlink "$1"), not $2"
}

case_build() {
    local cpack="$1" build="$2"
    need_tool dpkg-deb dpkg
    need_tool dpkg-shlibdeps dpkg-dev
    rm -rf "$CQ_DEB_DIR"
    "$cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$CQ_DEB_DIR" >"$CQ_DEB_DIR.log" 2>&1 ||
        { cat "$CQ_DEB_DIR.log" >&2; fail "cpack failed"; }
    local made
    made="$(cd "$CQ_DEB_DIR" && ls -- *.deb)"
    [[ "$made" == "$(basename "$(deb_file)")" ]] || fail "cpack made \"$made\", not $(deb_file)"
    local field value
    for field in "Package=clipquill" "Version=$CQ_VERSION" "Architecture=$(arch)" "Section=video"; do
        value="$(dpkg-deb -f "$(deb_file)" "${field%%=*}")"
        [[ "$value" == "${field#*=}" ]] ||
            fail "control field ${field%%=*} is \"$value\", not \"${field#*=}\""
    done
    [[ -n "$(dpkg-deb -f "$(deb_file)" Maintainer)" ]] || fail "no Maintainer"
    # A synopsis line, then a long text that does not begin by repeating it.
    local description
    mapfile -t description < <(dpkg-deb -f "$(deb_file)" Description | sed -E 's/^ +//')
    [[ "${#description[@]}" -gt 2 ]] || fail "the Description has no long text"
    [[ "${description[1]}" != "${description[0]}" ]] || fail "the Description repeats its synopsis"
}

case_HoldsTheStudioItsFoldersAndDesktopFiles() {
    need_deb
    extract
    # The command on PATH must reach the studio from wherever the package is unpacked.
    [[ -L "$root/usr/bin/clipquill" ]] || fail "usr/bin/clipquill is not a link"
    [[ "$(readlink "$root/usr/bin/clipquill")" != /* ]] ||
        fail "usr/bin/clipquill points to the absolute $(readlink "$root/usr/bin/clipquill")"
    [[ "$(realpath "$root/usr/bin/clipquill")" == "$(realpath "$app/clipquill")" ]] ||
        fail "usr/bin/clipquill does not lead to $CQ_INSTALL_APP_DIR/clipquill"
    expect_program "$app/clipquill"
    # The studio looks for its mail companion next to itself.
    expect_program "$app/Emailer"
    expect_file "$app/System/MMSServerList.txt"
    expect_file "$app/SystemMedia/Black.jpg"
    expect_file "$app/SystemMedia/HarrowfinSplashScreen.JPG"
    expect_file "$app/SystemMedia/Help.html"
    [[ -d "$app/SystemMediaGen" ]] || fail "missing folder SystemMediaGen"
    # The tool links must name the tools of the declared ffmpeg and imagemagick packages, not
    # wherever the build machine happened to have them.
    local tool
    for tool in ffmpeg ffprobe convert; do
        expect_link "$app/System/$tool" "../../../bin/$tool"
    done
    expect_file "$root/usr/share/doc/clipquill/copyright"
    expect_file "$root/usr/share/doc/clipquill/changelog.gz"
    expect_file "$root/usr/share/man/man1/clipquill.1.gz"
    grep -q "<project_license>GPL-3.0-or-later</project_license>" \
        "$root/usr/share/metainfo/$CQ_APP_ID.metainfo.xml" || fail "the metainfo names no licence"

    expect_file "$root/usr/share/applications/$CQ_APP_ID.desktop"
    expect_file "$root/usr/share/metainfo/$CQ_APP_ID.metainfo.xml"
    expect_file "$root/usr/share/icons/hicolor/scalable/apps/clipquill.svg"
    grep -qx "Exec=clipquill" "$root/usr/share/applications/$CQ_APP_ID.desktop" ||
        fail "the desktop entry does not start the clipquill command"
    grep -qx "Icon=clipquill" "$root/usr/share/applications/$CQ_APP_ID.desktop" ||
        fail "the desktop entry does not name the installed icon"
    grep -q "<release version=\"$CQ_VERSION\"" "$root/usr/share/metainfo/$CQ_APP_ID.metainfo.xml" ||
        fail "the metainfo does not list release $CQ_VERSION"

    # Only the studio's own files: no build or test leftovers, nothing outside /usr.
    local top
    top="$(cd "$root" && find . -mindepth 1 -maxdepth 2 | sort | tr '\n' ' ')"
    [[ "$top" == "./usr ./usr/bin ./usr/lib ./usr/share " ]] || fail "unexpected top folders: $top"
    local stray
    stray="$(cd "$root" && find . -name '*.a' -o -name '*.h' -o -name '*.cmake' -o -name '*_tests')"
    [[ -z "$stray" ]] || fail "build files in the package: $stray"
    # The build's debug information stays out of the package.
    if command -v file >/dev/null; then
        file -L "$app/clipquill" "$app/Emailer" | grep -q "not stripped" &&
            fail "the programs are not stripped"
    fi
    local owners
    owners="$(dpkg-deb -c "$(deb_file)" | awk '{print $2}' | sort -u)"
    [[ "$owners" == "root/root" ]] || fail "files not owned by root: $owners"
    return 0
}

case_DeclaresLibrariesAndTools() {
    need_deb
    local depends
    depends="$(dpkg-deb -f "$(deb_file)" Depends)"
    echo "Depends: $depends"
    mapfile -t names < <(echo "$depends" | tr ',' '\n' | sed -E 's/^ +//; s/ .*//')
    has() {
        local n
        for n in "${names[@]}"; do [[ "$n" == "$1" ]] && return 0; done
        return 1
    }
    # Found by dpkg-shlibdeps in the programs: a versioned dependency on every Qt library.
    local lib
    for lib in libqt6core6 libqt6gui6 libqt6widgets6 libqt6multimedia6 libqt6texttospeech6 libc6; do
        has "$lib" || fail "Depends lacks $lib"
        local versioned="$lib \\(>= [^)]+\\)"
        [[ "$depends" =~ $versioned ]] || fail "Depends names $lib without a version"
    done
    # Started or loaded at run time, never linked.
    local tool
    for tool in ffmpeg imagemagick xdg-utils qt6-speech-flite-plugin qt6-image-formats-plugins \
        fonts-liberation pocketsphinx-en-us; do
        has "$tool" || fail "Depends lacks $tool"
    done
    # Every name must be a real package of this distribution, or the package cannot be installed.
    local name
    for name in "${names[@]}"; do
        dpkg-query -W "$name" >/dev/null 2>&1 ||
            apt-cache show "$name" >/dev/null 2>&1 || fail "no Debian package is called $name"
    done
}

case_DesktopEntryAndMetainfoValidate() {
    need_deb
    need_tool desktop-file-validate desktop-file-utils
    need_tool appstreamcli appstream
    extract
    local desktop="$root/usr/share/applications/$CQ_APP_ID.desktop"
    local metainfo="$root/usr/share/metainfo/$CQ_APP_ID.metainfo.xml"
    local report
    report="$(desktop-file-validate "$desktop" 2>&1)" || fail "desktop-file-validate: $report"
    [[ -z "$report" ]] || fail "desktop-file-validate: $report"
    appstreamcli validate --no-net "$metainfo" || fail "appstreamcli rejects the metainfo"
    # The software centre opens the application through this entry.
    grep -q "<launchable type=\"desktop-id\">$CQ_APP_ID.desktop</launchable>" "$metainfo" ||
        fail "the metainfo does not launch $CQ_APP_ID.desktop"
    grep -q "<id>$CQ_APP_ID</id>" "$metainfo" || fail "the metainfo's id is not $CQ_APP_ID"
}

# What Debian's archive checks would say of the package: not a single error or warning, and no
# overrides to hide one.
case_PassesLintian() {
    need_deb
    command -v lintian >/dev/null || fail "lintian is not installed (Debian package lintian)"
    local report rc=0
    report="$(lintian --fail-on error,warning --no-tag-display-limit "$(deb_file)" 2>&1)" || rc=$?
    echo "$report"
    [[ "$rc" -eq 0 ]] || fail "lintian exited $rc"
    grep -qE '^[EW]: ' <<<"$report" && fail "lintian reports errors or warnings"
    extract
    [[ ! -e "$root/usr/share/lintian/overrides" ]] || fail "the package overrides lintian"
    return 0
}

# Runs the unpacked command as a user who cannot write the installation: root writes anywhere,
# so as root the run switches to the user nobody; an ordinary user gets a tree without write
# permission on its folders (the files stay readable and keep their modes, as dpkg installs them).
case_ChecksFromAReadOnlyInstallation() {
    need_deb
    extract
    # The declared packages' tools, where an installation finds them beside the studio.
    local tool
    for tool in ffmpeg ffprobe convert; do
        ln -s "/usr/bin/$tool" "$root/usr/bin/$tool"
    done
    local home="$scratch/home" runtime="$scratch/runtime"
    mkdir -p "$home" "$runtime"
    chmod 700 "$runtime"
    local as_user=()
    if [[ "$(id -u)" -eq 0 ]]; then
        need_tool setpriv util-linux
        chmod 755 "$scratch"
        chown 65534:65534 "$home" "$runtime"
        as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    else
        find "$root" -type d -exec chmod a-w {} +
    fi
    local before
    before="$(cd "$root" && find . | sort)"

    local out="$scratch/out.txt" err="$scratch/err.txt" rc=0
    # No sound server of the caller: the check must not depend on one, nor start one.
    "${as_user[@]}" env -i PATH=/usr/bin:/bin HOME="$home" XDG_RUNTIME_DIR="$runtime" \
        LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen PULSE_SERVER="unix:$runtime/no-sound-server" \
        "$root/usr/bin/clipquill" --check >"$out" 2>"$err" || rc=$?
    cat "$out"
    [[ "$rc" -eq 0 ]] || { cat "$err" >&2; fail "clipquill --check exited $rc"; }

    local data="$home/.local/share/Clipquill"
    grep -qx "gstrFFMPEGFileSpec=$data/System/ffmpeg" "$out" ||
        fail "the studio does not work in $data"
    grep -qx "gstrTempFilesDirectory=$data/ClipquillTempFiles" "$out" ||
        fail "the work folder is not under $data"
    grep -q "^problem:" "$out" && fail "the check reports problems"
    grep -q "^ffmpeg: usable" "$out" || fail "ffmpeg is not usable"
    grep -q "^convert: usable" "$out" || fail "ImageMagick is not usable"
    grep -q "^speech voice: " "$out" || fail "no finding for the speech voice"

    # The data folder got the installation's folders, and what the user changes there is theirs.
    [[ -d "$data/ClipquillTempFiles" ]] || fail "no work folder in $data"
    [[ -f "$data/System/TTS.txt" ]] || fail "no text list written in $data"
    [[ -f "$data/SystemMedia/Black.jpg" ]] || fail "SystemMedia was not copied into $data"
    local carriers="$data/System/MMSServerList.txt"
    [[ -f "$carriers" ]] || fail "System was not copied into $data"
    "${as_user[@]}" test -w "$carriers" || fail "the copied carrier list cannot be extended"
    [[ "$(readlink -f "$data/System/ffmpeg")" == "$(readlink -f /usr/bin/ffmpeg)" ]] ||
        fail "the copied ffmpeg link points to $(readlink "$data/System/ffmpeg")"

    [[ "$(cd "$root" && find . | sort)" == "$before" ]] || fail "the installation was changed"
}

what="$1"
shift
case "$what" in
build) case_build "$@" ;;
*)
    declare -F "case_$what" >/dev/null || fail "no case $what"
    "case_$what" "$@"
    ;;
esac
