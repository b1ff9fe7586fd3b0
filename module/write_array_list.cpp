// writeArrayList: a list of arrays over the same index sets, written into
// shared rows: the index columns first, then one column for each array.
// Arrays may hold entries at different tuples, so their entry walks are
// merged like sorted lists: each row takes the smallest current tuple, and
// only the arrays standing at that tuple fill their column in it.
#include "write_out.h"

#include <stdlib.h>
#include <string.h>

namespace {

struct Merge {
    int count; // arrays
    int dims;
    void **arrays;
    int *tuples;    // count × dims, the current entry of each array
    int *left;      // entries not yet written
    bool *finished; // entry walk over
    qd_type *types; // element base types
    int active;     // arrays not finished
};

int *tupleOf(Merge &m, int j) { return m.tuples + (size_t)j * m.dims; }

// Index of the unfinished array with the smallest tuple (the first one on a
// tie), -1 when all are finished.
int smallest(const Merge &m) {
    int best = -1;
    for (int j = 0; j < m.count; j++) {
        if (m.finished[j]) continue;
        if (best < 0 || g_host->compareIndices(m.dims, m.tuples + (size_t)j * m.dims,
                                               m.tuples + (size_t)best * m.dims) < 0)
            best = j;
    }
    return best;
}

int mostLeft(const Merge &m) {
    int most = 0;
    for (int j = 0; j < m.count; j++)
        if (!m.finished[j] && m.left[j] > most) most = m.left[j];
    return most;
}

// Writes one row for the tuple `current`; answers 1 after printing.
int writeRow(qd_context *ctx, RangeSpec *spec, Merge &m, void *const *sets,
             const qd_type *indexTypes, int row, const int *current) {
    for (int k = 0; k < m.dims; k++) {
        qd_value value;
        value.p = nullptr;
        int col = spec->columnMap[k];
        if (g_host->setElement(ctx, sets[k], current[k], &value) != 0 ||
            writeCell(ctx, spec, indexTypes[k], row, col, &value) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong data value for [R%dC%d].\n", spec, row, col);
            return 1;
        }
    }
    for (int j = 0; j < m.count; j++) {
        if (m.finished[j] || g_host->compareIndices(m.dims, tupleOf(m, j), current) != 0) continue;
        int col = spec->columnMap[m.dims + j];
        qd_value value;
        value.p = nullptr;
        if (g_host->arrayGet(m.arrays[j], tupleOf(m, j), &value) != 0 ||
            writeCell(ctx, spec, m.types[j], row, col, &value) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong data value for [R%dC%d].\n", spec, row, col);
            return 1;
        }
        m.left[j]--;
        if (g_host->arrayNextEntry(m.arrays[j], tupleOf(m, j)) != 0) {
            m.finished[j] = true;
            m.active--;
        }
    }
    return 0;
}

int merge(qd_context *ctx, RangeSpec *spec, Merge &m, void *const *sets,
          const qd_type *indexTypes) {
    int current[WRITE_MAX_DIMS];
    bool grow = (spec->flags & OPT_GROW) != 0;
    while (m.active > 0) {
        int rows = growRows(spec, mostLeft(m));
        if (rows <= 0) rows = growRows(spec, 1);
        if (rows <= 0) return 0;
        int row = 0;
        for (; row < rows && m.active > 0; row++) {
            int best = smallest(m);
            memcpy(current, tupleOf(m, best), sizeof(int) * (size_t)m.dims);
            if (writeRow(ctx, spec, m, sets, indexTypes, row, current) != 0) return 1;
        }
        if (m.active == 0 || !grow) break; // without grow the rest is left out
        // The range is used up: go on below it.
        spec->firstRow += row;
        spec->lastRow += row;
    }
    return 0;
}

} // namespace

int writeArrayList(qd_context *ctx, RangeSpec *spec, void *list) {
    int count = 0;
    void **arrays = nullptr;
    if (checkArrayList(ctx, list, &count, &arrays) != 0) return 1;
    if (count == 0) return 0; // an empty list writes nothing
    int status = 1;
    Merge m;
    memset(&m, 0, sizeof m);
    m.count = count;
    m.arrays = arrays;
    m.dims = g_host->arrayDimensions(arrays[0]);
    void *sets[WRITE_MAX_DIMS];
    qd_type indexTypes[WRITE_MAX_DIMS];
    bool locked[WRITE_MAX_DIMS];
    if (m.dims < 1 || m.dims > WRITE_MAX_DIMS) {
        g_host->dispatchError(ctx, tr("SHEET: Wrong data type.\n"));
        free(arrays);
        return 1;
    }
    g_host->arrayIndexSets(arrays[0], sets);
    for (int k = 0; k < m.dims; k++) indexTypes[k] = g_host->setElementType(sets[k]) & QD_BASE_MASK;
    if (spec->columnCount != m.dims + count) {
        sheetMessageColumns(ctx, m.dims + count, spec->columnCount);
        free(arrays);
        return 1;
    }
    m.tuples = (int *)malloc(sizeof(int) * (size_t)count * (size_t)m.dims);
    m.left = (int *)malloc(sizeof(int) * (size_t)count);
    m.finished = (bool *)malloc(sizeof(bool) * (size_t)count);
    m.types = (qd_type *)malloc(sizeof(qd_type) * (size_t)count);
    if (!m.tuples || !m.left || !m.finished || !m.types) {
        g_host->dispatchError(ctx, tr("SHEET: Out of memory error.\n"));
    } else {
        for (int j = 0; j < count; j++) {
            m.types[j] = g_host->arrayElementType(arrays[j]) & QD_BASE_MASK;
            m.finished[j] = g_host->arrayFirstEntry(arrays[j], tupleOf(m, j)) != 0;
            m.left[j] = m.finished[j] ? 0 : g_host->arrayEntryCount(arrays[j]);
            if (!m.finished[j]) m.active++;
        }
        for (int k = 1; k < m.dims; k++) locked[k] = g_host->lockSet(ctx, sets[k]) == 0;
        status = merge(ctx, spec, m, sets, indexTypes);
        for (int k = m.dims; k-- > 1;)
            if (locked[k]) g_host->unlockSet(ctx, sets[k]);
    }
    free(m.tuples);
    free(m.left);
    free(m.finished);
    free(m.types);
    free(arrays);
    return status;
}
