// writeArray: an array into rows, in one of three layouts.
//  - default: one row for each stored entry, the index elements in the first
//    columns and the value (or the record's fields) behind them;
//  - partndx: one row for each combination of the first indices that has a
//    stored entry, the last index running across the columns;
//  - noindex: every cell of the index sets in order, no index columns.
// The default and partndx walks cost time in proportion to the stored
// entries; noindex walks every cell.
#include "write_out.h"

#include <stdint.h>

namespace {

struct ArrayShape {
    void *array;
    int dims;
    void *sets[WRITE_MAX_DIMS];
    qd_type indexTypes[WRITE_MAX_DIMS];
    qd_type element; // base type
    bool record;
    int leaves; // columns of one element
};

// Locks sets[from] .. sets[to - 1]; `locked` records which succeeded so that
// only those are released.
void lockSets(qd_context *ctx, const ArrayShape &a, int from, int to, bool *locked) {
    for (int k = from; k < to; k++) locked[k] = g_host->lockSet(ctx, a.sets[k]) == 0;
}

void unlockSets(qd_context *ctx, const ArrayShape &a, int from, int to, const bool *locked) {
    for (int k = to; k-- > from;)
        if (locked[k]) g_host->unlockSet(ctx, a.sets[k]);
}

bool indexTypesOk(qd_context *ctx, const ArrayShape &a, int count) {
    for (int k = 0; k < count; k++) {
        if (!isBasicType(a.indexTypes[k])) {
            sheetMessage(ctx, "SHEET: Wrong index type.\n");
            return false;
        }
    }
    return true;
}

// Writes the index elements of the first `count` dimensions of `at` into
// the first `count` columns of the map.
int writeIndices(qd_context *ctx, RangeSpec *spec, const ArrayShape &a, int count, int row,
                 const int *at) {
    for (int k = 0; k < count; k++) {
        qd_value value;
        value.p = nullptr;
        int col = spec->columnMap[k];
        if (g_host->setElement(ctx, a.sets[k], at[k], &value) != 0 ||
            writeCell(ctx, spec, a.indexTypes[k], row, col, &value) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong data value for [R%dC%d].\n", spec, row, col);
            return 1;
        }
    }
    return 0;
}

// Writes the array's cell at `at` from map position `position`.
int writeValue(qd_context *ctx, RangeSpec *spec, const ArrayShape &a, int row, int position,
               const int *at) {
    qd_value value;
    value.p = nullptr;
    int got = g_host->arrayGet(a.array, at, &value);
    if (got != 0 || writeElement(ctx, spec, a.element, a.record, row, &position, &value) != 0) {
        sheetMessageAt(ctx, "SHEET: Wrong data value for [R%dC%d].\n", spec, row,
                       spec->columnMap[position]);
        return 1;
    }
    return 0;
}

int writeDefault(qd_context *ctx, RangeSpec *spec, const ArrayShape &a) {
    int d = a.dims;
    if (spec->columnCount != d + a.leaves) {
        sheetMessageColumns(ctx, d + a.leaves, spec->columnCount);
        return 1;
    }
    if (!indexTypesOk(ctx, a, d)) return 1;
    int rows = growRows(spec, g_host->arrayEntryCount(a.array));
    bool locked[WRITE_MAX_DIMS];
    lockSets(ctx, a, 1, d, locked);
    int at[WRITE_MAX_DIMS];
    int status = 0;
    bool more = g_host->arrayFirstEntry(a.array, at) == 0;
    for (int row = 0; more && row < rows; row++) {
        if (writeIndices(ctx, spec, a, d, row, at) != 0 ||
            writeValue(ctx, spec, a, row, d, at) != 0) {
            status = 1;
            break;
        }
        more = g_host->arrayNextEntry(a.array, at) == 0;
    }
    unlockSets(ctx, a, 1, d, locked);
    return status;
}

int writePartIndex(qd_context *ctx, RangeSpec *spec, const ArrayShape &a) {
    int d = a.dims;
    void *lastSet = a.sets[d - 1];
    int lastFirst = g_host->setFirstIndex(lastSet);
    int lastLast = g_host->setLastIndex(lastSet);
    long long need = d - 1 + (long long)a.leaves * g_host->setSize(lastSet);
    if (d < 2 || spec->columnCount != need) {
        sheetMessageColumns(ctx, (int)need, spec->columnCount);
        return 1;
    }
    if (!indexTypesOk(ctx, a, d - 1)) return 1;
    // One row for each combination of the first indices with an entry: from
    // any entry, holding the last index at its end skips the rest of the
    // combination.
    int at[WRITE_MAX_DIMS];
    long long combinations = 0;
    for (bool more = g_host->arrayFirstEntry(a.array, at) == 0; more;
         more = g_host->arrayNextEntry(a.array, at) == 0) {
        combinations++;
        at[d - 1] = lastLast;
    }
    int rows = growRows(spec, combinations);
    bool locked[WRITE_MAX_DIMS];
    lockSets(ctx, a, 1, d - 1, locked);
    int status = 0;
    bool more = g_host->arrayFirstEntry(a.array, at) == 0;
    for (int row = 0; more && row < rows && status == 0; row++) {
        if (writeIndices(ctx, spec, a, d - 1, row, at) != 0) {
            status = 1;
            break;
        }
        int position = d - 1;
        for (int p = lastFirst; p <= lastLast; p++, position += a.leaves) {
            at[d - 1] = p;
            if (writeValue(ctx, spec, a, row, position, at) != 0) {
                status = 1;
                break;
            }
        }
        at[d - 1] = lastLast;
        more = g_host->arrayNextEntry(a.array, at) == 0;
    }
    unlockSets(ctx, a, 1, d - 1, locked);
    return status;
}

int writeNoIndex(qd_context *ctx, RangeSpec *spec, const ArrayShape &a) {
    int d = a.dims;
    int found = spec->columnCount;
    void *lastSet = a.sets[d - 1];
    int lastFirst = g_host->setFirstIndex(lastSet);
    int lastLast = g_host->setLastIndex(lastSet);
    long long need;
    if (d == 1) {
        if (found < a.leaves || found % a.leaves != 0) {
            sheetMessageColumns(ctx, a.leaves, found);
            return 1;
        }
        long long cells = (long long)a.leaves * g_host->setSize(lastSet);
        need = (cells + found - 1) / found;
    } else {
        long long width = (long long)a.leaves * g_host->setSize(lastSet);
        if (found != width) {
            sheetMessageColumns(ctx, (int)width, found);
            return 1;
        }
        need = 1;
        for (int k = 0; k < d - 1 && need > 0; k++) {
            need *= g_host->setSize(a.sets[k]);
            if (need > INT32_MAX) need = INT32_MAX;
        }
    }
    int rows = growRows(spec, need);
    int perRow = found / a.leaves;
    int at[WRITE_MAX_DIMS];
    bool more = g_host->arrayFirstCell(a.array, at) == 0;
    for (int row = 0; more && row < rows; row++) {
        for (int group = 0;; group++) {
            if (writeValue(ctx, spec, a, row, group * a.leaves, at) != 0) return 1;
            more = g_host->arrayNextCell(a.array, at) == 0;
            if (!more) break;
            if (d > 1 && at[d - 1] == lastFirst) break; // the last index wrapped: next row
            if (group + 1 == perRow) {
                // The row is full before the last index ends: skip its rest.
                if (d > 1) {
                    at[d - 1] = lastLast;
                    more = g_host->arrayNextCell(a.array, at) == 0;
                }
                break;
            }
        }
    }
    return 0;
}

} // namespace

int writeArray(qd_context *ctx, RangeSpec *spec, void *array) {
    if (!array) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized array.\n");
        return 1;
    }
    ArrayShape a;
    a.array = array;
    a.element = g_host->arrayElementType(array) & QD_BASE_MASK;
    a.leaves = countColumns(ctx, a.element, nullptr);
    a.dims = g_host->arrayDimensions(array);
    if (a.leaves == 0 || a.dims < 1 || a.dims > WRITE_MAX_DIMS) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    a.record = isRecordType(ctx, a.element);
    g_host->arrayIndexSets(array, a.sets);
    for (int k = 0; k < a.dims; k++)
        a.indexTypes[k] = g_host->setElementType(a.sets[k]) & QD_BASE_MASK;
    if (spec->flags & OPT_NOINDEX) return writeNoIndex(ctx, spec, a);
    if (spec->flags & OPT_PARTNDX) return writePartIndex(ctx, spec, a);
    return writeDefault(ctx, spec, a);
}
