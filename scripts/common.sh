# Shared by the scripts of this tree; to be sourced with `root` set to the top of it.

# Installs the packages of the named groups of packages.txt that are missing, if any.
install_missing() {
    if ! command -v dpkg-query >/dev/null 2>&1; then
        echo "Not a Debian system: taking it that what scripts/packages.txt lists is there." >&2
        return 0
    fi
    wanted=$(for group in "$@"; do
        awk -v group="[$group]" '/^#/ || /^$/ { next } /^\[/ { within = ($0 == group); next } within' \
            "$root/scripts/packages.txt"
    done)
    missing=
    for package in $wanted; do
        case $(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) in
            "install ok installed") ;;
            *) missing="$missing $package" ;;
        esac
    done
    if [ -z "$missing" ]; then
        return 0
    fi
    echo "Installing:$missing"
    if [ "$(id -u)" -eq 0 ]; then
        as_root=
    elif command -v sudo >/dev/null 2>&1; then
        as_root=sudo
    else
        echo "These packages are missing, and neither root nor sudo is at hand to install them:$missing" >&2
        return 1
    fi
    # The words of $missing and an empty $as_root are meant to be split.
    # shellcheck disable=SC2086
    $as_root apt-get update -q &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
}

# configure_and_build PRESET [-DOPTION=VALUE ...] [-- TARGET ...]
configure_and_build() {
    preset=$1
    shift
    options=
    while [ $# -gt 0 ] && [ "$1" != "--" ]; do
        options="$options $1"
        shift
    done
    [ $# -gt 0 ] && shift
    # shellcheck disable=SC2086
    (cd "$root" && cmake --preset "$preset" --log-level=WARNING $options) || return
    if [ $# -gt 0 ]; then
        cmake --build "$root/build/$preset" --target "$@"
    else
        cmake --build "$root/build/$preset"
    fi
}
