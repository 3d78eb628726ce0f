#!/bin/sh
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

set -eu

case ${1:-} in
    '') ;;
    -h | --help)
        cat <<'EOF'
Usage: scripts/render-diagrams.sh

Installs Graphviz if it is missing, and renders the diagrams of docs/ from their sources (*.dot) as SVG.
EOF
        exit 0
        ;;
    *)
        echo "render-diagrams.sh takes no arguments (try --help)" >&2
        exit 2
        ;;
esac

cd "$(dirname "$0")/.."
# shellcheck source=scripts/dependencies.sh
. scripts/dependencies.sh
# shellcheck disable=SC2086 # a list of packages
install_packages $diagram_packages
cd docs
for source in *.dot; do
    dot -Tsvg -o "${source%.dot}.svg" "$source"
done
