# Sourced by ./run, ./test and the other commands: makes a machine ready to build the project, and stands in the
# project's root.
# shellcheck shell=bash

cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/.." || exit

# What a build needs beyond Debian's and Ubuntu's base system. qtbase5-dev brings Qt's test library and, with
# libqt5gui5, the offscreen platform; DejaVu has the Cyrillic letters that a minimal system cannot draw.
packages=(g++ cmake ninja-build qtbase5-dev fonts-dejavu-core)

# Progress goes to the error output, which leaves the standard output to what a script is asked for.
say() {
    printf '== %s\n' "$*" >&2
}

stop() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# True on the systems whose packages are known to build the project.
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

# Packages come unasked for and without their recommendations; another package manager at work is waited for.
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
    say "Refreshing the lists of packages"
    apt_get update || stop "the lists of packages cannot be refreshed"
    say "Installing ${missing[*]}, which may take some minutes"
    apt_get install -y --no-install-recommends "${missing[@]}" || stop "cannot install: ${missing[*]}"
}

# True when CMake, Ninja, a compiler and Qt are here, wherever they come from: CMake itself has to find them.
can_build() {
    command -v cmake >/dev/null || return 1
    local probe found=0
    probe=$(mktemp -d)
    cat >"$probe/CMakeLists.txt" <<'PROBE'
cmake_minimum_required(VERSION 3.25)
project(probe LANGUAGES CXX)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Test)
PROBE
    cmake -G Ninja -S "$probe" -B "$probe/build" >/dev/null 2>&1 || found=1
    rm -rf -- "$probe"
    return "$found"
}

# Makes sure that the project can be built, or stops.
prepare_machine() {
    if is_known_system; then
        install_missing
    else
        say "Neither Debian 12 nor Ubuntu 24.04: looking for CMake 3.25, Ninja, a C++ compiler and Qt 5.15"
        can_build || stop "some are missing. Install what these packages of Debian 12 hold: ${packages[*]}"
    fi
}

# Qt takes arguments and file names in the locale's encoding, and both are Russian here.
use_utf8() {
    [[ $(locale charmap 2>/dev/null) == UTF-8 ]] || export LC_ALL=C.UTF-8
}
