#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '' | --install) ;;
    -h | --help)
        cat <<'EOF'
Usage: scripts/test-packages.sh [--install]

Builds the Debian packages, checks them with lintian, unpacks them and uses what they hold: the programs,
the manual pages, the completions, and the development files for examples/minimal-host.

  --install  also installs them with apt, does the same there, and removes them again (as root)
EOF
        exit 0
        ;;
    *)
        echo "test-packages.sh: unknown argument $1 (try --help)" >&2
        exit 2
        ;;
esac
installs=${1:-}

cd "$(dirname "$0")/.."
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
# shellcheck disable=SC2086 # lists of packages
install_packages $build_packages $test_packages $package_packages
build_preset package

fail() {
    echo "test-packages.sh: $1" >&2
    exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM
cpack --preset package > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
packages=$(sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$work/log")
version=$(build-package/loomwright --version | cut -d ' ' -f 2)

echo "lintian"
as_user=
[ "$(id -u)" -ne 0 ] || as_user=--allow-root
# shellcheck disable=SC2086 # a list of packages and an option that may be empty
lintian $as_user --fail-on error,warning $packages

root=$work/root
for package in $packages; do
    dpkg-deb --extract "$package" "$root"
done

# use_programs PREFIX: uses the programs installed in PREFIX.
use_programs() {
    prefix=$1
    use=$work/use
    rm -rf "$use"
    mkdir "$use"
    documentation=$prefix/share/doc
    stitcher_path=$documentation/loomwright/examples:$PATH

    "$prefix/bin/loomwright" info > "$use/info"
    grep -q "^File .*$prefix/lib/.*/loomwright/libunsigned-zorv.so.1\$" "$use/info" \
        || fail "the installed plug-in is not the one that is loaded: $(cat "$use/info")"
    "$documentation/loomwright/examples/make-sample.sh" "$use/sample"
    PATH=$stitcher_path "$prefix/bin/loomwright" -q -d "$use/sample" build -o "$use/image.bin" \
        > "$use/log" 2>&1 || { cat "$use/log" >&2; fail "the sample was not built"; }
    # timeout exits with 124 if the window was still open.
    gui_status=0
    timeout 5 xvfb-run -a "$prefix/bin/loomwright-gui" "$use/sample" > "$use/log" 2>&1 \
        || gui_status=$?
    [ "$gui_status" -eq 124 ] || { cat "$use/log" >&2; fail "loomwright-gui exited with $gui_status"; }

    scripts/test-host-example.sh "$prefix" > /dev/null
    plugin_directory=$(PKG_CONFIG_PATH=$(dirname "$prefix"/lib/*/pkgconfig/loomwright.pc) \
        pkg-config --define-variable=prefix="$prefix" --variable=plugindir loomwright)
    [ -f "$plugin_directory/libunsigned-zorv.so.1" ] || fail "pkg-config names $plugin_directory"
}

echo "The unpacked packages"
use_programs "$root/usr"
for program in bin/loomwright bin/loomwright-gui libexec/loomwright/tamblin-stitcher; do
    ! readelf --sections "$root/usr/$program" | grep -q '\.symtab' || fail "$program is not stripped"
done
# Required files that were not used above.
while read -r file; do
    [ -f "$root/usr/share/$file" ] || fail "no package has /usr/share/$file"
done <<'EOF'
applications/loomwright-gui.desktop
bash-completion/completions/loomwright
fish/vendor_completions.d/loomwright.fish
icons/hicolor/48x48/apps/loomwright.png
icons/hicolor/scalable/apps/loomwright.svg
man/man1/loomwright-gui.1.gz
man/man1/loomwright.1.gz
man/man5/loomwright-project.5.gz
mime/packages/loomwright.xml
metainfo/com.loomwright.Loomwright.metainfo.xml
zsh/vendor-completions/_loomwright
EOF

echo "The manual pages"
for page in "$root"/usr/share/man/man*/*.gz; do
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' man --warnings --local-file "$page" 2>&1 > "$work/page")
    [ -z "$warnings" ] || fail "$page: $warnings"
    grep -q "Loomwright $version" "$work/page" || fail "$page is not of version $version"
done
# The manual page must list exactly the options of the program.
long_options() {
    grep -oE '(^|[ ,])--[a-z][-a-z]*' | tr -d ' ,' | sort -u
}
XDG_RUNTIME_DIR=$work "$root/usr/bin/loomwright-gui" --help | long_options > "$work/help"
zcat "$root/usr/share/man/man1/loomwright-gui.1.gz" | sed 's/\\f[BIR]//g; s/\\//g' | long_options \
    > "$work/page"
diff "$work/help" "$work/page" || fail "loomwright-gui(1) and --help name different options"

echo "Desktop entry and metadata"
desktop-file-validate "$root"/usr/share/applications/*.desktop
appstreamcli validate --no-net "$root"/usr/share/metainfo/*.xml > "$work/log" || { cat "$work/log" >&2; exit 1; }

[ -n "$installs" ] || exit 0
echo "The installed packages"
find /usr /etc /var/lib -iname '*loomwright*' -not -path '/var/lib/dpkg/*' | sort > "$work/before"
# shellcheck disable=SC2086 # a list of packages
apt-get install -y --no-install-recommends $packages > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
use_programs /usr
# A login shell loads the completion automatically.
# shellcheck disable=SC2016 # expanded by the shell that is started
[ -z "$(command -v loomwright)" ] || bash --norc -c '
    . /usr/share/bash-completion/bash_completion
    _completion_loader loomwright
    complete -p loomwright' > /dev/null || fail "bash does not find the completion"
apt-get purge -y loomwright loomwright-dev > "$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
find /usr /etc /var/lib -iname '*loomwright*' -not -path '/var/lib/dpkg/*' | sort | diff "$work/before" - \
    || fail "apt purge leaves files behind"
