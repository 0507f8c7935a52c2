#!/usr/bin/env bash
# Installs, with apt-get, whatever of the build and test tools this machine lacks.
set -euo pipefail
pkgs=(g++ cmake make libgtest-dev libbenchmark-dev libpq-dev postgresql python3 locales)
missing=()
for p in "${pkgs[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
fi
