# shellcheck shell=bash
# What the scripts share. Sourced from the root of the tree.

# The cache's own limit of 5 GB is too small for the five builds.
if [ "$(ccache --get-config max_size 2>/dev/null)" = 5.0G ]; then export CCACHE_MAXSIZE=15G; fi
jobs=$(nproc)

# configureAndBuild PRESET TARGET [cmake arguments]: quiet when all is well, the compiler's words when not.
configureAndBuild() {
    local preset=$1 target=$2 log=build/$1/build.log began=$SECONDS
    shift 2
    mkdir -p "build/$preset"
    printf 'configuring %s\n' "$preset"
    if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
        tail -n 30 "$log"
        return 1
    fi
    printf 'building %s\n' "$preset"
    if ! cmake --build "build/$preset" --target "$target" -j "$jobs" -- -k 10 >"$log" 2>&1; then
        grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking|Generating)|^ninja: |Scanning' "$log" | head -n 120
        return 1
    fi
    # Warnings are not errors in every preset, but they are never hidden.
    grep -E -A 5 'warning:' "$log" | head -n 60
    printf 'built in %d s\n' $((SECONDS - began))
}

# runTests PRESET [ctest arguments]: the whole log goes to build/PRESET/test.log, failures, what was skipped and the sum to
# the screen and build/PRESET/counts. So does the digest over all results that have to be the same on every platform, which
# is kept in build/PRESET/digest.
runTests() {
    local preset=$1 log=build/$1/test.log digest=build/$1/digest counts=build/$1/counts result
    shift
    rm -f "$digest"
    ctest --preset "$preset" -j "$jobs" --no-tests=error "$@" </dev/null >"$log" 2>&1
    result=$?
    if [ $result -ne 0 ]; then
        grep -vE '^ *Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test .* Passed |^\[ RUN      \] |^\[       OK \] |^\[-{10}\] ' "$log" | head -n 400
    fi
    scripts/count_tests.py "build/$preset" >"$counts"
    head -n 60 "$counts"
    # More than one line is left only when the emulated old processor has another digest.
    grep '^same bits: digest ' "build/$preset/Testing/Temporary/LastTest.log" 2>/dev/null | sort -u >"$digest"
    if [ -s "$digest" ]; then cat "$digest"; else rm -f "$digest"; fi
    return $result
}

# inEmulatorNamespace COMMAND...: runs it where the kernel knows the emulator for 64-bit ARM. It is registered in a user and
# mount namespace of the run's own, with all ids mapped, so that nothing of the machine changes. Takes root.
inEmulatorNamespace() {
    local go child
    go=$(mktemp -u) && mkfifo "$go" || return 1
    unshare --user --mount bash -c '
        read -r word <"$1" && [ "$word" = go ] || exit 125
        shift
        exec setpriv --reuid 0 --regid 0 --clear-groups bash scripts/aarch64-register.sh "$@"' bash "$go" "$@" &
    child=$!
    # The namespace is there when its child waits at the pipe.
    (
        for _ in $(seq 100); do
            [ "$(readlink /proc/$child/ns/user)" = "$(readlink /proc/self/ns/user)" ] || break
            sleep 0.05
        done
        if echo '0 0 4294967295' >/proc/$child/uid_map && echo '0 0 4294967295' >/proc/$child/gid_map; then echo go; else echo no; fi >"$go"
    ) 2>/dev/null
    wait $child
    local status=$?
    rm -f "$go"
    return $status
}

# packageMirror: the address of the archive from which this machine's own apt takes its packages; other releases and
# architectures come from the same one.
packageMirror() {
    apt-get indextargets --format '$(REPO_URI) $(COMPONENT)' 'Created-By: Packages' |
        awk '$2 == "main" && $1 ~ /\/debian\/?$/ && !found { print $1; found = 1 } END { exit !found }'
}

# installedKilobytes DIRECTORY: what is in it as dpkg counts it, files in whole KiB and one for each of the others. The size
# of a directory is another on each file system, and would be another in each package.
installedKilobytes() {
    find "$1" -printf '%y %s\n' | awk '{ sum += $1 == "f" ? int(($2 + 1023) / 1024) : 1 } END { print sum }'
}
