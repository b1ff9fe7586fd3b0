// transferOut: stores host objects (scalars, records, sets, lists, arrays and
// lists of arrays) into sheet ranges.  Cells are written only through the
// range's SheetOps, so every driver shares this code; what is written stays
// in memory until the file's last close saves it.
#include "write_out.h"

#include <limits.h>
#include <stdlib.h>

namespace {

// Nested records deeper than this are refused, so that a malformed
// description cannot recurse without end.
const int kMaxNesting = 32;

int writeFields(qd_context *ctx, RangeSpec *spec, int rowOffset, int *position, void *record,
                qd_type type, const int *description, int depth) {
    if (!description) description = recordDescription(ctx, type);
    if (!description || depth > kMaxNesting) return 1;
    for (int i = 0; description[i] != 0; i++) {
        unsigned entry = (unsigned)description[i];
        qd_type base = entry & QD_BASE_MASK;
        int field = (int)QD_FIELD_NUMBER(entry);
        if (isRecordType(ctx, base)) {
            void *nested = nullptr;
            if (g_host->recordField(ctx, type, record, field, &nested) != 0 || !nested) return 1;
            unsigned distance = QD_FIELD_NESTED(entry);
            const int *sub = distance ? description + i + distance : nullptr;
            if (writeFields(ctx, spec, rowOffset, position, nested, base, sub, depth + 1) != 0)
                return 1;
            continue;
        }
        qd_value value;
        value.p = nullptr;
        int got;
        if (isBasicType(base)) {
            got = g_host->recordValue(ctx, type, record, field, &value, QD_FIELD_GET);
        } else {
            void *object = nullptr;
            got = g_host->recordField(ctx, type, record, field, &object);
            value.p = object;
        }
        if (got != 0) return 1;
        if (writeCell(ctx, spec, base, rowOffset, spec->columnMap[*position], &value) != 0)
            return 1;
        (*position)++;
    }
    return 0;
}

int writeScalar(qd_context *ctx, RangeSpec *spec, qd_type type, void *value) {
    qd_type base = type & QD_BASE_MASK;
    int need = countColumns(ctx, base, nullptr);
    if (need == 0) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    // Too narrow a range, or one without rows, ends the item silently.
    if (spec->columnCount < need || rangeRows(spec) <= 0 || !value) return 1;
    if (isRecordType(ctx, base)) {
        int position = 0;
        return writeRecord(ctx, spec, 0, &position, value, base, nullptr);
    }
    qd_value v;
    if (isBasicType(base))
        v = *(const qd_value *)value;
    else
        v.p = value;
    // A cell the sheet refuses (past the format's last row or column, a
    // text too long) is reported, as it is in a set or an array.
    if (writeCell(ctx, spec, base, 0, 0, &v) != 0) {
        sheetMessageAt(ctx, "SHEET: Wrong data value for [R%dC%d].\n", spec, 0, 0);
        return 1;
    }
    return 0;
}

// Checks the columns of a set or list of `size` elements taking `need`
// columns each, grows the range when allowed, and answers the number of rows
// that may be written, -1 after printing a column mismatch.
int itemRows(qd_context *ctx, RangeSpec *spec, int need, int size) {
    int found = spec->columnCount;
    if (found < need || found % need != 0) {
        sheetMessageColumns(ctx, need, found);
        return -1;
    }
    long long perRow = found / need;
    return growRows(spec, ((long long)size + perRow - 1) / perRow);
}

int writeSet(qd_context *ctx, RangeSpec *spec, void *set) {
    if (!set) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized set.\n");
        return 1;
    }
    qd_type element = g_host->setElementType(set) & QD_BASE_MASK;
    int need = countColumns(ctx, element, nullptr);
    if (need == 0) {
        sheetMessage(ctx, "SHEET: Wrong data type.\n");
        return 1;
    }
    int size = g_host->setSize(set);
    int rows = itemRows(ctx, spec, need, size);
    if (rows < 0) return 1;
    bool record = isRecordType(ctx, element);
    int perRow = spec->columnCount / need;
    int first = g_host->setFirstIndex(set);
    for (int k = 0; k < size; k++) {
        int row = k / perRow;
        if (row >= rows) break; // without grow the rest is left out
        int position = (k % perRow) * need;
        qd_value value;
        value.p = nullptr;
        if (g_host->setElement(ctx, set, first + k, &value) != 0 ||
            writeElement(ctx, spec, element, record, row, &position, &value) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, row,
                           spec->columnMap[position]);
            return 1;
        }
    }
    return 0;
}

// True when an element of an untyped list cannot be written as a value, which
// makes the list a list of arrays.
bool notAValue(qd_context *ctx, qd_type type) {
    unsigned structure = type & QD_STRUCT_MASK;
    if (structure != QD_VALUE && structure != QD_REF) return true;
    qd_type base = type & QD_BASE_MASK;
    if (base == 0) return true;
    return !isBasicType(base) && !isRecordType(ctx, base) && !hasTextConversion(ctx, base);
}

