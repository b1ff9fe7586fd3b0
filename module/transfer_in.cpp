// transferIn: fills host objects (sets, lists, arrays, records, scalars) from
// the rows and columns of sheet ranges.
#include "sheetfile.h"

#include <stdlib.h>
#include <string.h>

namespace {

// Index tuples and column lists live on the stack up to this many
// dimensions; more are refused as a wrong data type.
const int kMaxDims = 64;

// Reads the cell at map position `position` of row `rowOffset` into an
// external object of `type` (made with newObject).  Answers the object or
// NULL after printing.
void *externalFromCell(qd_context *ctx, RangeSpec *spec, qd_type type, int rowOffset,
                       int position) {
    int col = spec->columnMap[position];
    qd_value v;
    if (readCell(ctx, spec, type, &v, rowOffset, col) < 0) {
        sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, rowOffset, col);
        return nullptr;
    }
    void *object = g_host->newObject(ctx, type);
    if (!object) {
        sheetMessage(ctx, "SHEET: Failed to create object.\n");
        return nullptr;
    }
    if (g_host->copyObject(ctx, type, object, v.s ? v.s : "", QD_COPY_TEXT) != 0) {
        g_host->deleteObject(ctx, type, object);
        sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, rowOffset, col);
        return nullptr;
    }
    return object;
}

bool groupIsEmpty(const RangeSpec *spec, int rowOffset, int position, int width) {
    for (int k = 0; k < width; k++)
        if (!cellIsEmpty(spec, rowOffset, spec->columnMap[position + k])) return false;
    return true;
}

// Fills the fields of `record` (of record type `type`, described by
// `description`) from the cells at map positions *position onward.
void readRecord(qd_context *ctx, RangeSpec *spec, int rowOffset, int *position, void *record,
                qd_type type, const int *description, int depth) {
    if (!description || depth > 32) return;
    for (int i = 0; description[i] != 0; i++) {
        unsigned entry = (unsigned)description[i];
        qd_type base = entry & QD_BASE_MASK;
        int field = (int)QD_FIELD_NUMBER(entry);
        unsigned nested = QD_FIELD_NESTED(entry);
        if (isRecordType(ctx, base)) {
            void *sub = nullptr;
            const int *subDescription =
                nested ? description + i + nested : recordDescription(ctx, base);
            if (g_host->recordField(ctx, type, record, field, &sub) == 0 && sub) {
                readRecord(ctx, spec, rowOffset, position, sub, base, subDescription, depth + 1);
            } else {
                *position += countColumns(ctx, base, subDescription);
            }
            continue;
        }
        if (*position >= spec->columnCount) return; // callers check the width; stay inside
        int col = spec->columnMap[*position];
        (*position)++;
        qd_value v;
        int kind = readCell(ctx, spec, base, &v, rowOffset, col);
        if (kind < 0) continue; // a cell that cannot be read leaves the field alone
        if (base == QD_STRING || !isBasicType(base)) {
            void *target = nullptr;
            if (g_host->recordField(ctx, type, record, field, &target) == 0 && target)
                g_host->copyObject(ctx, base, target, v.s ? v.s : "", QD_COPY_TEXT);
        } else {
            g_host->recordValue(ctx, type, record, field, &v, QD_FIELD_SET);
        }
    }
}

// ---- sets --------------------------------------------------------------------
int readSet(qd_context *ctx, RangeSpec *spec, qd_type type, void *set, int *counter) {
    if (!isBasicType(type)) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    if (!set) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized set.\n");
        return 1;
    }
    if (!(type & QD_DYNAMIC)) {
        sheetMessage(ctx, "SHEET: Non dynamic set for a `write'.\n");
        return 1;
    }
    qd_type element = type & QD_BASE_MASK;
    int rows = lastDataRow(spec);
    for (int r = 0; r <= rows; r++) {
        for (int k = 0; k < spec->columnCount; k++) {
            int col = spec->columnMap[k];
            qd_value v;
            int kind = readCell(ctx, spec, element, &v, r, col);
            if (kind == CELL_EMPTY) continue;
            int position = 0;
            if (kind < 0 || g_host->setAdd(ctx, set, &v, &position) != 0) {
                sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, r, col);
                return 1;
            }
            ++*counter;
        }
    }
    int finalise = 0;
    if (g_host->getParameter(ctx, QD_PARAM_FINALISE, &finalise) == 0 && finalise)
        g_host->finaliseSet(ctx, set);
    return 0;
}

// ---- arrays ------------------------------------------------------------------
struct ArrayInfo {
    void *array;
    int dims;
    void *sets[kMaxDims];
    qd_type indexTypes[kMaxDims];
    qd_type element; // base type
    int leaves;
    bool record;
    const int *description;
};

