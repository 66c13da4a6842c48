# Sourced by ./run, ./test and the other commands: changes to the project's root and provides functions that prepare the
# machine for a build.
# shellcheck shell=bash

cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit

# The packages for a build on a minimal Debian or Ubuntu. qtbase5-dev includes Qt Test and depends on libqt5gui5, which
# has the offscreen platform. DejaVu contains Cyrillic letters.
packages=(g++ cmake ninja-build qtbase5-dev libqt5svg5-dev qttranslations5-l10n fonts-dejavu-core)

# Progress goes to stderr; stdout is reserved for results.
say() {
    printf '== %s\n' "$*" >&2
}

stop() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# True on a system whose package names are known.
is_known_system() {
    [[ -r /etc/os-release ]] || return 1
    local system
    system=$(. /etc/os-release && printf '%s %s' "${ID:-}" "${VERSION_ID:-}")
    [[ $system == 'debian 12' || $system == 'ubuntu 24.04' ]]
}

is_installed() {
    [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null) == 'install ok installed' ]]
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

# Non-interactive; waits for the lock of another package manager.
apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@" >/dev/null
}

install_missing() {
    local package missing=()
    for package in "${packages[@]}"; do
        is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]} > 0)) || return 0
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        stop "these packages are missing, and there is no sudo to install them: ${missing[*]}"
    fi
    say "Updating the package lists"
    apt_get update || stop "cannot update the package lists"
    say "Installing ${missing[*]}, which can take some minutes"
    apt_get install -y --no-install-recommends "${missing[@]}" || stop "cannot install: ${missing[*]}"
}

# True if CMake finds Ninja, a compiler and Qt, wherever they are installed.
can_build() {
    command -v cmake >/dev/null || return 1
    local probe found=0
    probe=$(mktemp -d)
    cat >"$probe/CMakeLists.txt" <<'PROBE'
cmake_minimum_required(VERSION 3.25)
project(probe LANGUAGES CXX)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Svg Test)
PROBE
    cmake -G Ninja -S "$probe" -B "$probe/build" >/dev/null 2>&1 || found=1
    rm -rf -- "$probe"
    return "$found"
}

# Ensures that the project can be built, or exits with an error.
prepare_machine() {
    if is_known_system; then
        install_missing
    else
        say "Neither Debian 12 nor Ubuntu 24.04: looking for CMake 3.25, Ninja, a C++ compiler and Qt 5.15"
        can_build || stop "something is missing. Install the equivalents of these Debian 12 packages: ${packages[*]}"
    fi
}

# Qt decodes arguments and file names in the locale's encoding, and both contain Cyrillic letters here.
use_utf8() {
    [[ $(locale charmap 2>/dev/null) == UTF-8 ]] || export LC_ALL=C.UTF-8
}
