#!/bin/bash
# Checks the macOS adapters on a machine without a Mac: types, ownership, nullability, availability
# and the use of names that macOS lacks. Needs clang 14 or later and Qt's headers.
#   scripts/check-macos.sh [file ...]      default: all of TavrinPlatform/macOS, headers too, and
#                                          what it shares in TavrinPlatform/POSIX and Qt
# A file that passed is checked again only when it, or a file of the project that it includes, has
# changed; TAVRIN_STAMPS names the folder that remembers (build/macos-check; empty for none).
# A header that its own source includes first is checked there. TAVRIN_ANALYSIS=no leaves the
# analyzer out.
# TAVRIN_JOBS is how many are checked at a time, TAVRIN_ROOTS lists further include roots,
# TAVRIN_MACOS_MINIMUM the oldest system.
set -u
here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")
shims=${TAVRIN_DECLARATIONS:-$root/Tests/macOS/Declarations}
compiler=${CXX_MACOS:-$(command -v clang++-14 || command -v clang++)}
[ -n "$compiler" ] || { echo "no clang: scripts/setup test installs it" >&2; exit 77; }
stamps=${TAVRIN_STAMPS-$root/build/macos-check}

if [ "${1:-}" != --one ]; then
  if [ $# -eq 0 ]; then
    cd "$root" || exit 2
    mapfile -t found < <(find TavrinPlatform/{macOS,POSIX,Qt} -name '*.cpp' -o -name '*.mm' -o -name '*.h' | sort)
    for each in "${found[@]}"; do
      if [[ $each == *.h ]]; then
        own=$(find "${each%.h}.cpp" "${each%.h}.mm" 2>/dev/null)
        [ -n "$own" ] && grep -m1 -E '^#(include|import) ' "$own" | grep -qF "\"$each\"" && continue
      fi
      set -- "$@" "$each"
    done
  fi
  printf '%s\0' "$@" | xargs -0 -n 1 -P "${TAVRIN_JOBS:-2}" "$here/check-macos.sh" --one || exit 1
  echo "checked $# files"
  exit 0
fi
file=$2

read -r -a roots <<<"${TAVRIN_ROOTS:-} $root"
qt=$(pkg-config --variable=includedir Qt6Core 2>/dev/null)
qt=${qt:-/usr/include/x86_64-linux-gnu/qt6}
minimum=${TAVRIN_MACOS_MINIMUM:-14.0}
flags=(-target "x86_64-apple-macos$minimum" -std=c++20 -fPIC -fblocks
       -D_GNU_SOURCE -DQT_NO_KEYWORDS -nostdinc++ -isystem "$shims"
       -U__nonnull -U__nullable -U__null_unspecified)
# The standard library and the C library are this machine's.
while read -r folder; do flags+=(-isystem "$folder"); done < <(
  g++ -x c++ -E -v /dev/null 2>&1 >/dev/null |
    sed -n '/#include <\.\.\.>/,/^End/p' | sed -n 's/^ \(.*\)/\1/p' | grep -v '/lib/gcc/.*/include')
for part in "" /QtCore /QtGui /QtWidgets /QtNetwork; do flags+=(-isystem "$qt$part"); done
for each in "${roots[@]}"; do flags+=(-I "$each"); done
# What the project's own build asks for, and what catches Objective-C's mistakes.
flags+=(-Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
        -Wunguarded-availability -Wdeprecated-declarations -Wnullable-to-nonnull-conversion
        -Wno-gnu-zero-variadic-macro-arguments -Wno-nullability-extension -Wno-unknown-attributes
        -Wno-c99-designator -Wno-four-char-constants -Werror)
objc=(-x objective-c++ -fobjc-arc -fobjc-weak -Wobjc-interface-ivars -Wimplicit-retain-self
      -Warc-retain-cycles -Warc-maybe-repeated-use-of-weak -Wobjc-missing-super-calls
      -Wstrict-selector-match -Wundeclared-selector -Wprotocol -Wobjc-method-access
      -Wcompletion-handler -Wno-objc-property-no-attribute)
language=(-x c++)
case $file in
  *.mm) language=("${objc[@]}") ;;
  *.h) grep -qE '^(#import|@(interface|class|protocol))' "$file" && language=("${objc[@]}")
       flags+=(-Wno-pragma-once-outside-header) ;;
