#!/usr/bin/env bash
# Line and function coverage of the product code, per folder: builds with
# --coverage in build-cov, runs every test, and prints the summary.
# Usage: cmake/coverage.sh [build-dir] [jobs]
set -euo pipefail
src="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$src/build-cov}"
jobs="${2:-2}"
cmake -S "$src" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DTABRIX_BENCH=OFF \
  -DCMAKE_C_FLAGS=--coverage -DCMAKE_CXX_FLAGS=--coverage \
  -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage \
  -DCMAKE_MODULE_LINKER_FLAGS=--coverage >/dev/null
cmake --build "$build" -j"$jobs"
find "$build" -name '*.gcda' -delete
(cd "$build" && ctest -j"$jobs" --output-on-failure >/dev/null) || echo "coverage: some tests failed"
lcov --quiet --capture --directory "$build" --output-file "$build/all.info" \
  --rc lcov_branch_coverage=0 2>/dev/null
lcov --quiet --extract "$build/all.info" \
  "$src/book/*" "$src/biff/*" "$src/formula/*" "$src/officeart/*" "$src/ooxml/*" \
  "$src/zip/*" "$src/module/*" "$src/include/*" "$src/tools/*" \
  --output-file "$build/product.info" 2>/dev/null
# One line a folder: lines hit/found and functions hit/found.
python3 - "$build/product.info" "$src" <<'PY'
import collections, sys
info, src = sys.argv[1], sys.argv[2] + '/'
per = collections.defaultdict(lambda: [0, 0, 0, 0])
cur = None
for line in open(info):
    if line.startswith('SF:'):
        path = line[3:].strip().replace(src, '')
        parts = path.split('/')
        cur = '/'.join(parts[:2]) if parts[0] in ('biff', 'ooxml') and len(parts) > 2 else parts[0]
    elif line.startswith('LF:'): per[cur][1] += int(line[3:])
    elif line.startswith('LH:'): per[cur][0] += int(line[3:])
    elif line.startswith('FNF:'): per[cur][3] += int(line[4:])
    elif line.startswith('FNH:'): per[cur][2] += int(line[4:])
tot = [0, 0, 0, 0]
print(f"{'folder':16} {'lines':>18} {'functions':>18}")
for k in sorted(per):
    lh, lf, fh, ff = per[k]
    tot = [a + b for a, b in zip(tot, per[k])]
    print(f"{k:16} {lh:7}/{lf:<7} {100*lh/max(lf,1):5.1f}% {fh:6}/{ff:<6} {100*fh/max(ff,1):5.1f}%")
lh, lf, fh, ff = tot
print(f"{'total':16} {lh:7}/{lf:<7} {100*lh/max(lf,1):5.1f}% {fh:6}/{ff:<6} {100*fh/max(ff,1):5.1f}%")
PY
