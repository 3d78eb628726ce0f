#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOF'
Usage: scripts/render-drawings.sh

Installs Graphviz and rsvg-convert if they are missing. Renders the diagrams of
docs/ from their sources (*.dot) as SVG, and the icon as PNG.
EOF
        exit 0
        ;;
    *)
        echo "render-drawings.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")/.."
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $drawing_packages
rsvg-convert --width 48 --height 48 --output host/window/loomwright.png host/window/loomwright.svg
cd docs
for source in *.dot; do
    dot -Tsvg -o "${source%.dot}.svg" "$source"
done
