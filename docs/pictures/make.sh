#!/usr/bin/env bash
# make.sh VEKAD [FOLDER]: makes the pictures of this folder anew, here or in another one: the plan of samples/ after one
# command each.
set -euo pipefail
vekad=$(realpath "$1")
here=$(dirname "$(realpath "$0")")
out=${2:-$here}
plan=$here/../../samples/plan.dxf
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
layout=Model

# What is picked is scripted by layer, name and place, so that every run gives the same picture.
picture() {
  local name=$1
  shift
  local arguments=()
  for line in "$@"; do arguments+=(-c "$line"); done
  "$vekad" run "$plan" "${arguments[@]}" -o "$work/$name.dxf" >"$work/$name.log" 2>&1 || { cat "$work/$name.log"; return 1; }
  "$vekad" render "$work/$name.dxf" "$out/$name.png" --size 800x500 --layout "$layout"
}

all_on() { echo "(ssget \"_X\" (quote ((8 . \"$1\"))))"; }
table='(ssname (ssget "_X" (quote ((2 . "TABLE")))) 0)'
tables='(ssget "_X" (quote ((2 . "TABLE"))))'
grid_b='(ssname (ssget "_X" (quote ((0 . "LINE") (8 . "GRID") (-4 . "=,*,*") (10 6000.0 0.0 0.0)))) 0)'
outer_wall='(ssname (ssget "_X" (quote ((0 . "LWPOLYLINE") (10 0.0 0.0)))) 0)'

"$vekad" render "$plan" "$out/plan.png" --size 800x500
picture move 'MOVE' "$table" '' '0,0' '500,-2800'
picture rotate 'ROTATE' "$tables" '' '6000,3500' '30'
picture offset 'OFFSET' '300' "$outer_wall" '6000,20000' ''
picture trim 'TRIM' "$grid_b" '' "(list $outer_wall (quote (12000.0 3000.0 0.0)))" ''
picture fillet 'FILLET' 'R' '1500' 'FILLET' 'P' "$outer_wall"
picture array '-ARRAY' "$table" '' 'R' '2' '1' '-2600'
picture stretch 'STRETCH' 'C' '13000,-600' '11000,9000' '' '0,0' '-1200,0'
picture explode 'EXPLODE' '(ssget "_X" (quote ((2 . "DOOR"))))' ''
picture insert '-INSERT' 'TABLE' '9500,6500' '1' '1' '0'
picture dimension-style '-DIMSTYLE' 'R' 'PLAN' 'DIMBLK' '.' 'DIMTSZ' '0' 'DIMASZ' '300' 'DIMTXT' '400' 'DIMTAD' '0' '-DIMSTYLE' 'S' 'PLAN' 'Y'
picture layer-off 'LAYOFF' "$table" 'X'
picture underline 'TXTULINE' '(ssget "_X" (quote ((0 . "TEXT") (8 . "ROOMS") (7 . "Labels"))))' ''
picture case '(answer "TCaseDialog" "upperBtn" "okBtn")' 'TCASE' "$(all_on ROOMS)" ''
picture one-text 'TXT2MTXT' '(ssget "_W" (quote (2000.0 6000.0)) (quote (5500.0 7500.0)))' ''
picture ucs 'UCS' 'Z' '30' 'RECTANG' '7500,1500' '9500,2500'
layout=Layout1
picture viewports 'TILEMODE' '0' 'MVIEW' '10,10' '150,190' 'MVIEW' '160,10' '280,190' 'MSPACE' 'ZOOM' 'W' '5800,-200' '12200,4300' 'PSPACE'
