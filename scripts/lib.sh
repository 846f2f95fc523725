# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034  # the scripts that source this use its variables
# Sourced by the other scripts: the tools and libraries that a build needs, and how to
# install those that are missing.

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# takes_no_arguments "$@": for a script without arguments. If any is given, prints the
# script's header and exits.
takes_no_arguments() {
    [ $# -eq 0 ] && return
    sed -n '5,/^set /s/^# \{0,1\}//p' "$0"
    [ "$1" = --help ] && exit
    exit 2
}

has_command() { command -v "$1" >/dev/null 2>&1; }

has_header() {
    has_command c++ &&
        printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$1" | c++ -E -x c++ - >/dev/null 2>&1
}

has_cmake() {
    local version
    version=$(cmake --version 2>/dev/null | sed -n '1s/[^0-9]*\([0-9.]*\).*/\1/p')
    [ -n "$version" ] && [ "$(printf '3.25\n%s\n' "$version" | sort -V | head -n 1)" = 3.25 ]
}

# True when the content of the Debian package is available, however it was installed.
has_package() {
    case $1 in
        g++) has_command c++ ;;
        cmake) has_cmake ;;
        ninja-build) has_command ninja ;;
        libxml2-dev) has_header libxml2/libxml/parser.h ;;
        libfmt-dev) has_header fmt/format.h ;;
        libcli11-dev) has_header CLI/CLI.hpp ;;
        libgtest-dev) has_header gtest/gtest.h ;;
        libgmock-dev) has_header gmock/gmock.h ;;
        libsimbody-dev) has_header simbody/Simbody.h ;;
        python3 | clang | clang-format | lld | doxygen) has_command "$1" ;;
        pkgconf) has_command pkg-config ;;
        clang-tidy) has_command clang-tidy && has_command run-clang-tidy ;;
        python3-* | pybind11-dev | mypy | libclang-rt-dev) dpkg -s "$1" >/dev/null 2>&1 ;;
        *) fail "has_package knows nothing of $1" ;;
    esac
}

# Prints the named packages that are missing.
missing_packages() {
    local package
    for package in "$@"; do
        has_package "$package" || echo "$package"
    done
}

# Installs the named Debian packages that are missing. On a system without apt-get,
# prints their names and exits.
install_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] && return

    has_command apt-get || fail "please install what these Debian packages hold, then try again: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        has_command sudo || fail "please run this as root, then try again: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    echo "== installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null </dev/null

    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] || fail "installed, but still not found: ${missing[*]}"
}

# Runs a command and prints its output only if it fails.
quietly() {
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# With a compiler cache, if it is installed, a second build tree costs little.
if has_command ccache; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
    # Without this, it does not cache sources that use precompiled headers.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS-pch_defines,time_macros}
fi
jobs=$(nproc 2>/dev/null || echo 2)

build_packages=(g++ cmake ninja-build libxml2-dev libfmt-dev libcli11-dev libgtest-dev libgmock-dev python3)
python_packages=(python3-dev python3-numpy python3-pip python3-setuptools python3-venv python3-wheel pybind11-dev)
python_test_packages=(python3-pytest python3-hypothesis python3-mpmath python3-scipy python3-matplotlib python3-distributed mypy)
check_packages=(clang clang-format clang-tidy libclang-rt-dev lld doxygen pkgconf libsimbody-dev)
