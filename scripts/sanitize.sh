# shellcheck shell=bash disable=SC2034
# Lets ./test run the tests under sanitizers. Sourced after common.sh.

# sanitizer_preset LIST: prints the preset for these sanitizers. Fails if there is none.
sanitizer_preset() {
    case $1 in
        address) say asan ;;
        undefined) say ubsan ;;
        thread) say tsan ;;
        address,undefined | undefined,address) say asan-ubsan ;;
        *) return 1 ;;
    esac
}

# sanitizer_runtime NAME: prints the path of the compiler's runtime library for this sanitizer. The library is
# preloaded, because Node itself is not linked with it.
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

# sanitize LIST FOLDER: sets `instruments` to a command prefix that runs a program and all its children under the
# sanitizers. Reports are written to files in the folder, so that none is lost with the output of a child.
sanitize() {
    local list=$1 folder=$2 preload='' name common
    mkdir -p "$folder"
    for name in ${list//,/ }; do
        preload+=${preload:+:}$(sanitizer_runtime "$name")
    done
    # intercept_tls_get_addr=0 stops the sanitizers from tracking the thread-local storage of loaded libraries: they
    # record invalid sizes for it, and sometimes crash on them.
    common="log_path='$folder/report':intercept_tls_get_addr=0"
    instruments=(env "LD_PRELOAD=$preload" GAMEAPI_TEST_PATIENCE=4
        "ASAN_OPTIONS=$common:detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1"
        "LSAN_OPTIONS=suppressions='$PWD/tests/suppressions/leaks.supp':print_suppressions=0"
        "UBSAN_OPTIONS=$common:print_stacktrace=1:exitcode=66"
        # Node and V8 are not instrumented: their memory accesses are ignored, but not their locks.
        "TSAN_OPTIONS=$common:ignore_noninstrumented_modules=1:exitcode=66:atexit_sleep_ms=50")
    # ThreadSanitizer does not work with the address space randomisation of many kernels, so it is turned off.
    if [[ $list == thread ]] && setarch "$(uname -m)" -R true 2>/dev/null; then
        instruments=(setarch "$(uname -m)" -R "${instruments[@]}")
    fi
}

# no_reports FOLDER: shows the reports in a results folder; fails if there are any. When AddressSanitizer is loaded too,
# UndefinedBehaviorSanitizer writes no files, so its messages are searched for in the output of the runners.
no_reports() {
    local files=("$1"/reports/report.*) logs=("$1"/*.log "$1"/*.tap) lines=()
    ((${#files[@]} == 0)) || head -n 60 "${files[@]}"
    ((${#logs[@]} == 0)) || mapfile -t lines < <(grep -h ': runtime error: ' "${logs[@]}")
    ((${#lines[@]} == 0)) || printf '%s\n' "${lines[@]}"
    say "$((${#files[@]} + ${#lines[@]})) sanitizer reports"
    ((${#files[@]} + ${#lines[@]} == 0))
}
