# Shared by scripts/run, scripts/test and scripts/bench: install what is missing, configure, build.
# shellcheck shell=bash

KAVOR_TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

KAVOR_PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  libsimdjson-dev libplist-dev libicu-dev uuid-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins qt6-pdf-dev libgl-dev
  fonts-dejavu-core fonts-noto-color-emoji
  clang-format
)

kavor_as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

kavor_install_deps() {
  local missing=()
  for p in "${KAVOR_PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
      missing+=("$p")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  kavor_as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  kavor_as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# kavor_build DIR [cmake options...]: configure (once) and build everything in DIR.
kavor_build() {
  local dir=$1
  shift
  cmake -S "$KAVOR_TOP" -B "$dir" -G Ninja "$@"
  cmake --build "$dir" -j 2
}
