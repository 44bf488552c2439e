# shellcheck shell=bash disable=SC2034
# Lets ./test run the JS tests with other versions of Node, and for other systems. Sourced after common.sh.

newest_node=26 # the newest version that the module is tested with

# fetch_node MAJOR SYSTEM FOLDER: puts the newest Node of a major version into a folder, as bin/node or bin/node.exe.
# SYSTEM is that of the npm package, such as linux-x64.
fetch_node() {
    local package=node-$2@$1
    say "Fetching $package"
    rm -rf "$3.new"
    mkdir -p "$3.new"
    quietly npm-pack "npm could not fetch $package; is the network there, and is there such a version?" \
        npm pack --silent --pack-destination "$3.new" "$package"
    tar -xzf "$3.new"/*.tgz -C "$3.new" --strip-components=1 package/bin
    rm "$3.new"/*.tgz
    mv "$3.new" "$3"
}

# emulate FOLDER: makes a command `node` that runs the folder's Node in QEMU, also where Node starts itself.
emulate() {
    printf '#!/bin/sh\nexec qemu-aarch64 "%s/bin/node" "$@"\n' "$1" >"$1/node"
    printf 'process.execPath = %s;\n' "'$1/node'" >"$1/exec-path.cjs"
    chmod +x "$1/node"
}

# start_wine FOLDER: makes a command `node` that runs the folder's Node in Wine, which passes for Windows 10. A Node
# there cannot write to a pipe of this system, so its output comes when it has ended.
start_wine() {
    export WINEPREFIX=$PWD/out/wine WINEDEBUG=-all
    if [[ ! -d $WINEPREFIX ]]; then
        quietly wine 'Wine could not be set up' wine wineboot --init
        quietly wine 'Wine could not be set up' wine reg add 'HKCU\Software\Wine' /v Version /d win10 /f
    fi
    cat >"$1/node" <<END
#!/bin/sh
wine "$1/bin/node.exe" "\$@" >"$1/output" 2>&1 </dev/null
status=\$?
cat "$1/output"
exit \$status
END
    chmod +x "$1/node"
}

# use_node MAJOR SYSTEM: sets `instruments` to a command prefix that runs a program with this Node on PATH, and
# `node_version`. Fetches the Node if it is not there.
use_node() {
    local folder=$PWD/out/node/$1-$2
    [[ -x $folder/bin/node || -f $folder/bin/node.exe ]] || fetch_node "$1" "$2" "$folder"
    instruments=(env "PATH=$folder:$PATH")
    case $2 in
        "linux-$(node -p process.arch)")
            instruments=(env "PATH=$folder/bin:$PATH")
            ;;
        win-x64)
            start_wine "$folder"
            time_limit=1800
            instruments+=(GAMEAPI_TEST_PATIENCE=8)
            ;;
        *)
            emulate "$folder"
            time_limit=1800
            instruments+=("NODE_OPTIONS=--require=$folder/exec-path.cjs" GAMEAPI_TEST_PATIENCE=8)
            ;;
    esac
    node_version=$("${instruments[@]}" node --version) || die "Node $1 for $2 does not start here"
}
