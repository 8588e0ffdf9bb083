#!/usr/bin/env bash
# Builds everything and runs every test. Installs what is missing. Fails when anything fails.
#
#   ./test.sh             the whole run
#   ./test.sh sanitize    the same with the address and undefined sanitizers
set -euo pipefail
cd "$(dirname "$0")"
source tools/prepare.sh

preset=${1:-default}
case $preset in
  default) folder=build ;;
  debug | sanitize) folder=build-$preset ;;
  *) echo "usage: ./test.sh [default|debug|sanitize]" >&2; exit 2 ;;
esac

install_missing
python3 tools/check_floors.py
configure "$preset" "$folder"
cmake --build "$folder" -j "$(jobs)"

[[ $preset != sanitize ]] || export LSAN_OPTIONS="suppressions=$PWD/tests/leaks_of_libraries.txt:print_suppressions=0"
results=$folder/test-results.log
status=0
# The folder of each run's temporary files outlives the run; those of the tests go with them.
export TMPDIR=$(mktemp -d -t vekad-tests-XXXXXX)
chmod 755 "$TMPDIR"
trap 'rm -rf "$TMPDIR"' EXIT
ctest --test-dir "$folder" --output-on-failure --no-tests=error -j "$(jobs)" | tee "$results" || status=$?
grep -E 'tests passed|No tests' "$results" | tail -n 1
exit "$status"