int describeArray(qd_context *ctx, void *array, ArrayInfo *info) {
    memset(info, 0, sizeof *info);
    info->array = array;
    info->dims = g_host->arrayDimensions(array);
    info->element = g_host->arrayElementType(array) & QD_BASE_MASK;
    info->record = isRecordType(ctx, info->element);
    info->description = info->record ? recordDescription(ctx, info->element) : nullptr;
    info->leaves = countColumns(ctx, info->element, info->description);
    if (info->leaves == 0 || info->dims < 1 || info->dims > kMaxDims) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    g_host->arrayIndexSets(array, info->sets);
    for (int k = 0; k < info->dims; k++)
        info->indexTypes[k] = g_host->setElementType(info->sets[k]) & QD_BASE_MASK;
    return 0;
}

int checkIndexTypes(qd_context *ctx, const ArrayInfo *info, int count) {
    for (int k = 0; k < count; k++) {
        if (!isBasicType(info->indexTypes[k])) {
            sheetMessage(ctx, "SHEET: Wrong index type.\n");
            return 1;
        }
    }
    return 0;
}

// Reads the index columns at map positions 0 .. count-1 into idx.
int readIndices(qd_context *ctx, RangeSpec *spec, const ArrayInfo *info, int count, int rowOffset,
                int *idx) {
    for (int k = 0; k < count; k++) {
        int col = spec->columnMap[k];
        qd_value v;
        int kind = readCell(ctx, spec, info->indexTypes[k], &v, rowOffset, col);
        if (kind == CELL_EMPTY) {
            sheetMessageAt(ctx, "SHEET: An index cannot be an empty cell ([R%dC%d]).\n", spec,
                           rowOffset, col);
            return 1;
        }
        if (kind < 0 || g_host->setAdd(ctx, info->sets[k], &v, &idx[k]) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong index value at [R%dC%d].\n", spec, rowOffset, col);
            return 1;
        }
    }
    return 0;
}

// Stores the cell(s) at map position `position` into the array cell `idx`;
// empty cells leave it alone.
int storeElement(qd_context *ctx, RangeSpec *spec, const ArrayInfo *info, int rowOffset,
                 int position, const int *idx, int *counter) {
    if (groupIsEmpty(spec, rowOffset, position, info->leaves)) return 0;
    int col = spec->columnMap[position];
    if (info->record) {
        qd_value v;
        v.p = nullptr;
        if (g_host->arraySet(ctx, info->array, idx, &v) != 0 || !v.p) {
            sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, rowOffset, col);
            return 1;
        }
        int at = position;
        readRecord(ctx, spec, rowOffset, &at, v.p, info->element, info->description, 0);
    } else if (isBasicType(info->element)) {
        qd_value v;
        if (readCell(ctx, spec, info->element, &v, rowOffset, col) < 0 ||
            g_host->arraySet(ctx, info->array, idx, &v) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, rowOffset, col);
            return 1;
        }
    } else {
        void *object = externalFromCell(ctx, spec, info->element, rowOffset, position);
        if (!object) return 1;
        int status = g_host->arraySetObject(ctx, info->array, idx, object);
        g_host->deleteObject(ctx, info->element, object);
        if (status != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, rowOffset, col);
            return 1;
        }
    }
    ++*counter;
    return 0;
}

int readIndexed(qd_context *ctx, RangeSpec *spec, const ArrayInfo *info, int *counter) {
    int d = info->dims;
    if (spec->columnCount != d + info->leaves) {
        sheetMessageColumns(ctx, d + info->leaves, spec->columnCount);
        return 1;
    }
    if (checkIndexTypes(ctx, info, d)) return 1;
    int idx[kMaxDims];
    int rows = lastDataRow(spec);
    for (int r = 0; r <= rows; r++) {
        if (groupIsEmpty(spec, r, 0, spec->columnCount)) continue;
        if (readIndices(ctx, spec, info, d, r, idx)) return 1;
        if (storeElement(ctx, spec, info, r, d, idx, counter)) return 1;
    }
    return 0;
}

