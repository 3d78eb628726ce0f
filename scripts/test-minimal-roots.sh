#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

all_suites="bookworm trixie"
# Other users cannot enter /root, and a script that does not quote fails at the space.
checkout="/root/a checkout"
status_of_skipped=77

case ${1:-} in
    -h | --help)
        cat <<EOF2
Usage: scripts/test-minimal-roots.sh [SUITE...]

For each Debian SUITE ($all_suites): makes a minimal root with debootstrap,
clones the last commit into "$checkout" there, runs ./run.sh and ./test.sh, and
removes the root. Packages come from the mirror of this machine's apt, in the
same way. Exits with $status_of_skipped where this is impossible.
EOF2
        exit 0
        ;;
esac

skip() {
    echo "$1"
    exit $status_of_skipped
}

cd "$(dirname "$0")/.."
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
[ "$(id -u)" -eq 0 ] || skip "only root can make a root directory"
# Mounts and processes end with it, whatever happens.
in_namespace="unshare --mount --pid --fork --kill-child"
$in_namespace true || skip "there are no namespaces"
# shellcheck disable=SC2086 # a list of packages
install_packages $root_packages || skip "debootstrap cannot be installed"
apt-get update > /dev/null
# shellcheck disable=SC2016 # expanded by apt-get
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' \
    | head -n 1)
[ -n "$mirror" ] || skip "apt has no mirror of Debian"

directory=$(mktemp -d -p "${TMPDIR:-/var/tmp}")
trap 'rm -rf "$directory"' EXIT
trap 'exit 1' HUP INT TERM

# make_root SUITE ROOT: a minimal Debian with this machine's way to the mirror, and the checkout.
make_root() {
    $in_namespace debootstrap --variant=minbase "$1" "$2" "$mirror"
    apt-config dump --no-empty --format '%F "%v";%n' Acquire \
        | grep -E '^Acquire::(https?:|Check-)' > "$2/etc/apt/apt.conf.d/machine" || true
    echo force-unsafe-io > "$2/etc/dpkg/dpkg.cfg.d/fast"
    for file in /etc/hosts /etc/resolv.conf /etc/ssl/certs/ca-certificates.crt; do
        [ ! -f "$file" ] || install -D -m 644 "$file" "$2$file"
    done
    git clone --quiet --no-hardlinks . "$2$checkout"
}

# run_in_root ROOT COMMAND: runs COMMAND in the checkout, with nothing of this machine's environment
# but its proxies.
run_in_root() {
    # shellcheck disable=SC2016,SC2086 # expanded by the shells that are started; a list of words
    env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin ${http_proxy+"http_proxy=$http_proxy"} \
        ${https_proxy+"https_proxy=$https_proxy"} ${no_proxy+"no_proxy=$no_proxy"} \
        $in_namespace sh -euc '
            mount --rbind /dev "$0/dev"
            mount -t proc proc "$0/proc"
            exec chroot "$0" sh -c "cd \"\$0\" && exec \"\$1\"" "$@"' "$1" "$checkout" "$2"
}

# timed WHAT COMMAND...: runs COMMAND and prints how long it took.
timed() {
    what=$1 begin=$(date +%s)
    shift
    "$@"
    echo "$what: $(($(date +%s) - begin)) s"
}

# shellcheck disable=SC2086 # a list of names
[ $# -gt 0 ] || set -- $all_suites
for suite in "$@"; do
    root=$directory/$suite
    timed "$suite: the root" make_root "$suite" "$root"
    timed "$suite: ./run.sh" run_in_root "$root" ./run.sh
    timed "$suite: ./test.sh" run_in_root "$root" ./test.sh
    rm -rf "$root"
done
