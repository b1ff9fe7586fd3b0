// Helpers that reading and writing share: leaf columns of a type, the check of
// a list of arrays, and small questions about types and cells.
#include "sheetfile.h"

#include <stdlib.h>

namespace {

// Nested record descriptions deeper than this are refused (a malformed
// description could otherwise loop).
const int kMaxNesting = 32;

int countRecord(qd_context *ctx, const int *description, int depth);

int countType(qd_context *ctx, qd_type type, const int *description, int depth) {
    if (isBasicType(type)) return 1;
    if (isRecordType(ctx, type)) {
        if (!description) description = recordDescription(ctx, type);
        if (!description) return 0;
        return countRecord(ctx, description, depth + 1);
    }
    return hasTextConversion(ctx, type) ? 1 : 0;
}

int countRecord(qd_context *ctx, const int *description, int depth) {
    if (depth > kMaxNesting) return 0;
    int total = 0;
    for (int i = 0; description[i] != 0; i++) {
        unsigned entry = (unsigned)description[i];
        unsigned nested = QD_FIELD_NESTED(entry);
        int n = countType(ctx, entry & QD_BASE_MASK, nested ? description + i + nested : nullptr,
                          depth);
        if (n == 0) return 0;
        total += n;
    }
    return total;
}

int leavesOfRecord(qd_context *ctx, const int *description, qd_type *out, int depth) {
    if (depth > kMaxNesting) return 0;
    int count = 0;
    for (int i = 0; description[i] != 0; i++) {
        unsigned entry = (unsigned)description[i];
        qd_type base = entry & QD_BASE_MASK;
        unsigned nested = QD_FIELD_NESTED(entry);
        if (isRecordType(ctx, base)) {
            const int *sub = nested ? description + i + nested : recordDescription(ctx, base);
            if (sub) count += leavesOfRecord(ctx, sub, out ? out + count : nullptr, depth + 1);
        } else {
            if (out) out[count] = entry & ~0x3FF000u;
            count++;
        }
    }
    return count;
}

int elementStructure(qd_context *ctx, qd_type type) {
    unsigned structure = type & QD_STRUCT_MASK;
    if (structure == QD_REF) {
        int answer = 0;
        if (g_host->typeInfo(ctx, type, QD_INFO_STRUCT, &answer) == 0) structure = (unsigned)answer;
    }
    return (int)structure;
}

} // namespace

bool isBasicType(qd_type type) {
    qd_type base = type & QD_BASE_MASK;
    return base >= QD_INT && base <= QD_BOOL;
}

bool isRecordType(qd_context *ctx, qd_type type) {
    qd_type base = type & QD_BASE_MASK;
    if (base <= QD_BOOL) return false;
    int structure = 0;
    return g_host->typeInfo(ctx, base, QD_INFO_STRUCT, &structure) == 0 &&
           (unsigned)structure == QD_RECORD;
}

bool hasTextConversion(qd_context *ctx, qd_type type) {
    int props = 0;
    if (g_host->typeInfo(ctx, type & QD_BASE_MASK, QD_INFO_PROPS, &props) != 0) return false;
    return ((unsigned)props & QD_PROP_TEXT) == QD_PROP_TEXT;
}

const int *recordDescription(qd_context *ctx, qd_type type) {
    const int *description = nullptr;
    if (g_host->typeInfo(ctx, type & QD_BASE_MASK, QD_INFO_DESC, &description) != 0) return nullptr;
    return description;
}

int countColumns(qd_context *ctx, qd_type type, const int *description) {
    return countType(ctx, type & QD_BASE_MASK, description, 0);
}

int listLeaves(qd_context *ctx, qd_type type, const int *description, qd_type *out) {
    if (!isRecordType(ctx, type)) {
        if (out) out[0] = type & QD_BASE_MASK;
        return 1;
    }
    if (!description) description = recordDescription(ctx, type);
    if (!description) return 0;
    return leavesOfRecord(ctx, description, out, 0);
}

bool cellIsEmpty(const RangeSpec *spec, int rowOffset, int colOffset) {
    int kind =
        spec->ops.cellType(spec->sheet, spec->firstRow + rowOffset, spec->firstCol + colOffset);
    return kind == CELL_EMPTY || kind == 4;
}

int lastDataRow(const RangeSpec *spec) {
    int last = spec->ops.lastRow(spec->sheet);
    if (last > spec->lastRow) last = spec->lastRow;
    return last - spec->firstRow;
}

