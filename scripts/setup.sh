#!/usr/bin/env bash
# Installs the Debian packages needed to build and test qeldm.
# Run as root on Debian 12. Installs only what is missing; silent otherwise.
set -euo pipefail

# One package per line; add new build or test dependencies here.
packages=(
    cmake
    ninja-build
    g++
    libgtest-dev
    libgmock-dev
    pkg-config
    nlohmann-json3-dev
    libcli11-dev
    libxml2-dev
    libexpat1-dev
    libpugixml-dev
    locales
    clang
    libclang-rt-14-dev
    llvm-14
)

missing=()
for package in "${packages[@]}"; do
    status="$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)"
    if [[ "$status" != "install ok installed" ]]; then
        missing+=("$package")
    fi
done

if ((${#missing[@]} != 0)); then
    if ((EUID != 0)); then
        echo "setup.sh: missing packages: ${missing[*]}; run this script as root" >&2
        exit 1
    fi
    echo "setup.sh: installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# A decimal-comma locale lets the tests check that numbers in the files keep
# their point whatever the locale; generated once, when root can.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
    if ((EUID == 0)) && [[ -f /etc/locale.gen ]]; then
        sed -i 's/^# *\(de_DE\.UTF-8 UTF-8\)/\1/' /etc/locale.gen
        locale-gen >/dev/null 2>&1 || true
    fi
fi
