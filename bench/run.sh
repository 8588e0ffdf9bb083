#!/usr/bin/env bash
# Builds the benchmarks, makes their drawings and prints the figures.
#
#   bench/run.sh              10 thousand, 100 thousand and a million entities
#   bench/run.sh 1000 5000    other sizes
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/prepare.sh

sizes=("$@")
(($#)) || sizes=(10000 100000 1000000)

install_missing
configure bench build-bench
cmake --build build-bench -j "$(jobs)" --target files_bench editor_bench text_command_bench engine_bench \
  text_tools_bench dimension_styles_bench system_variables_bench render_bench vekadpaint

folder=build-bench/drawings
mkdir -p "$folder"
drawings=()
for size in "${sizes[@]}"; do
  [[ -f $folder/$size.dxf ]] || python3 bench/make_drawing.py "$size" "$folder/$size.dxf"
  drawings+=("$folder/$size.dxf")
done

for program in files_bench editor_bench text_command_bench engine_bench render_bench; do
  "build-bench/vekad/$program" "${drawings[@]}"
  echo
done

# These make what they work on themselves.
for program in text_tools_bench dimension_styles_bench system_variables_bench; do
  "build-bench/vekad/$program"
  echo
done
