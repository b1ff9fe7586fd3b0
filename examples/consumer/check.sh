#!/usr/bin/env bash
# Installs a built tree into a fresh prefix, then builds and runs the two
# consumers against that prefix alone: hello.c with pkg-config, hello.cpp
# with find_package.  Also checks the installed layout and the SONAME.
# Usage: check.sh BUILD_DIR WORK_DIR C_COMPILER
set -euo pipefail
build="$1" work="$2" cc="${3:-cc}"
here="$(cd "$(dirname "$0")" && pwd)"
prefix="$work/prefix"
rm -rf "$work" && mkdir -p "$work"
cmake --install "$build" --prefix "$prefix" >/dev/null

fail() { echo "check: $*" >&2; exit 1; }
lib="$(ls -d "$prefix"/lib*/libtabrix.so | head -1)"
[ -n "$lib" ] || fail "libtabrix.so is not installed"
libdir="$(dirname "$lib")"
for f in include/tabrix.h include/qdhost.h include/tabrix/IBookT.h bin/tabrix; do
  [ -e "$prefix/$f" ] || fail "$f is not installed"
done
soname="$(objdump -p "$lib" | awk '/SONAME/ {print $2}')"
[[ "$soname" =~ ^libtabrix\.so\.[0-9]+$ ]] || fail "libtabrix.so has SONAME '$soname'"
[ -e "$libdir/$soname" ] || fail "no $soname beside libtabrix.so"
[ -e "$libdir/tabrix/modules/libqdsheet.so" ] || fail "libqdsheet.so is not in the module directory"
"$prefix/bin/tabrix" --help | grep -q "commands:" || fail "the installed tool does not run"

# pkg-config, with the installed tree's own .pc file only.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
"$cc" "$here/hello.c" $(pkg-config --cflags --libs tabrix) \
  -Wl,-rpath,"$(pkg-config --variable=libdir tabrix)" -o "$work/hello-c"
(cd "$work" && ./hello-c book.xls) | grep -qx "Hello answer=42" || fail "hello.c printed something else"

# find_package, with the prefix as the only hint.
cmake -S "$here" -B "$work/cpp" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cpp" >/dev/null
"$work/cpp/hello" | grep -qx "Hello answer=42" || fail "hello.cpp printed something else"
# The installed tool reads what the C program wrote.
"$prefix/bin/tabrix" dump "$work/book.xls" | grep -qx "answer,42" || fail "tabrix dump of the book"
echo "check: installed into $prefix; both consumers built and ran"