int readNoIndex(qd_context *ctx, RangeSpec *spec, const ArrayInfo *info, int *counter) {
    int d = info->dims;
    int n = info->leaves;
    void *lastSet = info->sets[d - 1];
    int firstLast = g_host->setFirstIndex(lastSet);
    int lastLast = g_host->setLastIndex(lastSet);
    if (info->record) {
        int need = d == 1 ? n : n * g_host->setSize(lastSet);
        bool ok = d == 1 ? (spec->columnCount >= n && spec->columnCount % n == 0)
                         : spec->columnCount == need;
        if (!ok) {
            sheetMessageColumns(ctx, need, spec->columnCount);
            return 1;
        }
    }
    int idx[kMaxDims];
    bool more = g_host->arrayFirstCell(info->array, idx) == 0;
    // Rows past the table hold nothing to store, so the walk ends there.
    int rows = lastDataRow(spec);
    for (int r = 0; r <= rows && more; r++) {
        int position = 0;
        for (;;) {
            if (position + n > spec->columnCount) {
                // The row ends before the last index wraps: skip the rest.
                if (d > 1) {
                    idx[d - 1] = lastLast;
                    more = g_host->arrayNextCell(info->array, idx) == 0;
                }
                break;
            }
            if (storeElement(ctx, spec, info, r, position, idx, counter)) return 1;
            position += n;
            more = g_host->arrayNextCell(info->array, idx) == 0;
            if (!more) break;
            if (d > 1 && idx[d - 1] == firstLast) break; // the last index wrapped
        }
    }
    return 0;
}

int readPartIndex(qd_context *ctx, RangeSpec *spec, const ArrayInfo *info, int *counter) {
    int d = info->dims;
    int n = info->leaves;
    int size = g_host->setSize(info->sets[d - 1]);
    int need = d - 1 + n * size;
    if (d < 2 || spec->columnCount < need) {
        sheetMessageColumns(ctx, need, spec->columnCount);
        return 1;
    }
    if (checkIndexTypes(ctx, info, d - 1)) return 1;
    int first = g_host->setFirstIndex(info->sets[d - 1]);
    int idx[kMaxDims];
    int rows = lastDataRow(spec);
    for (int r = 0; r <= rows; r++) {
        if (groupIsEmpty(spec, r, 0, spec->columnCount)) continue;
        if (readIndices(ctx, spec, info, d - 1, r, idx)) return 1;
        for (int k = 0; k < size; k++) {
            idx[d - 1] = first + k;
            if (storeElement(ctx, spec, info, r, d - 1 + k * n, idx, counter)) return 1;
        }
    }
    return 0;
}

int readArray(qd_context *ctx, RangeSpec *spec, void *array, int *counter) {
    if (!array) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized array.\n");
        return 1;
    }
    ArrayInfo info;
    if (describeArray(ctx, array, &info)) return 1;
    if (g_host->arrayBeginLoad(ctx, array) != 0) return 1;
    int status;
    if (spec->flags & OPT_NOINDEX)
        status = readNoIndex(ctx, spec, &info, counter);
    else if (spec->flags & OPT_PARTNDX)
        status = readPartIndex(ctx, spec, &info, counter);
    else
        status = readIndexed(ctx, spec, &info, counter);
    return g_host->arrayEndLoad(ctx, array, status) != 0 ? 1 : status;
}

// ---- lists ---------------------------------------------------------------------
// A list of arrays: index columns, then one column for each array.
int readArrayList(qd_context *ctx, RangeSpec *spec, void *list, int *counter) {
    int m = 0;
    void **arrays = nullptr;
    if (checkArrayList(ctx, list, &m, &arrays) != 0) return 1;
    if (m == 0) return 0;
    ArrayInfo *infos = (ArrayInfo *)malloc(sizeof(ArrayInfo) * (size_t)m);
    if (!infos) {
        free(arrays);
        sheetMessage(ctx, "SHEET: Out of memory error.\n");
        return 1;
    }
    int status = 0;
    for (int a = 0; a < m && status == 0; a++) status = describeArray(ctx, arrays[a], &infos[a]);
    int d = status == 0 ? infos[0].dims : 0;
    if (status == 0 && spec->columnCount != d + m) {
        sheetMessageColumns(ctx, d + m, spec->columnCount);
        status = 1;
    }
    int opened = 0;
    while (status == 0 && opened < m) {
        if (g_host->arrayBeginLoad(ctx, arrays[opened]) != 0)
            status = 1;
        else
            opened++;
    }
    if (status == 0) {
        int idx[kMaxDims];
        int rows = lastDataRow(spec);
        for (int r = 0; r <= rows && status == 0; r++) {
            if (groupIsEmpty(spec, r, 0, spec->columnCount)) continue;
            if (readIndices(ctx, spec, &infos[0], d, r, idx)) {
                status = 1;
                break;
            }
            for (int a = 0; a < m && status == 0; a++) {
                ArrayInfo one = infos[a];
                one.leaves = 1;
                status = storeElement(ctx, spec, &one, r, d + a, idx, counter);
            }
        }
    }
    while (opened > 0) {
        opened--;
        g_host->arrayEndLoad(ctx, arrays[opened], status);
    }
    free(infos);
    free(arrays);
    return status;
}

