#!/usr/bin/env bash
# Builds the program and runs the text tools on the sample plan: what is typed, what is said, and what has changed.
set -euo pipefail
cd "$(dirname "$0")"
source tools/prepare.sh

install_missing
configure default build
cmake --build build -j "$(jobs)"

out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
echo
echo "--- What is typed (samples/plan_tools.scr)"
cat samples/plan_tools.scr
echo
echo "--- What is said"
status=0
build/vekad/vekad run samples/plan.dxf -s samples/plan_tools.scr -o "$out/plan.dxf" --profile "$out/profile" \
  --json --transcript "$out/transcript" >"$out/report.json" || status=$?
cat "$out/transcript"
echo
echo "--- What has changed, object by object"
python3 tools/show_changes.py samples/plan.dxf "$out/plan.dxf" "$out/report.json"
exit "$status"
