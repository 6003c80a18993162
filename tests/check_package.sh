#!/bin/sh
# Builds the Debian package from the build folder given and checks what it
# holds: both executables, both manual pages, the desktop entry, the
# examples, and a dependency on the toolkit's runtime library.
set -e
build="$1"
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
cd "$build"
cpack -G DEB -B "$out" >/dev/null
deb="$(ls "$out"/quilp_*.deb)"
dpkg-deb -c "$deb" | awk '{print $6}' > "$out/files"
for f in ./usr/bin/quilp ./usr/bin/quilp-ixc ./usr/share/man/man1/quilp.1 ./usr/share/man/man1/quilp-ixc.1 \
         ./usr/share/applications/quilp.desktop ./usr/share/doc/quilp/examples/cruise/cruise.bix \
         ./usr/share/doc/quilp/examples/ixc/counter.ixc ./usr/share/doc/quilp/examples/boiler/boiler.bix; do
  grep -qx "$f" "$out/files" || { echo "missing from the package: $f"; exit 1; }
done
if grep -q '\.log$' "$out/files"; then echo "a trace file is in the package"; exit 1; fi
depends="$(dpkg-deb -f "$deb" Depends)"
echo "$depends" | grep -q 'libfltk1.3' || { echo "no toolkit dependency: $depends"; exit 1; }
echo "$deb: $(wc -l < "$out/files") entries; Depends: $depends"
