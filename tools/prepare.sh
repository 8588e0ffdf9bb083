# Sourced by test.sh and demo.sh: installs what is missing, configures and builds.

packages=(
  build-essential cmake ninja-build pkg-config ccache mold
  libboost-dev libboost-context-dev libeigen3-dev libicu-dev libfreetype-dev libfontconfig-dev libfmt-dev
  libfast-float-dev nlohmann-json3-dev libcli11-dev libedit-dev qtbase5-dev libgtest-dev libgmock-dev
  fonts-dejavu-core fonts-liberation python3 python3-ezdxf
)

install_missing() {
  local missing=()
  for package in "${packages[@]}"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  local as_root=()
  ((EUID == 0)) || as_root=(sudo)
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# What a log holds is shown when the step fails.
quietly() {
  local log=$1
  shift
  "$@" >"$log" 2>&1 || { tail -n 60 "$log"; return 1; }
}

configure() {
  local preset=$1 folder=$2
  mkdir -p "$folder"
  [[ -f $folder/build.ninja ]] || quietly "$folder/configure.log" cmake --preset "$preset"
}

jobs() { echo "${VEKAD_JOBS:-$(nproc)}"; }