int readList(qd_context *ctx, RangeSpec *spec, qd_type type, void *list, int *counter) {
    if (!list) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized list.\n");
        return 1;
    }
    qd_type element = g_host->listElementType(list);
    if (element == 0 || (element & QD_STRUCT_MASK) == QD_ARRAY)
        return readArrayList(ctx, spec, list, counter);
    if (!(type & QD_DYNAMIC)) {
        sheetMessage(ctx, "SHEET: Non dynamic list for a `write'.\n");
        return 1;
    }
    qd_type base = element & QD_BASE_MASK;
    bool record = isRecordType(ctx, base);
    const int *description = record ? recordDescription(ctx, base) : nullptr;
    int n = countColumns(ctx, base, description);
    if (n == 0) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    if (record && (spec->columnCount < n || spec->columnCount % n != 0)) {
        sheetMessageColumns(ctx, n, spec->columnCount);
        return 1;
    }
    int rows = lastDataRow(spec);
    for (int r = 0; r <= rows; r++) {
        if (record) {
            for (int g = 0; g + n <= spec->columnCount; g += n) {
                if (groupIsEmpty(spec, r, g, n)) continue;
                void *object = g_host->newObject(ctx, base);
                if (!object) {
                    sheetMessage(ctx, "SHEET: Failed to create object.\n");
                    return 1;
                }
                int at = g;
                readRecord(ctx, spec, r, &at, object, base, description, 0);
                qd_value v;
                v.p = object;
                int status = g_host->listAppend(ctx, list, base, &v);
                g_host->deleteObject(ctx, base, object);
                if (status != 0) {
                    sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, r,
                                   spec->columnMap[g]);
                    return 1;
                }
                ++*counter;
            }
            continue;
        }
        for (int k = 0; k < spec->columnCount; k++) {
            int col = spec->columnMap[k];
            if (cellIsEmpty(spec, r, col)) continue;
            int status;
            if (isBasicType(base)) {
                qd_value v;
                status = readCell(ctx, spec, base, &v, r, col) < 0 ||
                         g_host->listAppend(ctx, list, base, &v) != 0;
            } else {
                void *object = externalFromCell(ctx, spec, base, r, k);
                if (!object) return 1;
                qd_value v;
                v.p = object;
                status = g_host->listAppend(ctx, list, base, &v);
                g_host->deleteObject(ctx, base, object);
            }
            if (status != 0) {
                sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, r, col);
                return 1;
            }
            ++*counter;
        }
    }
    return 0;
}

// ---- scalars ---------------------------------------------------------------------
int readScalar(qd_context *ctx, RangeSpec *spec, qd_type type, void *value, int *counter) {
    qd_type base = type & QD_BASE_MASK;
    bool record = isRecordType(ctx, base);
    const int *description = record ? recordDescription(ctx, base) : nullptr;
    if (countColumns(ctx, base, description) == 0) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    if (!value) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    if (spec->columnCount < countColumns(ctx, base, description)) {
        sheetMessageColumns(ctx, countColumns(ctx, base, description), spec->columnCount);
        return 1;
    }
    if (record) {
        int at = 0;
        readRecord(ctx, spec, 0, &at, value, base, description, 0);
        ++*counter;
        return 0;
    }
    int col = spec->columnMap[0];
    qd_value v;
    if (readCell(ctx, spec, base, &v, 0, col) < 0) {
        sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, 0, col);
        return 1;
    }
    if (isBasicType(base)) {
        if (base == QD_STRING && !v.s) v.s = g_host->textHandle(ctx, "");
        *(qd_value *)value = v;
    } else if (g_host->copyObject(ctx, base, value, v.s ? v.s : "", QD_COPY_TEXT) != 0) {
        sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, 0, col);
        return 1;
    }
    ++*counter;
    return 0;
}

int readItem(qd_context *ctx, RangeSpec *spec, qd_type type, void *value, int *counter) {
    switch (type & QD_STRUCT_MASK) {
    case QD_SET: return readSet(ctx, spec, type, value, counter);
    case QD_LIST: return readList(ctx, spec, type, value, counter);
    case QD_ARRAY: return readArray(ctx, spec, value, counter);
    case QD_VALUE:
    case QD_REF: return readScalar(ctx, spec, type, value, counter);
    default: sheetMessage(ctx, "SHEET: Wrong column type.\n"); return 1;
    }
}

} // namespace

int transferIn(qd_context *ctx, void *file, int count, const char **labels, const qd_type *types,
               void **values, int *counters) {
    return runTransfer(ctx, file, count, labels, types, values, counters, readItem);
}