int writeList(qd_context *ctx, RangeSpec *spec, void *list) {
    if (!list) {
        sheetMessage(ctx, "SHEET: Trying to access an uninitialized list.\n");
        return 1;
    }
    qd_type declared = g_host->listElementType(list);
    if ((declared & QD_STRUCT_MASK) == QD_ARRAY) return writeArrayList(ctx, spec, list);
    int need = 0;
    if (declared == 0) {
        // Untyped: every element is written by its own type, so they must
        // agree on their width.
        void *at = nullptr;
        qd_type type = 0;
        qd_value value;
        bool mixed = false;
        while ((at = g_host->listNext(list, at, &type, &value)) != nullptr) {
            if (notAValue(ctx, type)) return writeArrayList(ctx, spec, list);
            int n = countColumns(ctx, type & QD_BASE_MASK, nullptr);
            if (need == 0)
                need = n;
            else if (n != need)
                mixed = true;
        }
        if (need == 0) return 0; // an empty untyped list writes nothing
        if (mixed) {
            sheetMessage(ctx, "SHEET: Wrong data type.\n");
            return 1;
        }
    } else {
        need = countColumns(ctx, declared & QD_BASE_MASK, nullptr);
        if (need == 0) {
            sheetMessage(ctx, "SHEET: Wrong data type.\n");
            return 1;
        }
    }
    int size = g_host->listSize(list);
    int rows = itemRows(ctx, spec, need, size);
    if (rows < 0) return 1;
    int perRow = spec->columnCount / need;
    bool declaredRecord = declared != 0 && isRecordType(ctx, declared & QD_BASE_MASK);
    void *at = nullptr;
    qd_type type = 0;
    qd_value value;
    value.p = nullptr;
    for (int k = 0; (at = g_host->listNext(list, at, &type, &value)) != nullptr; k++) {
        int row = k / perRow;
        if (row >= rows) break;
        qd_type element = declared != 0 ? declared & QD_BASE_MASK : type & QD_BASE_MASK;
        bool record = declared != 0 ? declaredRecord : isRecordType(ctx, element);
        int position = (k % perRow) * need;
        if (writeElement(ctx, spec, element, record, row, &position, &value) != 0) {
            sheetMessageAt(ctx, "SHEET: Wrong result value at [R%dC%d].\n", spec, row,
                           spec->columnMap[position]);
            return 1;
        }
    }
    return 0;
}

int writeItem(qd_context *ctx, RangeSpec *spec, qd_type type, void *value, int *) {
    switch (type & QD_STRUCT_MASK) {
    case QD_VALUE:
    case QD_REF: return writeScalar(ctx, spec, type, value);
    case QD_SET: return writeSet(ctx, spec, value);
    case QD_LIST: return writeList(ctx, spec, value);
    case QD_ARRAY: return writeArray(ctx, spec, value);
    default: sheetMessage(ctx, "SHEET: Wrong column type.\n"); return 1;
    }
}

} // namespace

int rangeRows(const RangeSpec *spec) {
    long long rows = (long long)spec->lastRow - spec->firstRow + 1;
    return rows > 0 ? (int)rows : 0;
}

int growRows(RangeSpec *spec, long long needed) {
    int rows = rangeRows(spec);
    if (needed <= rows || !(spec->flags & OPT_GROW)) return rows;
    long long room = (long long)INT_MAX - 1 - spec->firstRow;
    if (needed > room) needed = room;
    spec->lastRow = spec->firstRow + (int)needed - 1;
    return (int)needed;
}

int writeCell(qd_context *ctx, RangeSpec *spec, qd_type leafType, int rowOffset, int colOffset,
              const qd_value *value) {
    // The sheet writers answer true on success, as the library's do.
    int row = spec->firstRow + rowOffset;
    int col = spec->firstCol + colOffset;
    switch (leafType & QD_BASE_MASK) {
    case QD_INT: return spec->ops.writeNum(spec->sheet, row, col, (double)value->i) == 0;
    case QD_REAL: return spec->ops.writeNum(spec->sheet, row, col, value->r) == 0;
    case QD_STRING: return spec->ops.writeStr(spec->sheet, row, col, value->s ? value->s : "") == 0;
    case QD_BOOL: return spec->ops.writeBool(spec->sheet, row, col, value->b != 0) == 0;
    default: break;
    }
    if (!value->p) return 0; // no object: the cell stays as it is
    int length =
        g_host->toText(ctx, leafType & QD_BASE_MASK, value->p, spec->buffer, spec->bufferSize);
    if (length < 0 || length >= spec->bufferSize) {
        sheetMessage(ctx, "SHEET: Buffer overflow.\n");
        return 1;
    }
    return spec->ops.writeStr(spec->sheet, row, col, spec->buffer) == 0;
}

int writeRecord(qd_context *ctx, RangeSpec *spec, int rowOffset, int *position, void *record,
                qd_type type, const int *description) {
    if (!record) return 1;
    return writeFields(ctx, spec, rowOffset, position, record, type & QD_BASE_MASK, description, 0);
}

int writeElement(qd_context *ctx, RangeSpec *spec, qd_type type, bool record, int rowOffset,
                 int *position, const qd_value *value) {
    if (record) return writeRecord(ctx, spec, rowOffset, position, value->p, type, nullptr);
    if (writeCell(ctx, spec, type, rowOffset, spec->columnMap[*position], value) != 0) return 1;
    (*position)++;
    return 0;
}

int transferOut(qd_context *ctx, void *file, int count, const char **labels, const qd_type *types,
                void **values) {
    return runTransfer(ctx, file, count, labels, types, values, nullptr, writeItem);
}
