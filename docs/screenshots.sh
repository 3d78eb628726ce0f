#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'USAGE'
Usage: docs/screenshots.sh

Makes the pictures of the manual (docs/*.png) anew, without a display. It builds the release preset
and uses the directory /tmp/d1, whose name the pictures show; there must be none before.
USAGE
        exit 0
        ;;
    *)
        echo "screenshots.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")/.."
. scripts/dependencies.sh
# shellcheck disable=SC2086 # lists of packages
install_packages $build_packages $picture_packages
build_preset release
cmake --build --preset release --target loomwright-screenshots

directory=/tmp/d1
mkdir "$directory"
trap 'rm -rf "$directory"' EXIT
trap 'exit 1' HUP INT TERM
examples/make-sample.sh "$directory/drop"
examples/make-sample.sh --broken "$directory/broken"
mkdir "$directory/bin"
# Slow enough for a screenshot of a running build.
cat > "$directory/bin/tamblin-stitcher" <<SCRIPT
#!/bin/sh
sleep 3
exec "$PWD/examples/tamblin-stitcher" "\$@"
SCRIPT
chmod +x "$directory/bin/tamblin-stitcher"

repository=$PWD
# No settings and no recent files.
cd "$directory"
env -u LOOMWRIGHT_PLUGIN -u XDG_CONFIG_HOME HOME="$directory" PATH="$directory/bin:$PATH" \
    LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1 \
    "$repository/build/docs/loomwright-screenshots" "$repository/build/libunsigned-zorv.so.1" \
    "$directory/drop" "$directory/broken" "$repository/docs"
