# shellcheck shell=bash
# What ./run, ./test and .ci/run share. Sourced with `root` set to the project's folder; never
# changes the caller's working directory.
: "${root:?}"

say() { printf '%s\n' "$*" >&2; }

# wanted_packages KIND...: what packages.txt lists under these kinds.
wanted_packages() {
    local kind
    for kind in "$@"; do
        sed -n "s/^$kind  *//p" "$root/packages.txt"
    done
}

# missing_packages KIND...: those of them that are not installed.
missing_packages() {
    local wanted
    wanted=$(wanted_packages "$@" | sort -u)
    # It fails when it does not know a name at all: that one is missing as well.
    # shellcheck disable=SC2086
    { dpkg-query -W -f='${db:Status-Status} ${Package}\n' $wanted 2>/dev/null || true; } |
        sed -n 's/^installed //p' | sort -u | comm -13 - <(printf '%s\n' "$wanted")
}

# logged LOG COMMAND...: runs quietly; shows the end of the output if the command fails.
logged() {
    local log=$1
    shift
    if ! "$@" >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        return 1
    fi
}

apt() {
    local as=(env DEBIAN_FRONTEND=noninteractive)
    [ "$(id -u)" -eq 0 ] || as=(sudo "${as[@]}")
    "${as[@]}" apt-get -qq -o DPkg::Lock::Timeout=300 "$@"
}

# apt_install PACKAGE...: lists that are missing or out of date are fetched, and it is tried again.
apt_install() {
    apt install -y --no-install-recommends "$@" ||
        { apt update && apt install -y --no-install-recommends "$@"; }
}

# The sound server's package asks whether it may change the machine's real-time limits: it may not.
answer_package_questions() {
    local as=()
    [ "$(id -u)" -eq 0 ] || as=(sudo)
    echo 'jackd2 jackd/tweak_rt_limits boolean false' | "${as[@]}" debconf-set-selections
}

# install_packages KIND...: installs what is missing, if anything is.
install_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        [ -e "$root/build/release/build.ninja" ] ||
            say "This is not Debian: if the build fails, install what $root/packages.txt lists."
        return 0
    fi
    local missing
    missing=$(missing_packages "$@" | paste -sd' ' -)
    [ -n "$missing" ] || return 0
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        say "Packages are missing; as root, run: apt-get install --no-install-recommends $missing"
        return 1
    fi
    say "Installing packages: $missing"
    mkdir -p "$root/build"
    case " $missing " in
    *" jackd2 "*) answer_package_questions || return ;;
    esac
    # shellcheck disable=SC2086
    logged "$root/build/packages.log" apt_install $missing ||
        { say "These packages could not be installed: $missing"; return 1; }
}

# install_peers: programs of others that tests play with, if this machine can have them; without
# them those tests are skipped.
install_peers() {
    local folder=$root/build/peers
    command -v npm >/dev/null && command -v node >/dev/null || return 0
    ! cmp -s "$root/tests/peers/package-lock.json" "$folder/installed" || return 0
    mkdir -p "$folder"
    cp "$root/tests/peers/"package*.json "$folder/"
    # Not "npm ci": an optional package that runs on one old system only is not in the list.
    if (cd "$folder" && npm install --no-save --omit=optional --ignore-scripts --no-audit \
        --no-fund --fetch-retries=1 --fetch-timeout=20000) >"$folder/npm.log" 2>&1; then
        cp "$root/tests/peers/package-lock.json" "$folder/installed"
    else
        say "No network peers of others could be installed (see $folder/npm.log): their tests are skipped."
    fi
}

# configure PRESET on|keep: sets the build folder up if it is not. "on" has the tests built too,
# "keep" leaves them as they are: without, in a folder that is new.
configure() {
    local preset=$1 tests=$2
    local folder=$root/build/$preset options=()
    if [ "$tests" = on ]; then
        options=(-DOMBRIX_TESTS=ON)
        grep -qs '^OMBRIX_TESTS:BOOL=ON$' "$folder/CMakeCache.txt" || rm -f "$folder/configured"
    elif [ ! -e "$folder/CMakeCache.txt" ]; then
        options=(-DOMBRIX_TESTS=OFF)
    fi
    if [ -e "$folder/build.ninja" ] && [ -e "$folder/configured" ] &&
        [ ! "$root/CMakePresets.json" -nt "$folder/configured" ]; then
        return 0
    fi
    mkdir -p "$folder"
    (cd "$root" && logged "$folder/configure.log" cmake --preset "$preset" "${options[@]}") ||
        { say "The build could not be set up."; return 1; }
    touch "$folder/configured"
}

# build PRESET on|keep [TARGET...]: one build of a folder at a time, whoever asks.
build() {
    local preset=$1 tests=$2
    local folder=$root/build/$preset
    shift 2
    mkdir -p "$folder"
    (
        flock 9
        configure "$preset" "$tests" || exit 1
        logged "$folder/build.log" ninja -C "$folder" "$@" || { say "The build failed."; exit 1; }
    ) 9>"$folder/lock"
}

# run_tests PRESET [ARGUMENT...]: prints failures and ctest's closing lines; with arguments, what
# ctest prints. The folder of one room of tests can stand for PRESET: release/tests/engine.
run_tests() {
    local folder=$root/build/$1
    local ctest=(ctest --test-dir "$folder" -j2 --output-on-failure --no-tests=error)
    shift
    if [ $# -gt 0 ]; then
        "${ctest[@]}" "$@"
        return
    fi
    if "${ctest[@]}" >"$folder/tests.log" 2>&1; then
        sed -n '/tests passed/,$p' "$folder/tests.log"
        return
    fi
    grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed |^ *Start +[0-9]+:' "$folder/tests.log"
    return 1
}
