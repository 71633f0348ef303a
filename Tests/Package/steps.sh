# What the parts of the package test share.

step() { printf '\n%s\n' "$1"; }
passed() { echo "  passed: $1"; }
fail() {
  echo "  FAILED: $1" >&2
  exit 1
}

# wait_for WHAT CONDITION... ; at most half a minute
wait_for() {
  what=$1
  shift
  tries=0
  until "$@" >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ "$tries" -lt 300 ] || fail "waited in vain for $what"
    sleep 0.1
  done
}
