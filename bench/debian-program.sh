# Sourced by the benchmark scripts. debian_program PACKAGE [PATH] prints the path of a Debian program
# (/usr/games/PACKAGE unless PATH is given), or fails naming the package to install.
debian_program() {
    local path="${2:-/usr/games/$1}"
    [ -x "$path" ] || { echo "$path is missing: run scripts/setup, or install the Debian package $1" >&2; return 1; }
    echo "$path"
}