int checkArrayList(qd_context *ctx, void *list, int *count, void ***arrays) {
    *count = 0;
    *arrays = nullptr;
    int capacity = g_host->listSize(list);
    if (capacity <= 0) return 0;
    void **table = (void **)malloc(sizeof(void *) * (size_t)capacity);
    if (!table) {
        g_host->dispatchError(ctx, tr("SHEET: Out of memory error.\n"));
        return 1;
    }
    int dims = 0;
    void **firstSets = nullptr;
    void **sets = nullptr;
    int found = 0;
    int status = 0;
    void *position = nullptr;
    qd_type type = 0;
    qd_value value;
    value.p = nullptr;
    while ((position = g_host->listNext(list, position, &type, &value)) != nullptr) {
        if (found >= capacity) break;
        if (elementStructure(ctx, type) != (int)QD_ARRAY) {
            g_host->dispatchError(ctx, tr("SHEET: Wrong list type for a worksheet.\n"));
            status = 11;
            break;
        }
        void *array = value.p;
        if (!array) {
            g_host->dispatchError(ctx, tr("SHEET: Trying to access an uninitialized array.\n"));
            status = 1;
            break;
        }
        int d = g_host->arrayDimensions(array);
        if (found == 0) {
            dims = d;
            if (dims <= 0) {
                g_host->dispatchError(ctx, tr("SHEET: Inconsistent array list.\n"));
                status = 1;
                break;
            }
            firstSets = (void **)calloc((size_t)dims * 2, sizeof(void *));
            if (!firstSets) {
                g_host->dispatchError(ctx, tr("SHEET: Out of memory error.\n"));
                status = 1;
                break;
            }
            sets = firstSets + dims;
            g_host->arrayIndexSets(array, firstSets);
            for (int k = 0; k < dims && status == 0; k++) {
                if (!isBasicType(g_host->setElementType(firstSets[k]))) {
                    g_host->dispatchError(ctx, tr("SHEET: Wrong index type.\n"));
                    status = 1;
                }
            }
            if (status) break;
        } else {
            if (d != dims) {
                g_host->dispatchError(ctx, tr("SHEET: Inconsistent array list.\n"));
                status = 1;
                break;
            }
            g_host->arrayIndexSets(array, sets);
            for (int k = 0; k < dims && status == 0; k++) {
                if (sets[k] == firstSets[k]) continue;
                bool declaredA = (g_host->setElementType(sets[k]) & QD_DECLARED_SET) != 0;
                bool declaredB = (g_host->setElementType(firstSets[k]) & QD_DECLARED_SET) != 0;
                if (declaredA || declaredB) {
                    g_host->dispatchError(ctx, tr("SHEET: Inconsistent array list.\n"));
                    status = 1;
                }
            }
            if (status) break;
        }
        qd_type element = g_host->arrayElementType(array);
        if (!isBasicType(element) &&
            (isRecordType(ctx, element) || !hasTextConversion(ctx, element))) {
            g_host->dispatchError(ctx, tr("SHEET: Wrong array type for a worksheet.\n"));
            status = 1;
            break;
        }
        table[found++] = array;
    }
    free(firstSets);
    if (status != 0 || found == 0) {
        free(table);
        return status;
    }
    *count = found;
    *arrays = table;
    return 0;
}

void sheetMessage(qd_context *ctx, const char *message) { g_host->dispatchError(ctx, tr(message)); }

void sheetMessageAt(qd_context *ctx, const char *message, const RangeSpec *spec, int rowOffset,
                    int colOffset) {
    g_host->dispatchError(ctx, tr(message), messageRow(spec, rowOffset),
                          messageCol(spec, colOffset));
}

void sheetMessageColumns(qd_context *ctx, int required, int found) {
    g_host->dispatchError(ctx, tr("SHEET: Wrong number of columns (req:%d found:%d).\n"), required,
                          found);
}

int runTransfer(qd_context *ctx, void *handle, int count, const char **labels, const qd_type *types,
                void **values, int *counters, TransferItemFn item) {
    SheetFile *file = (SheetFile *)handle;
    if (!file) return count;
    int done = 0;
    for (int i = 0; i < count; i++) {
        const char *label = labels && labels[i] ? labels[i] : "";
        unsigned flags =
            parseOptions(file->flags, &label, nullptr, nullptr, nullptr, nullptr, nullptr);
        RangeSpec spec;
        if (resolveRange(ctx, flags, file, &spec, label) != 0) {
            free(spec.columnMap);
            sheetMessage(ctx, "SHEET: Invalid range or name not found.\n");
            break;
        }
        int scratch = 0;
        int status = item(ctx, &spec, types[i], values[i], counters ? &counters[i] : &scratch);
        free(spec.columnMap);
        if (status != 0) break;
        values[i] = nullptr;
        done++;
    }
    return count - done;
}
