#!/usr/bin/env bash
# Installs the Debian packages of deps/debian-packages.txt that are not installed yet.
# Quiet and quick when nothing is missing; uses sudo when not run as root.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
mapfile -t wanted < <(grep -v -E '^\s*(#|$)' "$here/deps/debian-packages.txt")
missing=()
for pkg in "${wanted[@]}"; do
    status="$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)"
    [[ "$status" == "install ok installed" ]] || missing+=("$pkg")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0
echo "Installing: ${missing[*]}" >&2
as_root=()
if [[ "$(id -u)" -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "Missing Debian packages: ${missing[*]}" >&2
        echo "Run this command as root, or install sudo, to install them." >&2
        exit 1
    fi
    as_root=(sudo)
fi
"${as_root[@]}" apt-get update -q
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
