#!/usr/bin/env bash
# make.sh VEKAD: makes the pictures of this folder anew, each pair the plan of samples/ before and after one command.
set -euo pipefail
vekad=$(realpath "$1")
here=$(dirname "$(realpath "$0")")
plan=$here/../../samples/plan.dxf
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What is picked is scripted by handles or by ALL and windows, so that every run gives the same picture.
pair() {
  local name=$1
  shift
  local arguments=()
  for line in "$@"; do arguments+=(-c "$line"); done
  "$vekad" run "$plan" "${arguments[@]}" -o "$work/$name.dxf" >"$work/$name.log" 2>&1 || { cat "$work/$name.log"; return 1; }
  "$vekad" render "$work/$name.dxf" "$here/$name.png" --size 800x500
}

"$vekad" render "$plan" "$here/plan.png" --size 800x500
pair offset 'OFFSET' '300' '(ssname (ssget "_X" (quote ((0 . "LWPOLYLINE") (8 . "WALLS")))) 0)' '6000,20000' ''
pair rotate 'ROTATE' '(ssget "_X" (quote ((2 . "TABLE"))))' '' '6000,3500' '30'
pair insert '-INSERT' 'TABLE' '9500,6500' '1' '1' '0'
pair layer-off '-LAYER' 'OFF' 'FURNITURE' ''
pair underline 'TXTULINE' '(ssget "_X" (quote ((0 . "TEXT") (8 . "ROOMS") (7 . "Labels"))))' ''
