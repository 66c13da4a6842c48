# Sourced by tools/windows/build: builds Qt for Windows from Debian's source packages into a cache outside the checkout.
# shellcheck shell=bash

qt_version=5.15.8
qt_sources=(qtbase-opensource-src qtsvg-opensource-src)
target=x86_64-w64-mingw32
cache=${XDG_CACHE_HOME:-$HOME/.cache}/importplugin/windows
built_qt=$cache/qt

# The compiled files of both modules, host tools included; only for the progress shown.
qt_objects=1380

qt_options=(
    -xplatform win32-g++ -device-option "CROSS_COMPILE=$target-" -opensource -confirm-license
    -release -shared -nomake examples -nomake tests -no-pch
    -no-opengl -no-dbus -no-icu -no-ssl -no-directwrite
    -no-feature-sql -no-feature-network -no-feature-printer -no-feature-tabletevent -no-feature-vulkan
    -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz -qt-pcre -qt-doubleconversion)

# Identifies a build: Qt, compiler and options. A build with another stamp is discarded.
qt_stamp() {
    local compiler
    compiler="$("$target-g++" -dumpfullversion) $(dpkg-query -W -f='${Version}' mingw-w64-x86-64-dev)"
    printf '%s\n' "Qt $qt_version" "$compiler" "${qt_options[@]}"
}

has_stamp() {
    [[ -f $1/stamp ]] && cmp -s "$1/stamp" <(qt_stamp)
}

# apt-get with package lists of its own, so that the machine's sources need no deb-src. They have the machine's mirrors.
source_apt_get() {
    apt-get -qq -o Dir::Etc::SourceList="$cache/apt/sources.list" -o Dir::Etc::SourceParts=- \
        -o Dir::State::Lists="$cache/apt/lists" -o Dir::Cache="$cache/apt/cache" -o APT::Sandbox::User=root "$@"
}

# shellcheck disable=SC2016 # apt-get replaces the names
debian_mirrors() {
    apt-get indextargets --format '$(REPO_URI) $(RELEASE)' 'Created-By: Packages' 'Origin: Debian' | sort -u
}

update_source_lists() {
    local mirrors
    mirrors=$(debian_mirrors)
    if [[ -z $mirrors ]]; then # without package lists apt-get does not know which sources are Debian's
        apt_get update || stop "cannot update the package lists"
        mirrors=$(debian_mirrors)
    fi
    mkdir -p "$cache"/apt/{lists,cache}/partial "$cache/apt/cache/archives/partial"
    sed 's|^|deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] |; s|$| main|' <<<"$mirrors" \
        >"$cache/apt/sources.list"
    source_apt_get update
}

# Unpacks a source package with Debian's patches to src/<name>.
fetch_source() {
    local name=$1 folder
    [[ ! -d $cache/src/$name ]] || return 0
    say "Fetching the source package $name"
    [[ -d $cache/apt/lists/partial ]] || update_source_lists || stop "cannot update the lists of source packages"
    rm -rf -- "$cache"/src/fetch.*
    folder=$(mktemp -d "$cache/src/fetch.XXXXXX")
    (cd "$folder" && source_apt_get source --download-only "$name") >&2 || stop "cannot fetch $name"
    compgen -G "$folder/${name}_${qt_version}[-+]*.dsc" >/dev/null ||
        stop "the Debian sources do not have Qt $qt_version"
    (cd "$folder" && dpkg-source --no-check -x ./*.dsc source) >>"$cache/log" 2>&1 ||
        stop "cannot unpack $name, see $cache/log"
    mv "$folder/source" "$cache/src/$name"
    mv "$folder"/*.dsc "$cache/src/$name.dsc"
    rm -rf -- "$folder"
}

# Runs a command with its output in the log, and shows the number of compiled files each minute.
run_logged() {
    "$@" >>"$cache/log" 2>&1 &
    local process=$! seconds=0
    while kill -0 "$process" 2>/dev/null; do
        sleep 1
        ((++seconds % 60 != 0)) || say "  $(find "$cache/build" -name '*.o' | wc -l) of about $qt_objects files"
    done
    wait "$process" || stop "failed: $*. The last lines of $cache/log:
$(tail -n 15 "$cache/log")"
}

in_folder() {
    cd -- "$1" && "${@:2}"
}

configure_qtbase() {
    local build=$cache/build/qtbase
    [[ ! -f $build/configured ]] || return 0
    say "Configuring Qt"
    rm -rf -- "$build"
    mkdir -p "$build"
    run_logged in_folder "$build" "$cache/src/qtbase-opensource-src/configure" -prefix "$built_qt" "${qt_options[@]}"
    touch "$build/configured"
}

configure_qtsvg() {
    mkdir -p "$cache/build/qtsvg"
    run_logged in_folder "$cache/build/qtsvg" "$built_qt/bin/qmake" "$cache/src/qtsvg-opensource-src/qtsvg.pro"
}

# make continues where an interrupted build ended.
make_module() {
    say "Building $1"
    run_logged nice -n 5 make -C "$cache/build/$1" -j"$(nproc)"
    run_logged make -C "$cache/build/$1" install
}

# What the licences of Qt require beside its DLLs: their texts, and where the sources come from.
add_licenses() {
    local name folder=$built_qt/licenses sources=("${qt_sources[@]/#/$cache/src/}")
    sources=("${sources[@]/%/.dsc}")
    mkdir -p "$folder"
    for name in "${qt_sources[@]}"; do
        cp "$cache/src/$name/debian/copyright" "$folder/$name.txt"
    done
    cp "$cache"/src/qtbase-opensource-src/LICENSE.{LGPLv3,GPL3} "$folder"
    {
        printf 'The Qt libraries are built without changes from these source packages of Debian:\n\n'
        sed -n 's/^\(Source\|Version\): //p' "${sources[@]}"
        printf '\nconfigure'
        printf ' %s' "${qt_options[@]}"
        printf '\n'
    } >"$folder/README.txt"
}

discard_other_build() {
    has_stamp "$cache/build" && return
    rm -rf -- "$built_qt" "$cache/build" "$cache/src" "$cache/apt" "$cache/log"
    mkdir -p "$cache/build" "$cache/src"
    qt_stamp >"$cache/build/stamp"
}

# Leaves Qt in $built_qt.
build_qt() {
    ! has_stamp "$built_qt" || return 0
    say "Building Qt $qt_version in $cache, which takes about 25 minutes on 2 cores; the log is $cache/log"
    discard_other_build
    local name
    for name in "${qt_sources[@]}"; do
        fetch_source "$name"
    done
    configure_qtbase
    make_module qtbase
    configure_qtsvg
    make_module qtsvg
    add_licenses
    qt_stamp >"$built_qt/stamp"
}
