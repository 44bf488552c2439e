# shellcheck shell=bash disable=SC2034
# How ./test runs the suite under sanitizers; sourced after common.sh.

# The preset of the sanitizers in a list.
sanitizer_preset() {
    case $1 in
        address) say asan ;;
        undefined) say ubsan ;;
        thread) say tsan ;;
        address,undefined | undefined,address) say asan-ubsan ;;
        *) return 1 ;;
    esac
}

# The sanitizer's runtime that belongs to the compiler: Node itself is not linked to one, so it is preloaded.
sanitizer_runtime() {
    local name file
    case $1 in
        address) name=libasan.so ;;
        undefined) name=libubsan.so ;;
        thread) name=libtsan.so ;;
    esac
    file=$(g++ -print-file-name="$name")
    [[ $file == /* ]] || die "the compiler has no $name: install the g++ that Debian has"
    say "$file"
}

# sanitize LIST FOLDER: what is started with "${instruments[@]}" in front, and all its children, run under the
# sanitizers. Reports are written to files in the folder, so that none is lost with the output of a child.
sanitize() {
    local list=$1 folder=$2 preload='' name common
    mkdir -p "$folder"
    for name in ${list//,/ }; do
        preload+=${preload:+:}$(sanitizer_runtime "$name")
    done
    # Their notes of the thread-locals of loaded libraries give sizes that are none, on which they crash now and then.
    common=log_path=$folder/report:intercept_tls_get_addr=0
    instruments=(env "LD_PRELOAD=$preload" GAMEAPI_TEST_PATIENCE=4
        "ASAN_OPTIONS=$common:detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1"
        "LSAN_OPTIONS=suppressions=$PWD/tests/suppressions/leaks.supp:print_suppressions=0"
        "UBSAN_OPTIONS=$common:print_stacktrace=1:exitcode=66"
        # Node and V8 are not compiled for it: what they do to memory is not looked at, their locks are.
        "TSAN_OPTIONS=$common:ignore_noninstrumented_modules=1:exitcode=66:atexit_sleep_ms=50")
    # It wants its addresses where many kernels would not put them.
    if [[ $list == thread ]] && setarch "$(uname -m)" -R true 2>/dev/null; then
        instruments=(setarch "$(uname -m)" -R "${instruments[@]}")
    fi
}

# Shows the reports in a folder of results; fails if there are any. Beside AddressSanitizer's runtime the one for
# undefined behaviour does not write files, so its lines are looked for in what the runners printed.
no_reports() {
    local files=("$1"/reports/report.*) logs=("$1"/*.log "$1"/*.tap) lines=()
    ((${#files[@]} == 0)) || head -n 60 "${files[@]}"
    ((${#logs[@]} == 0)) || mapfile -t lines < <(grep -h ': runtime error: ' "${logs[@]}")
    ((${#lines[@]} == 0)) || printf '%s\n' "${lines[@]}"
    say "$((${#files[@]} + ${#lines[@]})) sanitizer reports"
    ((${#files[@]} + ${#lines[@]} == 0))
}