esac
# A call that the C library here has and macOS has not.
foreign='\b(pipe2|accept4|dup3|memfd_create|eventfd|epoll_[a-z]+|inotify_[a-z0-9]+|timerfd_[a-z]+|signalfd|prctl|gettid|getrandom|secure_getenv|memrchr|strchrnul|malloc_trim|mallopt|fdatasync|copy_file_range|O_PATH|O_TMPFILE|st_[acm]tim|SOCK_CLOEXEC|SOCK_NONBLOCK|MSG_NOSIGNAL|posix_spawn_file_actions_addclosefrom_np|program_invocation_name|get_current_dir_name|QDBus[A-Za-z]*|AF_PACKET)\b|"/proc/'
# What Apple's C++ library lacks, or has only behind a flag.
absent='std::(jthread|stop_token|stop_source|move_only_function|chrono::(zoned_time|current_zone|locate_zone|parse))'

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# What a verdict rests on, this machine's own headers left out.
state() {
  { stat -Lc '%n %Y %s' "$compiler"; echo "${flags[@]}" "${language[@]}"; cat "$0" "$here/unknown-selectors.py"
    tr -s ' \\' '\n' <"$1" | grep -v -e ':$' -e '^/usr' -e '^$' | sort -u | xargs -d '\n' cat; } 2>/dev/null | sha256sum
}
stamp=
if [ -n "$stamps" ]; then
  stamp=$stamps/${file//\//_}
  mkdir -p "$stamps"
  [ -f "$stamp" ] && [ "$(state "$stamp.d")" = "$(cat "$stamp")" ] && exit 0
  rm -f "$stamp"
fi

bad=0
action=(-fsyntax-only)
if [[ $file != *.h && ${TAVRIN_ANALYSIS:-} != no ]]; then
  # The analyzer follows ownership of CF objects and retain counts through the paths, though not
  # into the standard library.
  action=(--analyze -Xclang -analyzer-output=text
          -Xclang -analyzer-checker=osx,core,cplusplus,nullability
          -Xclang -analyzer-disable-checker=deadcode,cplusplus.NewDeleteLeaks
          -Xclang -analyzer-config -Xclang c++-stdlib-inlining=false,max-nodes=60000 -o /dev/null)
fi
out=$("$compiler" "${flags[@]}" "${language[@]}" -fsyntax-only \
      -Xclang -dependency-file -Xclang "$work/d" -Xclang -sys-header-deps -Xclang -MT -Xclang x "$file" 2>&1)
status=$?
if [ $status -eq 0 ] && [ ${#action[@]} -gt 1 ]; then
  # In an analysis the compiler itself is silent.
  out=$("$compiler" "${flags[@]}" "${language[@]}" "${action[@]}" "$file" 2>&1)
  status=$?
fi
if [ $status -ne 0 ] || grep -q 'warning:' <<<"$out"; then
  grep -A3 -E 'warning:|error:' <<<"$out" >&2 || echo "$out" >&2
  echo "FAILED $file" >&2; bad=1
fi
# What only another system compiles does not count.
texts=("$file")
[[ $file != *.h && -f ${file%.*}.h ]] && texts+=("${file%.*}.h")
if awk '/^#ifdef __linux__/ { skip = 1 } /^#ifdef __APPLE__/ { apple = 1 }
        /^#else/ { skip = skip ? 0 : apple } /^#endif/ { skip = 0; apple = 0 }
        { print skip ? "" : $0 }' "${texts[@]}" | grep -nE "$foreign|$absent" | grep -vE '^[0-9]+: *(//|\*)'; then
  echo "FAILED $file: not on macOS" >&2; bad=1
fi
if [[ $file != *.h ]]; then
  # A delegate's method with a slip in its name compiles, and is never called.
  unknown=$("$here/unknown-selectors.py" "$shims" "$file") || {
    echo "$unknown"; echo "FAILED $file: nobody declares this method" >&2; bad=1; }
fi
if [ $bad -eq 0 ] && [ -n "$stamp" ]; then
  cp "$work/d" "$stamp.d"; state "$stamp.d" >"$stamp"
fi
exit $bad
