# shellcheck shell=bash disable=SC2034
# Shared by ./build, ./run, ./test and bench/run, which source it in the root folder of the project.

# GAMEAPI_BUILD selects a preset other than the default. device/index.js and index.js read it as well.
preset=${GAMEAPI_BUILD:-release}
out=out/$preset
logs=out/logs

# Debian packages, each with a command on PATH or a file that shows that it is installed, and with what it is. Node and
# its headers are not listed, because they may come from elsewhere; missing_needs looks for them.
build_needs=(
    'g++|g++|a C++17 compiler'
    'cmake|cmake|CMake 3.25'
    'ninja-build|ninja|Ninja'
    'libssl-dev|/usr/include/openssl/evp.h|the headers and the libcrypto of OpenSSL 3'
    'nlohmann-json3-dev|/usr/include/nlohmann/json.hpp|the headers of nlohmann JSON 3.11.2'
)
test_needs=(
    'git|git|git'
    'libgtest-dev|/usr/include/gtest/gtest.h|GoogleTest'
    'clang-format|clang-format|clang-format'
    'clang-tidy|clang-tidy|clang-tidy'
    'shellcheck|shellcheck|ShellCheck'
    'node-typescript|tsc|the TypeScript compiler'
    'generate-ninja|gn|GN'
)
coverage_needs=('gcovr|gcovr|gcovr')
bench_needs=(
    'libbenchmark-dev|/usr/include/benchmark/benchmark.h|Google Benchmark'
    'gnuplot-nox|gnuplot|gnuplot'
)
bench_targets=(bench_floors native_bench)
page_needs=('chromium|chromium|Chromium')
npm_needs=('npm|npm|npm')
clang_needs=('clang|clang++|clang')
libcxx_needs=(
    'libc++-dev|/usr/lib/llvm-*/include/c++/v1/vector|the headers of libc++'
    'libc++abi-dev|/usr/lib/llvm-*/lib/libc++abi.a|the static library of libc++abi'
)
device_needs=(
    "${clang_needs[@]}"
    "${libcxx_needs[0]}"
    'lld|ld.lld|the linker of LLVM'
    'libc6-dev-arm64-cross|/usr/aarch64-linux-gnu/include/stdio.h|the headers of the C library for 64-bit ARM'
)
arm64_needs=(
    'g++-aarch64-linux-gnu|aarch64-linux-gnu-g++|a cross-compiler for 64-bit ARM'
)
windows_needs=(
    'g++-mingw-w64-x86-64-posix|x86_64-w64-mingw32-g++-posix|a cross-compiler for 64-bit Windows'
)
wine_needs=(
    'wine|wine|Wine'
    'wine64|/usr/lib/wine/wine64|Wine for 64-bit programs'
)
qemu_needs=(
    'qemu-user|qemu-aarch64|the user mode emulator of QEMU'
    'libstdc++6:arm64|/usr/lib/aarch64-linux-gnu/libstdc++.so.6|the C++ library of GCC for 64-bit ARM'
    'libatomic1:arm64|/usr/lib/aarch64-linux-gnu/libatomic.so.1|the atomics library of GCC for 64-bit ARM'
)
case $preset in
    clang) build_needs+=("${clang_needs[@]}") ;;
    clang-libcxx) build_needs+=("${clang_needs[@]}" "${libcxx_needs[@]}") ;;
    device) build_needs+=("${device_needs[@]}") ;;
    arm64) build_needs+=("${arm64_needs[@]}") ;;
    windows) build_needs+=("${windows_needs[@]}") ;;
esac

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

# is_there COMMAND_OR_PATTERN: whether the command is on PATH, or a file matches the absolute pattern.
is_there() {
    command -v "$1" >/dev/null || { [[ $1 == /* ]] && compgen -G "$1" >/dev/null; }
}

# Prints the needs that are missing, one per line, and what is missing for Node.
missing_needs() {
    local need evidence headers=
    for need in "$@"; do
        IFS='|' read -r _ evidence _ <<<"$need"
        is_there "$evidence" || say "$need"
    done
    if ! is_there node; then
        say 'nodejs|node|Node.js 18'
    fi
    if ! headers=$(scripts/node-headers 2>/dev/null); then
        say 'libnode-dev||the headers of Node.js'
    fi
    if [[ ! -f $headers/uv.h && ! -f /usr/include/uv.h ]]; then
        say 'libuv1-dev||the headers of libuv'
    fi
}

# install_packages NEED...: installs the packages of the needs.
install_packages() {
    local packages=("${@%%|*}") whats
    if ! is_there apt-get; then
        printf -v whats '; %s' "${@##*|}"
        die "missing here: ${whats:2}"
    fi
    local by_hand="apt-get install --no-install-recommends ${packages[*]}"
    local as_root=(env)
    if ((EUID != 0)); then
        is_there sudo || die "packages are missing, and installing them needs root: $by_hand"
        as_root=(sudo env)
    fi
    say "Installing: ${packages[*]}"
    local apt=("${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=120)
    mkdir -p "$logs"
    if [[ ${packages[*]} == *:arm64* ]]; then
        "${as_root[@]}" dpkg --add-architecture arm64
    fi
    "${apt[@]}" update >"$logs/apt-update.log" 2>&1 </dev/null ||
        say "apt-get could not update its lists ($logs/apt-update.log tells why); trying with the old ones"
    quietly apt-install "the packages could not be had; is the network there? By hand: $by_hand" \
        "${apt[@]}" install --no-install-recommends "${packages[@]}"
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

# provide NEED...: installs the packages that are missing for Node and the needs.
provide() {
    local missing
    check_node 18 0
    mapfile -t missing < <(missing_needs "$@")
    if ((${#missing[@]} == 0)); then
        return
    fi
    install_packages "${missing[@]}"
    check_node 18 0
    mapfile -t missing < <(missing_needs "$@")
    ((${#missing[@]} == 0)) || die "still missing after the installation: ${missing[*]%%|*}"
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
        "${command[@]}" </dev/null 2>&1 | tee "$logs/build.log" |
            sed -u '/^ninja: no work/d; /Re-checking globbed/d' || die "the build failed"
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

# build_preset PRESET TARGET...: builds the targets of another preset.
build_preset() {
    local preset=$1 out=out/$1
    build "${@:2}"
}

# provide_packages: installs the npm packages of the lock file, unless they are there.
provide_packages() {
    if [[ node_modules/.package-lock.json -nt package-lock.json || ! -f package-lock.json ]]; then
        return
    fi
    say 'Installing the npm packages'
    quietly npm-ci 'npm could not install its packages; is the network there?' \
        npm ci --ignore-scripts --no-audit --no-fund
    touch node_modules/.package-lock.json
}
