# shellcheck shell=bash disable=SC2034
# Lets ./test run the JS tests with other versions of Node, and for another architecture. Sourced after common.sh.

newest_node=26 # the newest version that the module is tested with

# fetch_node MAJOR ARCH FOLDER: puts the newest Node of a major version into a folder, as bin/node.
fetch_node() {
    local package=node-linux-$2@$1
    say "Fetching $package"
    rm -rf "$3.new"
    mkdir -p "$3.new"
    quietly npm-pack "npm could not fetch $package; is the network there, and is there such a version?" \
        npm pack --silent --pack-destination "$3.new" "$package"
    tar -xzf "$3.new"/*.tgz -C "$3.new" --strip-components=1 package/bin/node
    rm "$3.new"/*.tgz
    mv "$3.new" "$3"
}

# emulate FOLDER: makes a command `node` that runs the folder's Node in QEMU, also where Node starts itself.
emulate() {
    printf '#!/bin/sh\nexec qemu-aarch64 "%s/bin/node" "$@"\n' "$1" >"$1/node"
    printf 'process.execPath = %s;\n' "'$1/node'" >"$1/exec-path.cjs"
    chmod +x "$1/node"
}

# use_node MAJOR ARCH: sets `instruments` to a command prefix that runs a program with this Node on PATH, and
# `node_version`. Fetches the Node if it is not there.
use_node() {
    local folder=$PWD/out/node/$1-$2
    [[ -x $folder/bin/node ]] || fetch_node "$1" "$2" "$folder"
    if [[ $2 == "$(node -p process.arch)" ]]; then
        instruments=(env "PATH=$folder/bin:$PATH")
    else
        emulate "$folder"
        time_limit=1800
        instruments=(env "PATH=$folder:$PATH" "NODE_OPTIONS=--require=$folder/exec-path.cjs" GAMEAPI_TEST_PATIENCE=8)
    fi
    node_version=$("${instruments[@]}" node --version) || die "Node $1 for $2 does not start here"
}
