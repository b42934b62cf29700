#!/usr/bin/env bash
# Installs what a fresh Debian machine lacks to build, test and run the workbench.
# Does nothing when everything is already there.
set -euo pipefail
pkgs=(build-essential cmake qtbase5-dev libqt5svg5-dev qttools5-dev qttools5-dev-tools
      libqt5sql5-sqlite libkdsoap-dev libkdsoap-server1 clang-format fonts-dejavu-core xvfb xauth)
missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
