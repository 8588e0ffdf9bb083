#!/usr/bin/env bash
# Takes the pictures of the dialogs in docs/screenshots, each by the script of its name beside it.
#
#   tools/screenshots.sh [NAME...]    all of them, or those named; off-screen, at twice the usual scale
#
# SCALE=1 takes them at the usual scale; QT_QPA_PLATFORM=xcb, say under xvfb-run, as that platform draws them.
set -euo pipefail
cd "$(dirname "$0")/.."
vekad=$PWD/build/vekad/vekad
blank=$PWD/samples/blank.dxf
export QT_SCALE_FACTOR=${SCALE:-2}
profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
cd docs/screenshots

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  names=(*.scr)
fi
status=0
for name in "${names[@]}"; do
  name=${name%.scr}
  rm -f "$name.png"
  if "$vekad" run "$blank" --dry-run --profile "$profile" -s "$name.scr" >"$profile/said" 2>&1 && [ -s "$name.png" ]; then
    echo "$name.png"
  else
    echo "$name: no picture" >&2
    cat "$profile/said" >&2
    status=1
  fi
done
exit $status
