#!/bin/bash
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -euo pipefail

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOT'
Usage: scripts/test-packages.sh

Builds the Debian packages from the files of this checkout and checks them with
lintian. As root, it also installs them with apt, runs the tests in
debian/tests, purges the packages, and checks that no file is left.
EOT
        exit 0
        ;;
    *)
        echo "test-packages.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")/.."
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
# shellcheck disable=SC2086 # lists of packages
install_packages $build_packages $package_packages

fail() {
    echo "test-packages.sh: $1" >&2
    exit 1
}

# quietly COMMAND...: prints the output of COMMAND only if it fails.
quietly() {
    "$@" > "$work/log" 2>&1 || { tail -n 60 "$work/log" >&2; fail "$1 failed"; }
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

echo "dpkg-buildpackage"
mkdir "$work/source"
git ls-files -z | tar -c --null -T - | tar -x -C "$work/source"
(cd "$work/source" && quietly dpkg-buildpackage --no-sign --build=binary --jobs=auto)

echo "lintian"
as_user=()
[ "$(id -u)" -ne 0 ] || as_user=(--allow-root)
lintian "${as_user[@]}" --fail-on error,warning "$work"/*.changes

if [ "$(id -u)" -ne 0 ]; then
    echo "Only root can install the packages; debian/tests were not run"
    exit 0
fi

packages=(loomwright loomwright-gui loomwright-dev)
[ -z "$(dpkg-query --show "${packages[@]}" 2> /dev/null)" ] \
    || fail "a package of Loomwright is installed already"
installed_files() {
    find /usr /etc /var/lib -iname '*loomwright*' -not -path '/var/lib/dpkg/*' | sort
}
installed_files > "$work/before"
trap 'apt-get purge -y "${packages[@]}" > /dev/null 2>&1 || true; rm -rf "$work"' EXIT
quietly apt-get install -y --no-install-recommends "$work"/{loomwright,loomwright-gui,loomwright-dev}_*.deb
for test in command-line gui host; do
    echo "debian/tests/$test"
    mkdir "$work/$test"
    AUTOPKGTEST_TMP=$work/$test quietly "debian/tests/$test"
done

echo "purge"
quietly apt-get purge -y "${packages[@]}"
installed_files | diff "$work/before" - || fail "apt-get purge leaves files behind"
