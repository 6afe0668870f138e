#!/usr/bin/env bash
# Saves a screenshot of the program under Xvfb, as a person would see it:
#   tools/shot.sh OUT.png [WIDTHxHEIGHT] [labquiz_shot options: --page N --expert --check --fill right|wrong|mixed]
# Uses a throwaway data folder seeded from the compiled-in data.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${LABQUIZ_BUILD_DIR:-$here/build}"
out="$(realpath -m "$1")"; shift
size="1366x768"
if [[ "${1:-}" =~ ^[0-9]+x[0-9]+$ ]]; then size="$1"; shift; fi
command -v xvfb-run >/dev/null || { echo "xvfb-run fehlt: apt-get install xvfb" >&2; exit 2; }
cmake --build "$build" --target labquiz_shot >/dev/null
data="$(mktemp -d)"
trap 'rm -rf "$data"' EXIT
LABQUIZ_DATA="$data" QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 ${size}x24" \
  "$build/tools/shot/labquiz_shot" "$out" "$@"
