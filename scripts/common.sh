# Sourced by the scripts beside it: strict bash, the project's folder, missing packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Compilations are shared between build folders and clones.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR=1

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# install_packages GROUP...: installs what scripts/packages lists and the machine lacks.
install_packages() {
    local wanted missing=() package
    wanted=$(packages_of "$@")
    for package in $wanted; do
        is_installed "$package" || missing+=("$package")
    done
    [[ ${#missing[@]} -eq 0 ]] && return
    as_root "${missing[@]}"
}

packages_of() {
    local group line
    for group in "$@"; do
        while read -r line; do
            [[ $line == "$group:"* ]] && printf '%s\n' "${line#*:}"
        done <scripts/packages
    done
    return 0
}

is_installed() {
    [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null) == ii* ]]
}

# as_root PACKAGE...: installs them, with sudo when need be.
as_root() {
    local root=()
    if [[ $(id -u) -ne 0 ]]; then
        command -v sudo >/dev/null || fail "Please install as root: apt-get install $*"
        root=(sudo)
    fi
    command -v apt-get >/dev/null || fail "This machine has no apt-get. Packages needed: $*"
    say "Installing $*"
    "${root[@]}" apt-get update -qq -o Acquire::Retries=3 </dev/null
    # Another apt may be running on a machine that has just started.
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
        -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 \
        --no-install-recommends "$@" </dev/null >/dev/null
}

# The instrumented programs of g++ 12 want fewer random address bits than some kernels use.
fixed_addresses() {
    if setarch "$(uname -m)" --addr-no-randomize true 2>/dev/null; then
        setarch "$(uname -m)" --addr-no-randomize "$@"
    else
        "$@"
    fi
}

# build PRESET [ARGUMENT...]: configures and builds; further arguments go to the build.
build() {
    local preset=$1 log
    shift
    mkdir -p build
    log=build/configure-$preset.log
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log"; fail "cmake --preset $preset failed"; }
    cmake --build --preset "$preset" --parallel "$(nproc)" "$@"
}
