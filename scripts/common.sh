# shellcheck shell=bash disable=SC2034
# Shared by ./build, ./run, ./test and ./bench, which source it in the root folder of the project.

# GAMEAPI_BUILD selects a preset other than the default. device/index.js and index.js read it as well.
preset=${GAMEAPI_BUILD:-release}
out=out/$preset
logs=out/logs

# Debian packages, each with a command on PATH or a file that shows that it is installed. Node and its headers are not
# listed, because they may come from elsewhere; missing_packages looks for them.
build_needs=(
    'g++ g++'
    'cmake cmake'
    'ninja-build ninja'
    'libssl-dev /usr/include/openssl/evp.h'
    'nlohmann-json3-dev /usr/include/nlohmann/json.hpp'
)
test_needs=(
    'libgtest-dev /usr/include/gtest/gtest.h'
    'clang-format clang-format'
    'clang-tidy clang-tidy'
    'node-typescript tsc'
)
coverage_needs=('gcovr gcovr')
bench_needs=('libbenchmark-dev /usr/include/benchmark/benchmark.h')

say() {
    printf '%s\n' "$*"
}

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# quietly LOG COMPLAINT COMMAND...: runs the command with its output in a log. If the command fails, shows the end of
# the log and stops with the complaint.
quietly() {
    local log=$logs/$1.log complaint=$2
    shift 2
    mkdir -p "$logs"
    "$@" >"$log" 2>&1 </dev/null && return
    tail -n 40 "$log" >&2
    die "$complaint (the whole output is in $log)"
}

is_there() {
    command -v "$1" >/dev/null || [[ $1 == /* && -e $1 ]]
}

# Prints the packages that are missing for Node and the given needs, one per line.
missing_packages() {
    local need headers=
    for need in "$@"; do
        is_there "${need#* }" || say "${need% *}"
    done
    if ! is_there node; then
        say nodejs
    fi
    if ! headers=$(scripts/node-headers 2>/dev/null); then
        say libnode-dev
    fi
    if [[ ! -f $headers/uv.h && ! -f /usr/include/uv.h ]]; then
        say libuv1-dev
    fi
}

install_packages() {
    local by_hand="apt-get install --no-install-recommends $*"
    is_there apt-get || die "missing here, under the names that Debian gives them: $*"
    local as_root=(env)
    if ((EUID != 0)); then
        is_there sudo || die "packages are missing, and installing them needs root: $by_hand"
        as_root=(sudo env)
    fi
    say "Installing: $*"
    local apt=("${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=120)
    mkdir -p "$logs"
    "${apt[@]}" update >"$logs/apt-update.log" 2>&1 </dev/null ||
        say "apt-get could not update its lists ($logs/apt-update.log tells why); trying with the old ones"
    quietly apt-install "the packages could not be had; is the network there? By hand: $by_hand" \
        "${apt[@]}" install --no-install-recommends "$@"
    hash -r
}

# check_node MAJOR MINOR: stops if the Node on PATH is older than this version. Without a Node on PATH, does nothing.
check_node() {
    local version major minor
    is_there node || return 0
    version=$(node --version) || die "the Node on PATH does not start: $(command -v node)"
    IFS=. read -r major minor _ <<<"${version#v}"
    ((major > $1 || (major == $1 && minor >= $2))) ||
        die "Node $version is too old, $1.$2 or newer is needed: put one on PATH, or none, and Debian's is installed"
}

# Installs the packages that are missing for Node and the given needs.
provide() {
    local missing
    check_node 18 0
    mapfile -t missing < <(missing_packages "$@")
    if ((${#missing[@]} == 0)); then
        return
    fi
    install_packages "${missing[@]}"
    check_node 18 0
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]} == 0)) || die "still missing after the installation: ${missing[*]}"
}

is_configured_with() {
    grep -qsxF "$1" "$out/CMakeCache.txt"
}

# Configures the build with the given CMake options turned on, unless nothing would change.
configure() {
    local headers option is_new='' on=() fresh=()
    for option in "$@"; do
        on+=(-D "$option=ON")
        is_configured_with "$option:BOOL=ON" || is_new=yes
    done
    headers=$(scripts/node-headers)
    if ! is_configured_with "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" ||
        ! is_configured_with "NODE_INCLUDE_DIR:PATH=$headers"; then
        fresh=(--fresh)
    elif [[ -f $out/build.ninja && -z $is_new ]]; then
        return
    fi
    quietly configure "CMake could not configure the build" \
        cmake "${fresh[@]}" --preset "$preset" -D NODE_INCLUDE_DIR:PATH="$headers" "${on[@]}"
}

# compile TARGET...: builds the targets and shows CMake's output, which updates a single line on a terminal.
compile() {
    local command=(cmake --build "$out" --parallel "$(nproc)" --target "$@")
    if [[ -t 1 ]]; then
        "${command[@]}" </dev/null || die "the build failed"
    else
        mkdir -p "$logs"
        "${command[@]}" </dev/null 2>&1 | tee "$logs/build.log" | sed '/^ninja: no work/d; /Re-checking globbed/d' || die "the build failed"
    fi
}

# build TARGET...: builds the targets; "all" is what a game needs. In a read-only folder, uses the existing build.
build() {
    local options=()
    if [[ ! -w . ]]; then
        [[ -f $out/device.node ]] || die "nothing is built here, and the folder cannot be written to"
        say "Using what is built: the folder cannot be written to"
        return
    fi
    grep -qs "\"name\": \"$preset\"" CMakePresets.json || die "GAMEAPI_BUILD names no preset: $preset"
    [[ $* != *native_tests* ]] || options+=(BUILD_TESTING)
    [[ $* != *bench* ]] || options+=(BUILD_BENCHMARKS)
    say "Building $preset"
    mkdir -p out
    (
        flock 9
        configure "${options[@]}"
        compile "$@"
    ) 9>out/.lock
}
