#!/usr/bin/env bash
# Runs atspi_walk.py under Xvfb on a private session bus with the AT-SPI bus
# that screen readers use. Skips (exit 77) when a piece is missing; the
# Debian packages are at-spi2-core, python3-pyatspi, dbus-daemon, xvfb, xauth
# (tools/bootstrap installs them).
#   atspi_walk.sh DRIVER
set -uo pipefail
driver="$1"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
missing=()
command -v xvfb-run >/dev/null || missing+=(xvfb)
command -v dbus-run-session >/dev/null || missing+=(dbus-daemon)
[ -x /usr/libexec/at-spi-bus-launcher ] || missing+=(at-spi2-core)
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || missing+=(python3-pyatspi)
if [ ${#missing[@]} -gt 0 ]; then
  echo "SKIP: Barrierefreiheits-Test übersprungen, es fehlt: ${missing[*]} (tools/bootstrap installiert es)"
  exit 77
fi
data="$(mktemp -d)"
trap 'rm -rf "$data"' EXIT
export LABQUIZ_DATA="$data"
export QT_QPA_PLATFORM=xcb
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
export QT_ACCESSIBILITY=1
export NO_AT_BRIDGE=0
exec xvfb-run -a -s "-screen 0 1366x768x24" \
  dbus-run-session -- /usr/bin/python3 "$here/atspi_walk.py" "$driver"
