#!/usr/bin/env bash
# Takes the pictures of the dialogs in docs/screenshots, each by the script of its name beside it.
#
#   tools/screenshots.sh [NAME...]    all of them, or those named
#
# They are taken at twice the usual scale, SCALE=1 for another one, on a virtual screen of Xvfb's; without xvfb-run
# off-screen, where the screen is small and large dialogs are squeezed.
set -euo pipefail
cd "$(dirname "$0")/.."
vekad=$PWD/build/vekad/vekad
blank=$PWD/samples/blank.dxf
export QT_SCALE_FACTOR=${SCALE:-2}
screen=()
if command -v xvfb-run >/dev/null; then
  export VEKAD_QT_PLATFORM=xcb
  screen=(xvfb-run -a -s "-screen 0 3840x2160x24")
fi
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
  if "${screen[@]}" "$vekad" run "$blank" --dry-run --profile "$profile" -s "$name.scr" >"$profile/said" 2>&1 && [ -s "$name.png" ]; then
    echo "$name.png"
  else
    echo "$name: no picture" >&2
    cat "$profile/said" >&2
    status=1
  fi
done
exit $status
