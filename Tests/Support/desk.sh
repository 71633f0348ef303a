#!/bin/bash
# Runs a command on a desk of its own: an empty home, a session bus, and what else is asked for.
#   desk.sh [bus] [x] [wm] [compositor] [tray] [notifications] [systemd]
#           [sway | kwin] [keyring] [system] [power] [logind] [polkit] -- COMMAND...
# "system" is a system bus of its own; the words after it are mocks on it.
# Nothing of it is left when the command ends. Its exit status is the command's.
set -u
parts=" "
while [ $# -gt 0 ] && [ "$1" != "--" ]; do parts="$parts$1 "; shift; done
shift
has() { [[ $parts == *" $1 "* ]]; }

if [ -z "${DESK:-}" ]; then
  export DESK=$(mktemp -d /tmp/tavrin-desk.XXXXXX)
  export HOME=$DESK/home XDG_RUNTIME_DIR=$DESK/run GIO_USE_VFS=local NO_AT_BRIDGE=1
  export DBUS_SESSION_BUS_ADDRESS=disabled: DBUS_SYSTEM_BUS_ADDRESS=disabled:
  mkdir -p "$HOME" && mkdir -m 700 "$XDG_RUNTIME_DIR"
  unset DISPLAY WAYLAND_DISPLAY XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME QT_QPA_PLATFORM
  trap 'rm -rf "$DESK"' EXIT
  trap 'exit 143' TERM INT
  if has bus; then
    dbus-run-session -- "$0" $parts -- "$@"
  else
    "$0" $parts -- "$@"
  fi
  exit $?
fi

started=()
begin() { "$@" >"$DESK/$(basename "$1").log" 2>&1 & started+=($!); }
finish() {
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do kill "${started[i]}" 2>/dev/null; done
  wait 2>/dev/null
}
trap finish EXIT
trap 'exit 143' TERM INT
# await CONDITION... ; at most a minute
await() {
  local end=$((SECONDS + 60))
  while [ $SECONDS -lt $end ]; do "$@" >/dev/null 2>&1 && return 0; sleep .02; done
  echo "desk: waited in vain for: $*" >&2
  exit 99
}
owned() { gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus -m org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }
checked() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 0x && xprop -root _NET_WORKAREA | grep -q =; }

if has system; then
  cat >"$DESK/system.conf" <<'X'
<busconfig><type>custom</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
X
  dbus-daemon --config-file="$DESK/system.conf" --nofork --print-address=3 3>"$DESK/system" >/dev/null 2>&1 &
  started+=($!)
  await test -s "$DESK/system"
  export DBUS_SYSTEM_BUS_ADDRESS=$(cat "$DESK/system")
  simulate() { /usr/bin/python3 -m dbusmock --system --template "$1" >"$DESK/$1.log" 2>&1 & started+=($!); }
  there() { gdbus call --system -d org.freedesktop.DBus -o /org/freedesktop/DBus -m org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }
  if has power; then
    simulate upower
    simulate bluez5
    await there org.freedesktop.UPower
    await there org.bluez
  fi
  if has logind; then simulate logind; await there org.freedesktop.login1; fi
  if has polkit; then simulate polkitd; await there org.freedesktop.PolicyKit1; fi
fi
# Before there is a display: a keyring on one asks for its password in a window.
if has keyring; then
  printf test | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1
  await owned org.freedesktop.secrets
fi
if has x; then
  Xvfb -displayfd 3 -screen 0 "${DESK_SCREEN:-1280x800x24}" -noreset -nolisten tcp 3>"$DESK/display" >/dev/null 2>&1 &
  started+=($!)
  await test -s "$DESK/display"
  export DISPLAY=:$(cat "$DESK/display")
fi
# Beside an X server it has a window of 1200 × 768 pixels there; else no output that could be looked at. It refuses to be
# root, who may speak to anybody's.
if has sway; then
  mkdir -m 700 "$DESK/sway"
  chmod 711 "$DESK"
  printf 'output X11-1 bg #335577 solid_color mode --custom 1200x768@60Hz scale %s\nxwayland disable\ndefault_border none\n' "${DESK_SCALE:-1}" >"$DESK/sway/config"
  other=()
  if [ "$(id -u)" = 0 ]; then
    chown -R nobody "$DESK/sway"
    other=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
  fi
  backend=headless
  if has x; then
    backend=x11
    # It takes only such atoms as others have made, and without these hears of no window's closing.
    xprop -root -f WM_PROTOCOLS 32a -set WM_PROTOCOLS WM_DELETE_WINDOW
  fi
  begin env HOME="$DESK/sway" XDG_RUNTIME_DIR="$DESK/sway" WLR_BACKENDS=$backend WLR_RENDERER=pixman \
    WLR_LIBINPUT_NO_DEVICES=1 "${other[@]}" sway -c "$DESK/sway/config"
  export WAYLAND_DISPLAY=$DESK/sway/wayland-1
  answering() { SWAYSOCK=$(echo "$DESK"/sway/sway-ipc.*.sock) && swaymsg -s "$SWAYSOCK" -t get_outputs; }
  await answering
  export SWAYSOCK=$(echo "$DESK"/sway/sway-ipc.*.sock)
fi
if has kwin; then
  command -v kwin_wayland >/dev/null || { echo "desk: kwin_wayland is not installed"; exit 77; }
  # A file capability, which not every machine grants, does not come with a copy.
  cp "$(command -v kwin_wayland)" "$DESK"
  points() { awk "BEGIN { print $1 / ${DESK_SCALE:-1} }"; }
  method=()
  [ -z "${DESK_INPUT_METHOD:-}" ] || method=(--inputmethod "$DESK_INPUT_METHOD")
  begin env KWIN_FORCE_OWN_QPA=1 KWIN_COMPOSE=Q KWIN_IM_SHOW_ALWAYS=1 "$DESK/kwin_wayland" "${method[@]}" --x11-display "$DISPLAY" \
    --width "$(points 1200)" --height "$(points 768)" --scale "${DESK_SCALE:-1}" --socket wayland-kwin \
    --no-lockscreen --no-global-shortcuts --no-kactivities
  await test -S "$XDG_RUNTIME_DIR/wayland-kwin"
  export WAYLAND_DISPLAY=wayland-kwin
fi
# It says that it is there before it manages, and forgets a window that comes between.
if has wm; then begin openbox --startup "touch '$DESK/managed'"; await test -e "$DESK/managed"; fi
if has compositor; then begin xfwm4 --compositor=on --vblank=off; await checked; fi
if has tray; then
  settings=$HOME/.config/xfce4/xfconf/xfce-perchannel-xml
  mkdir -p "$settings"
  cat >"$settings/xfce4-panel.xml" <<'X'
<channel name="xfce4-panel" version="1.0"><property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/><property name="panel-1" type="empty"><property name="position" type="string" value="p=6;x=0;y=0"/><property name="length" type="uint" value="100"/><property name="size" type="uint" value="32"/><property name="plugin-ids" type="array"><value type="int" value="1"/></property></property></property><property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray"/></property></channel>
X
  begin xfce4-panel --disable-wm-check
  await owned org.kde.StatusNotifierWatcher
fi
mock=(/usr/bin/python3 -m dbusmock --session --template)
if has notifications; then begin "${mock[@]}" notification_daemon; await owned org.freedesktop.Notifications; fi
if has systemd; then begin "${mock[@]}" systemd; await owned org.freedesktop.systemd1; fi

"$@"
